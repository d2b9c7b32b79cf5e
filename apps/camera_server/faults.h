#pragma once

#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "camera_server/http.h"

/// Misbehaviour on request, a word each, of a camera or another part of the server: in place of the answer as it should
/// be.
namespace orbelcast::camera_server {

/// The places that have faults besides the cameras, whose places are their numbers.
inline constexpr std::string_view kInfoPlace = "info";
inline constexpr std::string_view kCommandPlace = "command";
inline constexpr std::string_view kRelayPlace = "relay";

/// A row of the table of faults.
struct FaultKind;

/// A fault, and which of a place's requests it meets. Written WORD, WORD:VALUE, and either with @N (every Nth request
/// only) or *N (the next N requests, then no more) behind.
struct Fault {
  const FaultKind* kind;
  std::optional<int> value{};  ///< status, milliseconds, bytes or lines; none takes the word's default
  int every = 1;
  std::optional<int> times{};
};

/// One line a word, for --help.
std::string FaultHelp();

/// The faults of all places. Thread-safe.
class FaultPlan {
 public:
  explicit FaultPlan(int cameras);
  /// Plans a fault for a place, or for "all" cameras, from now on; requests are counted from here. Throws
  /// std::invalid_argument with what is wrong.
  void Set(std::string_view place, std::string_view fault);
  /// Makes the answer to the place's next request misbehave, where that is planned; counts the request.
  Response Apply(std::string_view place, Response response);
  /// PLACE=FAULT of every place, a line each: of "the next N" those left.
  std::string Lines() const;

 private:
  struct Place {
    std::string name;
    Fault fault;
    int requests = 0;
  };
  mutable std::mutex mutex_;
  std::vector<Place> places_;
};

}  // namespace orbelcast::camera_server
