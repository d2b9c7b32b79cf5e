#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "common/exit_status.h"
#include "orbelcast/problem.h"
#include "stream/stream_host.h"

namespace orbelcast {

/// A picture of a camera every so many seconds, each asked for on its own.
struct SeriesOptions {
  StreamOptions stream;
  std::string name;  ///< With strftime's conversions, by which each picture has a file of its own.
  double every = 60;
  double time_out = 60;           ///< For each picture.
  std::optional<int> pictures;    ///< End after that many.
  std::optional<double> seconds;  ///< End after that time.
};

/// Takes and saves them until the options or a signal end it. A picture that does not come is told and left out; a file
/// that cannot be written ends it.
class SnapshotSeries {
 public:
  explicit SnapshotSeries(const SeriesOptions& options);

  /// kWorked where at least one picture was saved.
  ExitStatus Run();

  /// Told of each picture that was saved, and of each that was not.
  std::function<void(const std::string& file, const FrameBytes& picture)> on_saved;
  std::function<void(const Problem&)> on_problem;

 private:
  void TakeNext();
  void Save();
  void TellWhyNot();
  EventQueue& Queue() { return host_.Services().loop.Queue(); }

  const SeriesOptions& options_;
  StreamHost host_;
  EventQueue::Nanoseconds due_{};
  std::uint64_t number_ = 0;  ///< Of the picture that is being fetched.
  bool fetching_ = false;
  int counted_ = 0;
  int saved_ = 0;
  bool unwritable_ = false;
};

}  // namespace orbelcast
