#include "orbelcast/log_command.h"

#include <CLI/CLI.hpp>
#include <cstdint>
#include <memory>
#include <ostream>

#include "adapters/posix/named_file.h"
#include "assembly/headless_platform.h"
#include "common/http_status.h"
#include "common/shown_text.h"
#include "orbelcast/option_values.h"
#include "orbelcast/server_entries.h"
#include "protocol/relay.h"
#include "protocol/server_address.h"
#include "protocol/text.h"

namespace orbelcast {

namespace {

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
  if (status == kUnauthorized) return kAsksForAnotherLogin;
  return "it answers with status " + std::to_string(status);
}

}  // namespace

void AddLogOptions(CLI::App& command, LogOptions& options) {
  AddServerOption(command, options.server);
  command
      .add_option_function<std::string>(
          "FILE",
          [&options](const std::string& text) {
            options.file = text;
            CheckWritable("FILE", text);
          },
          "Where the log goes, as the server sent it; an existing file is replaced once the log is there")
      ->required()
      ->type_name("");
  AddAccessOptions(command, options.access, "User name, sent with the request (default: none)");
  AddSecondsOption(command, "--timeout", options.time_out,
                   "Seconds that connecting and that the answer may take each; may have decimals (default: 10)",
                   kLongestTimeOut)
      ->group("Request");
}

ExitStatus Log(const LogOptions& options, std::ostream& messages) {
  HeadlessPlatform services;
  const auto answer = AskForLog(services.Get(), options);
  if (const std::string wrong = WhyNoLog(answer->Status()); !wrong.empty()) {
    messages << "orbelcast: no log from " << MaskedAddress(options.server).Text() << ": " << wrong << '\n';
    return kNoPictures;
  }
  const std::string wrong = WriteNamedFile(options.file, answer->ResponseBody().Bytes());
  if (wrong.empty()) return kWorked;
  messages << "orbelcast: cannot write " << Shown(options.file.string()) << ": " << Shown(wrong) << '\n';
  return kBadUsage;
}

}  // namespace orbelcast
