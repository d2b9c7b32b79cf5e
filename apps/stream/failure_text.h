#pragma once

#include <string>

#include "viewer/failure.h"

/// Failures as people are told of them, and what they can do: the one table of that.
namespace orbelcast {

/// What the sentences name; what is left empty stands in none of those that are wanted.
struct FailurePlace {
  std::string address{};  ///< The picture's address, as it may be shown.
  std::string server{};   ///< Its HOST or HOST:PORT.
  std::string limit{};    ///< How long an answer may take, such as "10 s".
};

struct FailureText {
  std::string line;    ///< On a terminal, behind "no picture from ADDRESS: ".
  std::string notice;  ///< In a window: a sentence or two.
  std::string found;   ///< As an examination's finding.
  std::string advice;  ///< What to do after that.
};

FailureText TextOf(const Failure& failure, const FailurePlace& place = {});

/// Behind "no … from SERVER: ", of an answer with another status than 200 to a request that is for no picture.
std::string WhyServerRefuses(int status);

}  // namespace orbelcast
