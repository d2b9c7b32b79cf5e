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

constexpr std::string_view kAsksForAnotherLogin =
    "it asks for another user name or password; give --credentials FILE, or --user and ORBELCAST_PASSWORD";
constexpr std::string_view kNotReadable = "what it sent is no picture that can be read";
constexpr std::string_view kNoJpeg = "the answer is no JPEG picture that can be read";
constexpr std::string_view kGiveAPicture = "give the address of a single JPEG picture, not of a page or of a stream";
constexpr std::string_view kNothingThere = "There is no picture at {address}.";
constexpr std::string_view kNoSuchCamera = "there is no such camera (status {status})";
constexpr std::string_view kInfoLists = "'orbelcast info' lists the server's cameras and their addresses";
constexpr std::string_view kIsItConnected = "check that the camera itself is on and connected to its server";

using enum FailureKind;

// A status before all others of its kind.
constexpr std::array kRows{
    Row{kNone, kAny, "it had not answered", "", "", ""},
    Row{kNoAnswer, kAny, "it does not answer as a web server; 'orbelcast doctor' finds out why",
        "{address} does not answer. Is the address right, and is the camera on?", "no complete answer within {limit}",
        kIsItConnected},
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
    Row{kNoPicture, kAny, kNotReadable,
        "What is at {address} is no JPEG picture. Give the whole address of one; a camera server is opened as "
        "{server}, "
        "without http://.",
        kNoJpeg, kGiveAPicture},
    Row{kDamagedPicture, kAny, kNotReadable, "The picture at {address} is damaged.", kNoJpeg, kGiveAPicture},
};

/// The row of the failure; some failures share their advice.
const Row& RowOf(const Failure& failure) {
  const bool no_answer = failure.kind == kUnreachable || failure.kind == kTimedOut || failure.kind == kCutShort;
  const FailureKind kind = no_answer ? kNoAnswer : failure.kind;
  const int status = failure.status == kForbidden ? kUnauthorized : failure.status;
  return *std::ranges::find_if(
      kRows, [&](const Row& row) { return row.kind == kind && (row.status == status || row.status == kAny); });
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

FailureText TextOf(const Failure& failure, const FailurePlace& place) {
  const Row& row = RowOf(failure);
  return {.line = Filled(row.line, failure, place),
          .notice = Filled(row.notice, failure, place),
          .found = Filled(row.found, failure, place),
          .advice = Filled(row.advice, failure, place)};
}

std::string WhyServerRefuses(int status) {
  if (status == kUnauthorized) return std::string(kAsksForAnotherLogin);
  return "it answers with status " + std::to_string(status);
}

}  // namespace orbelcast
