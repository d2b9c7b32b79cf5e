#pragma once

#include <functional>
#include <iosfwd>
#include <optional>
#include <string>

#include "common/exit_status.h"
#include "interface/events.h"
#include "orbelcast/problem.h"
#include "orbelcast/watch_options.h"
#include "stream/stream_host.h"

namespace orbelcast {

/// A host without a window that watches one camera, printing the viewer's events.
class Watcher {
 public:
  /// Prints events to `output`, one JSON object a line, and messages for people to `messages`.
  Watcher(WatchOptions options, std::ostream& output, std::ostream& messages);

  /// Connects and watches until the options, a failure or a signal end it; writes the picture.
  ExitStatus Run();

  /// Why it did not go as asked, as it was told; nothing where it did.
  const std::optional<Problem>& WhatWentWrong() const { return problem_; }

  /// Called for each new picture, in the middle of drawing it: short work that neither yields nor waits.
  std::function<void()> on_picture;

  StreamHost& Host() { return host_; }
  const StreamHost& Host() const { return host_; }

 private:
  void Begin();
  void NotePicture();
  void NoteEvent(const EventEntry& event, std::span<const EventArgument> arguments);
  /// Why it could not be written; empty where it is.
  std::string WriteLastPicture();
  ExitStatus Outcome();
  Problem WhyNoPicture() const;
  ExitStatus Fail(Problem problem, ExitStatus status);

  const WatchOptions options_;
  std::ostream& output_;
  std::ostream& messages_;
  StreamHost host_{StreamHost::Requests::kAsSent, options_.stream.messages.verbose};
  std::optional<Problem> problem_;
  bool failed_ = false;  ///< Connect has failed.
  int broken_at_ = -1;   ///< How many pictures there were when the connection was last reported broken.
};

}  // namespace orbelcast
