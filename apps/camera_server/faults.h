#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "http_server.h"
#include "settings.h"

/// Misbehaviour on request, a word each: what a camera, or another part of the server, does instead of answering as it
/// should.
namespace orbelcast::camera_server {

enum class FaultKind {
  kNone,
  kStatus,
  kDelay,
  kNever,
  kCut,
  kJpegCut,
  kReset,
  kGarbage,
  kJunkBody,
  kEndless,
  kEndlessChunked,
  kTrickle,
  kHeaders,
  kHuge,
};

/// A fault, and which of a camera's requests it meets. Written WORD, WORD:VALUE, and either with @N (every Nth request
/// only) or *N (the next N requests, then no more) behind.
struct Fault {
  FaultKind kind = FaultKind::kNone;
  std::optional<int> value;  ///< status, milliseconds, bytes or lines; none takes the word's default
  int every = 1;
  std::optional<int> times;
};

/// Throws std::invalid_argument with what is wrong.
Fault ParseFault(std::string_view text);
std::string FaultText(const Fault& fault);
/// One line a word, for --help.
std::string FaultHelp();

/// What has a fault besides the cameras, which are numbered from 1.
enum FaultPlace : int { kInfoPlace = 0, kCommandPlace = -1, kRelayPlace = -2 };

/// The faults of all places. Thread-safe.
class FaultPlan {
 public:
  /// From now on; requests are counted from here. kNone ends the place's fault.
  void Set(int place, const Fault& fault);
  /// What the place shall do with the request that has come; counts it.
  Fault Next(int place);
  /// The fault as it stands: of "the next N" those left.
  Fault Current(int place) const;

 private:
  struct Planned {
    Fault fault;
    int requests = 0;
  };
  mutable std::mutex mutex_;
  std::map<int, Planned> planned_;  // by place
};

/// Plans a fault for a camera, given by its number, for "all" cameras, or for "info", "command" or "relay". Throws
/// std::invalid_argument with what is wrong.
void PlanFault(const Settings& settings, std::string_view place, std::string_view fault, FaultPlan& plan);
/// PLACE=FAULT of every place, a line each.
std::string FaultLines(const Settings& settings, const FaultPlan& plan);

/// Makes a good reply misbehave.
Reply Misbehave(const Fault& fault, Reply reply);

}  // namespace orbelcast::camera_server
