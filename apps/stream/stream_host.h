#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "adapters/http/yielding_http.h"
#include "assembly/headless_platform.h"
#include "common/pixel_size.h"
#include "platform/message_loop.h"
#include "stream/drawn_pictures.h"
#include "stream/noted_http.h"
#include "stream/stream_options.h"
#include "viewer/video_server_push.h"

namespace orbelcast {

/// A host without a window: one viewer on a platform without a screen, which runs until it is time to end.
class StreamHost {
 public:
  /// kYielding: a request that the viewer sends in one go suspends only the handler that sends it.
  enum class Requests { kAsSent, kYielding };
  /// Each request is told on standard error where `tells`.
  explicit StreamHost(Requests requests = Requests::kAsSent, bool tells = false);
  ~StreamHost();
  StreamHost(const StreamHost&) = delete;
  StreamHost& operator=(const StreamHost&) = delete;

  VideoServerPush& Viewer() { return *viewer_; }
  const VideoServerPush& Viewer() const { return *viewer_; }
  /// The viewer's own services.
  Platform& Services() { return platform_; }
  /// The underlying services, whose decoder does not count its pictures as the viewer's.
  Platform& ServicesUnderneath() { return services_->Get(); }
  /// How the requests ended.
  const NotedHttp& Requested() const { return noted_; }
  DrawnPictures& Pictures() { return pictures_; }
  const DrawnPictures& Pictures() const { return pictures_; }

  /// Sets the size of the video area.
  void Resize(Size pixels);
  /// Connects to the camera that the options name. It is time to end where it does not answer, unless they say
  /// `auto_reconnect`: then it is tried again until it has. `once` fetches a single picture.
  void Connect(const StreamOptions& options, bool once);
  /// Fetches a single picture, and then calls `then`, whatever came of it, unless a newer fetch took over meanwhile.
  void FetchOne(const StreamOptions& options, const std::function<void()>& then);
  void EndAfter(double seconds);
  /// Ends where no picture has come by then; `GaveUp` tells.
  void EndWithoutPictureAfter(double seconds);
  bool GaveUp() const { return gave_up_; }
  /// Why no picture has come, where none has; of the newest request that was answered or failed.
  Failure LastFailure() const { return failure_; }

  /// Calls `begin`, then runs the loop until End or Ctrl-C.
  void Run(const std::function<void()>& begin);
  /// Makes Run return soon. Only the first call has an effect.
  void End();
  bool HasEnded() const { return end_.IsDone(); }
  /// Called by the first End, before Run returns.
  std::function<void()> on_end;

  /// Runs the loop for that time.
  void Pause(EventQueue::Nanoseconds time);

 private:
  EventQueue& Queue() { return platform_.loop.Queue(); }
  void NoteFailure();

  std::unique_ptr<HeadlessPlatform> services_;
  DrawnPictures pictures_;
  YieldingHttp requests_;
  NotedHttp noted_;
  Platform platform_;
  std::shared_ptr<VideoServerPush> viewer_;
  Completion end_;
  bool gave_up_ = false;
  std::uint64_t fetches_ = 0;
  Failure failure_;
};

}  // namespace orbelcast
