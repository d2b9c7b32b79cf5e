#pragma once

#include <string>

#include "common/command_line.h"

/// Values that options of several programs take. The error of a wrong one is a text that says what is expected.
namespace orbelcast {

/// The longest time that an option takes where it is counted in milliseconds of 32 bits: a request's limit, and when
/// the player's window is to end.
inline constexpr double kLongestTimeOut = 1'000'000;
/// The longest other one, some thirty years: in nanoseconds the queue can still count it.
inline constexpr double kLongestTime = 1'000'000'000;
/// Declares an option that is a time in seconds, more than 0, which may have decimals.
template <typename Time>
Option AddSecondsOption(CommandLine& command, const std::string& name, Time& seconds, const std::string& description,
                        double longest = kLongestTime) {
  return command.AddNumber(name, seconds, 0.001, longest, description).ValueName("S");
}

/// Declares an option that is a number of something, 1 or more.
template <typename Count>
Option AddCountOption(CommandLine& command, const std::string& name, Count& count, const std::string& description) {
  return command.AddNumber(name, count, 1, 1'000'000'000, description).ValueName("N");
}

/// Declares how small a change counts as motion, in percent.
Option AddSensitivityOption(CommandLine& command, int& percent);

/// The reason why a file of that name cannot be written; empty where it can.
std::string CheckWritable(const std::string& file);

}  // namespace orbelcast
