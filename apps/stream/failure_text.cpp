#include "stream/failure_text.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "common/http_status.h"

namespace orbelcast {

namespace {

constexpr int kAny = 0;

struct Row {
  FailureKind kind;
  int status;
  std::string_view line;
  std::string_view notice;
  std::string_view found;
  std::string_view advice;
};

constexpr std::string_view kAsksForLogin =
    "it asks for a user name and a password; give --credentials FILE, or --user and ORBELCAST_PASSWORD";
constexpr std::string_view kAsksForAnotherLogin =
    "it does not accept this login, and asks for another user name or password; capital letters count";
constexpr std::string_view kNoJpeg = "the answer is no JPEG picture that can be read";
constexpr std::string_view kGiveAPicture =
    "give the address of a JPEG picture, or of a stream of them, not of a page; 'orbelcast info' lists a server's";
constexpr std::string_view kNothingThere = "There is no picture at {address}.";
constexpr std::string_view kNoSuchCamera = "there is no such camera (status {status})";
constexpr std::string_view kInfoLists = "'orbelcast info' lists the server's cameras and their addresses";
constexpr std::string_view kIsItConnected = "check that the camera itself is on and connected to its server";

using enum FailureKind;

// A status before all others of its kind.
constexpr std::array kRows{
    Row{kNone, kAny, "it had not answered", "", "", ""},
    Row{kUnreachable, kAny,
        "nobody takes a connection there: the host is unknown or off, or nothing listens at the port; "
        "'orbelcast doctor' tells which",
        "{address} does not take a connection. Is the address right, and is the camera on?",
        "nobody takes a connection there", "check the address and its port, and that the camera is on"},
    Row{kTimedOut, kAny, "no complete answer came in time; is it on, and the network fast enough?",
        "{address} does not answer in time. Is the camera on?", "no complete answer within {limit}", kIsItConnected},
    Row{kCutShort, kAny, "the connection broke off before an answer was complete, or what came is no web server's",
        "{address} does not answer as a camera does: the answer breaks off, or is no web server's. Is the port right?",
        "the connection broke off before the answer was complete", kIsItConnected},
    Row{kNoAnswer, kAny, "it does not answer as a web server; 'orbelcast doctor' finds out why",
        "{address} does not answer. Is the address right, and is the camera on?", "there is no answer", kIsItConnected},
    Row{kStatus, kUnauthorized, kAsksForAnotherLogin, "{address} does not accept this user name and password.",
        "the server gives its information, but not this camera's picture, to this user",
        "let the user see the camera, at the server, or use another user"},
    Row{kStatus, kNotFound,
        "the server has nothing at this address (404); 'orbelcast info' lists its cameras' addresses", kNothingThere,
        kNoSuchCamera, kInfoLists},
    Row{kStatus, kVideoNotFound, "the camera server has no such camera; 'orbelcast info' lists those it has",
        kNothingThere, kNoSuchCamera, kInfoLists},
    Row{kStatus, kAny, "it answers with status {status}", "{address} answers with status {status}.",
        "the camera answers with status {status}", kIsItConnected},
    Row{kNoPicture, kAny,
        "what it sent is no JPEG picture; give the address of a picture, or of a stream of them, not of a page",
        "What is at {address} is no JPEG picture. Give the whole address of one; a camera server is opened as "
        "{server}, "
        "without http://.",
        kNoJpeg, kGiveAPicture},
    Row{kDamagedPicture, kAny, "the picture is damaged, or ends early", "The picture at {address} is damaged.",
        "the picture is damaged, or ends early", "look at it in a browser; the camera may have to be started again"},
};

const Row& RowOf(const Failure& failure) {
  const int status = failure.status == kForbidden ? kUnauthorized : failure.status;
  return *std::ranges::find_if(
      kRows, [&](const Row& row) { return row.kind == failure.kind && (row.status == status || row.status == kAny); });
}

std::string Filled(std::string_view sentence, const Failure& failure, const FailurePlace& place) {
  std::string text(sentence);
  const std::array<std::pair<std::string_view, std::string>, 4> names{{{"{status}", std::to_string(failure.status)},
                                                                       {"{limit}", place.limit},
                                                                       {"{server}", place.server},
                                                                       {"{address}", place.address}}};
  for (const auto& [name, value] : names) {
    if (const std::size_t at = text.find(name); at != std::string::npos) text.replace(at, name.size(), value);
  }
  return text;
}

}  // namespace

bool AsksForLogin(const Failure& failure) {
  return failure.kind == kStatus && (failure.status == kUnauthorized || failure.status == kForbidden);
}

FailureText TextOf(const Failure& failure, const FailurePlace& place) {
  const Row& row = RowOf(failure);
  const bool without_login = AsksForLogin(failure) && !place.user_was_given;
  return {.line = Filled(without_login ? kAsksForLogin : row.line, failure, place),
          .notice = Filled(row.notice, failure, place),
          .found = Filled(row.found, failure, place),
          .advice = Filled(row.advice, failure, place)};
}

std::string WhyRefused(const Failure& failure, bool user_was_given) {
  if (failure.kind == kStatus && !AsksForLogin(failure)) {
    return "it answers with status " + std::to_string(failure.status);
  }
  return TextOf(failure, {.user_was_given = user_was_given}).line;
}

std::string WordOf(const Failure& failure) {
  switch (failure.kind) {
    case kNone:
      return "waiting";
    case kUnreachable:
      return "unreachable";
    case kTimedOut:
      return "timed-out";
    case kCutShort:
      return "cut-short";
    case kNoAnswer:
      return "no-answer";
    case kStatus:
      return AsksForLogin(failure) ? "login" : "status";
    case kNoPicture:
      return "no-picture";
    case kDamagedPicture:
      return "damaged-picture";
  }
  return {};
}

}  // namespace orbelcast
