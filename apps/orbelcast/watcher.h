#pragma once

#include <functional>
#include <iosfwd>
#include <memory>
#include <string>

#include "assembly/headless_platform.h"
#include "orbelcast/drawn_frames.h"
#include "orbelcast/exit_status.h"
#include "orbelcast/watch_options.h"
#include "viewer/interface.h"
#include "viewer/video_server_push.h"

namespace orbelcast {

/// A host without a window: one viewer on one camera, whose events it prints until it is time to end.
class Watcher {
 public:
  /// Prints events to `output`, one JSON object a line, and what people should know to `messages`.
  Watcher(WatchOptions options, std::ostream& output, std::ostream& messages);
  ~Watcher();
  Watcher(const Watcher&) = delete;
  Watcher& operator=(const Watcher&) = delete;

  /// Connects and watches until the options, a failure or a signal end it; writes the picture.
  ExitStatus Run();
  /// It is time to end: Run returns soon.
  void End() { end_.Complete(); }

  /// Called for each new picture, in the middle of drawing it: short work that neither yields nor waits.
  std::function<void()> on_picture;
  /// The newest picture as received; empty before the first.
  const FrameBytes& NewestFrame() const { return drawn_.Newest(); }

  /// The services underneath. What is drawn by their decoder is none of the viewer's pictures.
  Platform& Services() { return services_->Get(); }
  const VideoServerPush& Viewer() const { return *viewer_; }

 private:
  void GiveUp();
  void Configure();
  void Connect();
  void AfterConnect();
  void Note(const EventEntry& event, std::span<const EventArgument> arguments);
  void Disconnect();
  void Pause(EventQueue::Nanoseconds time);
  /// Why it could not be written; empty where it is.
  std::string WriteLastPicture();
  ExitStatus Outcome();
  std::string WhyNoPicture() const;

  const WatchOptions options_;
  std::ostream& output_;
  std::ostream& messages_;

  std::unique_ptr<HeadlessPlatform> services_;
  DrawnFrames drawn_;
  Platform platform_;  ///< The services, with `drawn_` before the decoder.
  std::shared_ptr<VideoServerPush> viewer_;

  Completion end_;  ///< It is time to end.
  bool connected_ = false;
  bool failed_ = false;   ///< Connect has failed.
  bool gave_up_ = false;  ///< No first picture came in time.
  int broken_at_ = -1;    ///< How many pictures there were when the connection was last reported broken.
  std::string status_;    ///< The last status text.
};

}  // namespace orbelcast
