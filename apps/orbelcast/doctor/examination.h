#pragma once

#include <chrono>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "assembly/headless_platform.h"
#include "common/access.h"
#include "common/exit_status.h"
#include "common/messages.h"
#include "orbelcast/doctor/doctor_report.h"
#include "orbelcast/doctor/network_steps.h"
#include "orbelcast/doctor/picture_probe.h"
#include "orbelcast/server_entries.h"
#include "protocol/server_info.h"
#include "stream/failure_text.h"
#include "stream/noted_http.h"

namespace orbelcast {

/// The options of `orbelcast doctor`.
struct DoctorOptions {
  std::string server;  ///< A host, host:port, a relay account's address; or the whole address of a picture.
  Access access;
  std::string device;    ///< The camera that is looked at, by its id on the server; empty is the first.
  double time_out = 10;  ///< Seconds, for each step.
  double seconds = 2;    ///< How long the camera's rate is measured.
  bool json = false;
  Messages messages;
};

/// Examines the steps to a camera's picture one by one and reports each to `output`, with advice where it fails.
class Examination {
 public:
  Examination(const DoctorOptions& options, std::ostream& output);

  /// kWorked where every step works.
  ExitStatus Run();

 private:
  // The steps. Each tells of itself and answers whether the way goes on.
  bool Relay();
  bool Name();
  bool Connection();
  bool Credentials();
  bool Information();
  bool FirstPicture();
  bool Size();
  bool Rate();
  bool TimeCode();

  bool Pass(const Step& step);
  bool Fail(Step step, const std::string& found, const std::string& advice);
  std::chrono::milliseconds Limit() const {
    return std::chrono::milliseconds(static_cast<std::int32_t>(options_.time_out * 1000));
  }
  /// The address has a path: it is a picture's, not a server's.
  bool IsPicture() const;
  /// The first request that needs the credentials; 0 where no answer came.
  int AskForStatus();
  bool ChooseCamera(Step& step, const std::vector<Entry>& cameras);
  /// The advice where no picture came.
  std::string WhatToDo(const FailureText& told) const;

  const DoctorOptions& options_;
  DoctorReport report_;
  HeadlessPlatform services_;
  NotedHttp http_;
  Platform platform_;

  std::string server_;  ///< Of a relay account, what the relay service said.
  std::vector<NetworkAddress> addresses_;
  std::optional<ServerInfo> info_;  ///< Of a server.
  std::string unread_;  ///< The notice that its information was too long to be read whole; empty where it was not.
  std::string camera_name_;
  std::string live_base_;
  std::string picture_address_;
  std::optional<PictureAnswer> picture_;
};

}  // namespace orbelcast
