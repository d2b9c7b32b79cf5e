#include "common/option_values.h"

#include "adapters/posix/named_file.h"
#include "common/command_line.h"

namespace orbelcast {

Option AddSensitivityOption(CommandLine& command, int& percent) {
  return command
      .AddNumber("--sensitivity", percent, 0, 100,
                 "How small a change counts as motion, in percent, 0 to 100: 100 takes any (default: 80)")
      .ValueName("PERCENT");
}

std::string CheckWritable(const std::string& file) {
  const std::string why = WhyUnwritable(file);
  return why.empty() ? why : "cannot write " + file + ": " + why;
}

}  // namespace orbelcast
