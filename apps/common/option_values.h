#pragma once

#include <CLI/CLI.hpp>
#include <string>

#include "common/within.h"

/// Values that options of several programs take. The error of a wrong one is a text that says what is expected.
namespace orbelcast {

/// The longest time that an option takes where it is counted in milliseconds of 32 bits: a request's limit, and when
/// the player's window is to end.
inline constexpr double kLongestTimeOut = 1'000'000;
/// The longest other one, some thirty years: in nanoseconds the queue can still count it.
inline constexpr double kLongestTime = 1'000'000'000;
/// Declares an option that is a time in seconds, more than 0, which may have decimals.
template <typename Time>
CLI::Option* AddSecondsOption(CLI::App& command, const std::string& name, Time& seconds, const std::string& description,
                              double longest = kLongestTime) {
  return command.add_option(name, seconds, description)->check(Within(0.001, longest))->type_name("S");
}

/// Declares an option that is a number of something, 1 or more.
template <typename Count>
CLI::Option* AddCountOption(CLI::App& command, const std::string& name, Count& count, const std::string& description) {
  return command.add_option(name, count, description)->check(Within(1, 1'000'000'000))->type_name("N");
}

/// Declares how small a change counts as motion, in percent.
template <typename Percent>
CLI::Option* AddSensitivityOption(CLI::App& command, Percent& percent) {
  return command
      .add_option("--sensitivity", percent,
                  "How small a change counts as motion, in percent, 0 to 100: 100 takes any (default: 80)")
      ->check(Within(0, 100))
      ->type_name("PERCENT");
}

/// The reason why a file of that name cannot be written; empty where it can.
std::string CheckWritable(const std::string& file);

}  // namespace orbelcast
