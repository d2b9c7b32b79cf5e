#include "common/program.h"

#include <csignal>
#include <iostream>

#include "common/exit_status.h"

namespace orbelcast {

void SurviveFailedWrites() {
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
}

int EndOutput(const std::string& program, int status) {
  if (std::cout.flush()) return status;
  std::cerr << program << ": cannot write to standard output; is the disk full, or has its reader gone?\n";
  return status != 0 ? status : kBadUsage;
}

}  // namespace orbelcast
