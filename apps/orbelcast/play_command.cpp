#include "orbelcast/play_command.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <ostream>

namespace orbelcast {

namespace {

constexpr const char* kPlayer = "orbelcast-player";

}  // namespace

ExitStatus Play(const std::vector<std::string>& arguments, std::ostream& messages) {
  std::vector<std::string> words{kPlayer};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> pointers;
  pointers.reserve(words.size() + 1);
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);

  std::error_code error;
  const std::filesystem::path here = std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
  const std::filesystem::path beside = here / kPlayer;
  if (!error) ::execv(beside.c_str(), pointers.data());
  if (errno == ENOENT) ::execvp(kPlayer, pointers.data());

  if (errno == ENOENT) {
    messages << "orbelcast: the player, " << kPlayer << ", is neither in " << here.string() << " nor on PATH.\n"
             << "Install it (the package orbelcast-qt, or a build with Qt 6), or use 'orbelcast watch', which needs no "
                "window.\n";
  } else {
    messages << "orbelcast: the player, " << kPlayer << ", could not be started: " << std::strerror(errno) << '\n';
  }
  return kBadUsage;
}

}  // namespace orbelcast
