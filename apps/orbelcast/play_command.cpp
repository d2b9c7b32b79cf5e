#include "orbelcast/play_command.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <iostream>

#include "adapters/posix/own_folder.h"
#include "common/command_line.h"
#include "orbelcast/commands.h"

namespace orbelcast {

namespace {

constexpr const char* kPlayer = "orbelcast-player";

}  // namespace

ExitStatus Play(const std::vector<std::string>& arguments) {
  std::vector<std::string> words{kPlayer};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> pointers;
  pointers.reserve(words.size() + 1);
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);

  errno = ENOENT;
  const std::filesystem::path here = OwnFolder();
  if (!here.empty()) ::execv((here / kPlayer).c_str(), pointers.data());
  if (errno == ENOENT) ::execvp(kPlayer, pointers.data());

  if (errno == ENOENT && std::ranges::find(arguments, "--help") != arguments.end()) {
    std::cout << "Opens a window that shows a camera\nUsage: orbelcast play CAMERA [OPTION...]\n\n"
              << "The options are those of " << kPlayer << ", which is not installed (the package orbelcast-qt).\n";
    return kWorked;
  }
  if (errno == ENOENT) {
    std::cerr
        << "orbelcast: the player, " << kPlayer << ", is neither in " << here.string() << " nor on PATH.\n"
        << "Install it (the package orbelcast-qt, or a build with Qt 6), or use 'orbelcast watch', which needs no "
           "window.\n";
  } else {
    std::cerr << "orbelcast: the player, " << kPlayer << ", could not be started: " << std::strerror(errno) << '\n';
  }
  return kBadUsage;
}

CommandRun BuildPlay(CommandLine& command) {
  // All that follows is the player's, --help too.
  command.LeaveRest();
  return [&command] { return Play(command.Rest()); };
}

}  // namespace orbelcast
