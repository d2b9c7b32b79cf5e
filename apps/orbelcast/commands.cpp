#include "orbelcast/commands.h"

#include <array>
#include <iostream>
#include <memory>
#include <string>

#include "common/command_line.h"
#include "orbelcast/script/script_command.h"

namespace orbelcast {

namespace {

CommandRun BuildScript(CommandLine& command) {
  command.Footer(
      "Such as:\n"
      "  create v VideoServerPush\n"
      "  place v 9600 7200\n"
      "  call v Connect \"http://127.0.0.1:8080/live/1\"\n"
      "  until StreamInfo 3000\n"
      "  call v SaveImage now.jpg\n"
      "docs/script-host.md lists every command.\n\n"
      "Exit status: 0 every command was right; 1 one was wrong, and said so in a line with\n"
      "\"error\"; 2 FILE cannot be read.");
  const auto file = std::make_shared<std::string>();
  command.AddText("FILE", *file, "The script, one command a line (default: standard input)").ValueName("");
  return [file] { return RunScript(*file, std::cin, std::cout, std::cerr); };
}

}  // namespace

std::span<const Command> Commands() {
  static constexpr std::array kCommands{
      Command{"play", "Opens a window that shows a camera: play CAMERA [OPTION...]", BuildPlay},
      Command{"watch", "Watches a camera without a window, printing its events as JSON lines", BuildWatch},
      Command{"info", "Prints what a camera server says of itself: cameras, alerts, outputs", BuildInfo},
      Command{"doctor", "Finds out why a camera cannot be seen, step by step, and what to do", BuildDoctor},
      Command{"mosaic", "Shows several cameras as a grid, in a file or in a window", BuildMosaic},
      Command{"record", "Records a camera as a clip: record CAMERA FILE.avi [OPTION...]", BuildRecord},
      Command{"snapshot", "Saves a camera's picture as the server sent it", BuildSnapshot},
      Command{"output", "Lists a camera server's outputs, or switches one on or off", BuildOutput},
      Command{"alert", "Lists a camera server's alerts, or sets one off", BuildAlert},
      Command{"message", "Sends a text to a camera server's operator", BuildMessage},
      Command{"log", "Saves a camera server's whole activity log as the server sent it", BuildLog},
      Command{"register", "Writes the controls' classes into the registry file", BuildRegister},
      Command{"unregister", "Removes the controls' classes from the registry file", BuildUnregister},
      Command{"serve", "Puts the controls on web pages: a gateway for browsers", BuildServe},
      Command{"script", "Does what a script says with the controls, printing JSON lines", BuildScript},
  };
  return kCommands;
}

}  // namespace orbelcast
