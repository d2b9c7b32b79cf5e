#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "common/access.h"
#include "protocol/server_info.h"

namespace orbelcast {

class CommandLine;

/// A line of a list that a camera server tells: a camera, an alert, an output or an input.
struct Entry {
  std::vector<std::string> fields;

  /// Empty where the line has no such field.
  const std::string& Field(std::size_t index) const;
};

/// The lines under `key` ("CAM:"), in the server's order. `info` holds every line (InfoMode::kAllLines).
std::vector<Entry> EntriesOf(const ServerInfo& info, std::string_view key);

/// The notice, for people, that the server sent more than is read of it; empty where all was read.
std::string WhatWasNotRead(const ServerInfo& info);

/// The error in a camera server's address; empty where there is none.
std::string CheckServer(const std::string& server);

/// Declares SERVER, a camera server's address, which is put into `server` as it was written.
void AddServerOption(CommandLine& command, std::string& server);

/// Declares the login, and how long a request may take, in seconds.
void AddRequestOptions(CommandLine& command, Access& access, double& time_out);

}  // namespace orbelcast
