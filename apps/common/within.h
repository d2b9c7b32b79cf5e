#pragma once

#include <CLI/CLI.hpp>
#include <iomanip>
#include <sstream>
#include <string>
#include <type_traits>

namespace orbelcast {

/// A number from `least` to `most`. The option's own text says so; the help does not say it a second time.
template <typename Number>
CLI::Validator Within(Number least, Number most) {
  constexpr int kDigits = 12;
  std::ostringstream expected;
  expected << std::setprecision(kDigits) << "give a " << (std::is_integral_v<Number> ? "whole " : "") << "number from "
           << least << " to " << most;
  const auto check = [least, most, complaint = expected.str()](const std::string& text) {
    Number number{};
    const bool good = CLI::detail::lexical_cast(text, number) && number >= least && number <= most;
    return good ? std::string() : complaint;
  };
  return {[check](std::string& text) { return check(text); }, std::string()};
}

}  // namespace orbelcast
