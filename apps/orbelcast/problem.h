#pragma once

#include <iosfwd>
#include <string>

#include "json/json.h"
#include "viewer/failure.h"

namespace orbelcast {

/// Why a command did not do what it was asked for.
struct Problem {
  std::string kind;  ///< For programs, in one word.
  std::string text;  ///< For people, without passwords.
  int status = 0;    ///< The answer's HTTP status where that is the reason; else 0.

  /// Of a request; `text` says all, to the reason.
  static Problem Of(const Failure& failure, std::string text);
};

/// {"kind":…,"status":…,"text":…}, the status where there is one.
Json ToJson(const Problem& problem);

/// A line on `messages`, in the program's name.
void Tell(const Problem& problem, std::ostream& messages);

}  // namespace orbelcast
