#include "common/colours.h"

#include <unistd.h>

#include "common/environment.h"

namespace orbelcast {

namespace {

std::string_view CodeOf(Colour colour) {
  switch (colour) {
    case Colour::kGood:
      return "\033[32m";
    case Colour::kWarning:
      return "\033[33m";
    case Colour::kBad:
      return "\033[1;31m";
    case Colour::kFaint:
      return "\033[2m";
    case Colour::kHeading:
      return "\033[1m";
  }
  return {};
}

}  // namespace

Colours::Colours(int descriptor)
    : used_(::isatty(descriptor) != 0 && EnvironmentText("NO_COLOR").empty() && EnvironmentText("TERM") != "dumb") {}

std::string Colours::Paint(Colour colour, std::string_view text) const {
  if (!used_) return std::string(text);
  return std::string(CodeOf(colour)).append(text).append("\033[0m");
}

}  // namespace orbelcast
