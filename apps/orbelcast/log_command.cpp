#include <cstdint>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>

#include "assembly/headless_platform.h"
#include "common/command_line.h"
#include "common/shown_text.h"
#include "common/standard_stream.h"
#include "orbelcast/camera_options.h"
#include "orbelcast/commands.h"
#include "orbelcast/picture_file.h"
#include "orbelcast/server_entries.h"
#include "protocol/relay.h"
#include "protocol/server_address.h"
#include "protocol/text.h"
#include "stream/failure_text.h"

namespace orbelcast {

namespace {

struct LogOptions {
  std::string server;  ///< A host, host:port, or a relay account's address.
  std::filesystem::path file;
  Access access;
  double time_out = 10;  ///< Seconds, for connecting and for the answer each.
};

/// The answer to the request for the log, whatever it is.
std::shared_ptr<HttpRequest> AskForLog(Platform& platform, const LogOptions& options) {
  const auto milliseconds = static_cast<std::int32_t>(options.time_out * 1000);
  const std::string base = LoginBase(WithoutHttp(options.server), "", options.access.user, options.access.password);
  const std::string url =
      ResolveRelayUrl(platform.http, platform.configuration, ActivityLogAddress(base), milliseconds);
  auto request = platform.http.Create();
  request->Open("GET", url);
  request->SetTimeouts(milliseconds, milliseconds, milliseconds, milliseconds);
  request->Send();
  return request;
}

/// Empty where all is well.
std::string WhyNoLog(int status) {
  if (status == kHttpOk) return {};
  if (status == 0) return "it does not answer; 'orbelcast doctor' finds out where it fails";
  return WhyServerRefuses(status);
}

ExitStatus Log(const LogOptions& options) {
  HeadlessPlatform services;
  const auto answer = AskForLog(services.Get(), options);
  if (const std::string wrong = WhyNoLog(answer->Status()); !wrong.empty()) {
    std::cerr << "orbelcast: no log from " << MaskedAddress(options.server).Text() << ": " << wrong << '\n';
    return kNoPictures;
  }
  const std::string wrong = WriteOutput(options.file, answer->ResponseBody().Bytes());
  return TellIfUnwritten(options.file, wrong) ? kBadUsage : kWorked;
}

}  // namespace

CommandRun BuildLog(CommandLine& command) {
  command.Footer(
      "Exit status: 0 the log is in FILE; 1 no log came, and FILE is as it was; 2 wrong usage,\n"
      "or a file that cannot be written.");
  const auto options = std::make_shared<LogOptions>();
  AddServerOption(command, options->server);
  AddFileArgument(command, options->file,
                  "Where the log goes, as the server sent it; an existing file is replaced once the log is there. - is "
                  "standard output");
  AddRequestOptions(command, options->access, options->time_out);
  return [options] { return Log(*options); };
}

}  // namespace orbelcast
