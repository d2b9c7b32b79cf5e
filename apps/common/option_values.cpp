#include "common/option_values.h"

#include "common/command_line.h"
#include "common/standard_stream.h"

namespace orbelcast {

Option AddSensitivityOption(CommandLine& command, int& percent) {
  return command
      .AddNumber("--sensitivity", percent, 0, 100,
                 "How small a change counts as motion, in percent, 0 to 100: 100 takes any (default: 80)")
      .ValueName("PERCENT");
}

std::string CheckWritable(const std::string& file) {
  if (IsStandardStream(file)) return {};
  const std::string why = WhyUnwritable(file);
  return why.empty() ? why : "cannot write " + file + ": " + why;
}

}  // namespace orbelcast
