#include "orbelcast/script/script_command.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <ostream>

#include "orbelcast/script/script_host.h"

namespace orbelcast {

namespace {

ExitStatus Run(std::istream& input, std::ostream& output) {
  return ScriptHost(input, output).Run() ? kWorked : kWrongCommand;
}

}  // namespace

ExitStatus RunScript(const std::string& file, std::istream& input, std::ostream& output, std::ostream& messages) {
  if (file.empty()) return Run(input, output);
  std::error_code ignored;
  errno = std::filesystem::is_directory(file, ignored) ? EISDIR : 0;
  std::ifstream script;
  if (errno == 0) script.open(file);
  if (!script.is_open()) {
    messages << "orbelcast: cannot read " << file << ": " << std::strerror(errno) << '\n';
    return kBadUsage;
  }
  return Run(script, output);
}

}  // namespace orbelcast
