#pragma once

#include <string>

/// The set-up of the process, for all programs.
namespace orbelcast {

/// Called first: a pipe without a reader, and a file that grows beyond its limit, make the write fail and do not end
/// the program.
void SurviveFailedWrites();

/// Called last: the exit status of `program`, which is `status` unless standard output could not be written. That is
/// reported on standard error, with a status other than 0.
int EndOutput(const std::string& program, int status);

}  // namespace orbelcast
