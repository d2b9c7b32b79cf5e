#include <iostream>
#include <memory>

#include "common/access.h"
#include "common/command_line.h"
#include "common/option_values.h"
#include "common/shown_text.h"
#include "orbelcast/commands.h"
#include "orbelcast/doctor/examination.h"
#include "orbelcast/server_entries.h"

namespace orbelcast {

CommandRun BuildDoctor(CommandLine& command) {
  command.Footer(
      "Such as:\n"
      "  orbelcast doctor 192.168.1.20:8080 --credentials my-login\n\n"
      "Exit status: 0 everything works; 1 a step failed, and what to do is told; 2 wrong usage.");
  const auto shared = std::make_shared<DoctorOptions>();
  DoctorOptions& options = *shared;
  command
      .AddText("SERVER", options.server,
               "The camera server: a host, host:port, or a relay account's address. Or the whole address of a "
               "picture. http:// may be left out")
      .Required()
      .Check(CheckServer)
      .ShowEach(KeepSecretsOf)
      .ValueName("");
  AddAccessOptions(command, options.access, "User name (default: none)", WithoutPassword::kAsk);
  AddMessageOptions(command, options.messages);
  const std::string group = "Examination";
  command.AddText("--device", options.device, "The camera to look at, by its id on the server (default: the first one)")
      .ValueName("ID")
      .Group(group);
  AddSecondsOption(command, "--timeout", options.time_out,
                   "Seconds that each step may take; may have decimals (default: 10). Looking up a name takes as long "
                   "as the system does",
                   kLongestTimeOut)
      .Group(group);
  AddSecondsOption(command, "--seconds", options.seconds,
                   "How long the rate is measured; may have decimals (default: 2)")
      .Group(group);
  command.AddFlag("--json", options.json, "Print JSON, for programs, at the end").Group("Output");
  return [shared] { return Examination(*shared, std::cout).Run(); };
}

}  // namespace orbelcast
