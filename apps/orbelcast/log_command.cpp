#include <filesystem>
#include <iostream>
#include <memory>

#include "common/command_line.h"
#include "common/standard_stream.h"
#include "orbelcast/camera_options.h"
#include "orbelcast/commands.h"
#include "orbelcast/picture_file.h"
#include "orbelcast/server_talk.h"
#include "protocol/server_address.h"

namespace orbelcast {

namespace {

struct LogOptions {
  ServerOptions server;
  std::filesystem::path file;
};

ExitStatus Log(const LogOptions& options) {
  ServerTalk server(options.server);
  const auto answer = server.Send([](const std::string& base) { return ActivityLogAddress(base); });
  if (const auto problem = server.WhyNo("log")) {
    Tell(*problem, std::cerr);
    return kNoPictures;
  }
  const std::string wrong = WriteOutput(options.file, answer->ResponseBody().Bytes());
  return TellIfUnwritten(options.file, wrong) ? kBadUsage : kWorked;
}

}  // namespace

CommandRun BuildLog(CommandLine& command) {
  const auto options = std::make_shared<LogOptions>();
  AddServerOptions(command, options->server);
  AddFileArgument(command, options->file, "log");
  return [options] { return Log(*options); };
}

}  // namespace orbelcast
