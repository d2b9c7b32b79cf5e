#pragma once

#include <string>

#include "viewer/failure.h"

/// The texts that tell people of failures, with advice: one table for all programs.
namespace orbelcast {

/// The names that the sentences mention. A member may be left empty where no sentence asked for mentions it.
struct FailurePlace {
  std::string address{};  ///< The picture's address, as it may be shown.
  std::string server{};   ///< Its HOST or HOST:PORT.
  std::string limit{};    ///< How long an answer may take, such as "10 s".
  bool user_was_given = true;
};

struct FailureText {
  std::string line;    ///< On a terminal, after "no picture from ADDRESS: ".
  std::string notice;  ///< In a window: a sentence or two.
  std::string found;   ///< As an examination's finding.
  std::string advice;  ///< The next thing to do.
};

FailureText TextOf(const Failure& failure, const FailurePlace& place = {});

/// The failure is that the server wants a login, or another one.
bool AsksForLogin(const Failure& failure);

/// Behind "no … from SERVER: ", of a request that is for no picture.
std::string WhyRefused(const Failure& failure, bool user_was_given);

/// The failure's kind for programs, in one word such as "timed-out".
std::string WordOf(const Failure& failure);

}  // namespace orbelcast
