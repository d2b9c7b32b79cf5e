#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "protocol/server_info.h"

namespace orbelcast {

/// A line of a list that a camera server tells: a camera, an alert, an output or an input.
struct Entry {
  std::vector<std::string> fields;

  /// Empty where the line has no such field.
  const std::string& Field(std::size_t index) const;
};

/// The lines under `key` ("CAM:"), in the server's order. `info` holds every line (InfoMode::kAllLines).
std::vector<Entry> EntriesOf(const ServerInfo& info, std::string_view key);

/// An output's or input's state as the server tells it.
bool IsOn(const Entry& entry);

/// The place, from 1, of the one that `choice` means: its place, or its name in any letter case; 0 where it means none.
std::size_t PlaceOf(const std::vector<Entry>& entries, const std::string& choice);

/// The notice, for people, that the server sent more than is read of it; empty where all was read.
std::string WhatWasNotRead(const ServerInfo& info);

/// The error in a camera server's address; empty where there is none.
std::string CheckServer(const std::string& server);

/// The server of a text that CheckServer takes: the text as it is, or the host and port of a picture's address.
std::string ServerOf(const std::string& text);

}  // namespace orbelcast
