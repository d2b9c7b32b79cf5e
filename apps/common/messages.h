#pragma once

namespace orbelcast {

class CommandLine;

/// How much a program tells on standard error, beside its results.
struct Messages {
  bool silent = false;   ///< Nothing: the exit status tells.
  bool quiet = false;    ///< Failures alone.
  bool verbose = false;  ///< Each request, too.
};

/// Declares -s, -q and -v. Where -s is given, what is written to std::cerr goes nowhere from then on.
void AddMessageOptions(CommandLine& command, Messages& messages);

}  // namespace orbelcast
