#pragma once

#include <string>

/// What all programs do with their process.
namespace orbelcast {

/// Before anything else: a pipe that nobody reads any more, and a file that grows beyond its limit, are failures of
/// what is written, not the program's end.
void SurviveFailedWrites();

/// At the end: the exit status of `program`, which is `status` unless standard output could not be written. That is
/// told on standard error, with a status other than 0.
int EndOutput(const std::string& program, int status);

}  // namespace orbelcast
