#include "common/option_values.h"

#include "adapters/posix/named_file.h"

namespace orbelcast {

std::string CheckWritable(const std::string& file) {
  const std::string why = WhyUnwritable(file);
  return why.empty() ? why : "cannot write " + file + ": " + why;
}

}  // namespace orbelcast
