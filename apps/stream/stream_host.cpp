#include "stream/stream_host.h"

#include "common/stop_signals.h"
#include "stream/seconds.h"
#include "toolkit/twips.h"

namespace orbelcast {

StreamHost::StreamHost(Requests requests, bool tells)
    : services_(std::make_unique<HeadlessPlatform>()),
      pictures_(services_->Get().jpeg_decoder),
      requests_(services_->Get().http),
      noted_(requests == Requests::kYielding ? static_cast<HttpRequestFactory&>(requests_) : services_->Get().http,
             {.tells = tells}),
      platform_(services_->Get().With(pictures_).With(noted_)),
      viewer_(VideoServerPush::Create(platform_)) {}

StreamHost::~StreamHost() {
  viewer_.reset();
  // Ends the handlers that still wait; they go by the platform and the decoder, which therefore end after it.
  services_.reset();
}

void StreamHost::Resize(Size pixels) {
  const TwipsScale scale = TwipsScale::Of(platform_.screen);
  viewer_->Resize(scale.TwipsX(pixels.width), scale.TwipsY(pixels.height));
}

// As a handler: what it waits for does not hold up the end.
void StreamHost::Connect(const StreamOptions& options, bool once) {
  if (HasEnded()) return;
  platform_.loop.RunHandler([this, options, once, viewer = viewer_.get()]() mutable {
    viewer->Connect(options.url, once);
    if (HasEnded() || viewer_->MasterTimer.Enabled) return;
    NoteFailure();
    if (!options.auto_reconnect || pictures_.Count() > 0) return End();
    Queue().ArmTimer(kRetryAfter, [this, options, once] { Connect(options, once); });
  });
}

void StreamHost::FetchOne(const StreamOptions& options, const std::function<void()>& then) {
  failure_ = {};
  platform_.loop.RunHandler([this, url = options.url, then, mine = ++fetches_]() mutable {
    viewer_->Connect(url, true);
    if (mine != fetches_) return;
    NoteFailure();
    then();
  });
}

void StreamHost::EndAfter(double seconds) {
  Queue().ArmTimer(Seconds(seconds), [this] { End(); });
}

void StreamHost::EndWithoutPictureAfter(double seconds) {
  Queue().ArmTimer(Seconds(seconds), [this] {
    if (pictures_.Count() > 0 || HasEnded()) return;
    gave_up_ = true;
    End();
  });
}

void StreamHost::Run(const std::function<void()>& begin) {
  const StopSignals signals(Queue(), [this] { End(); });
  begin();
  platform_.loop.Wait(end_);
}

void StreamHost::End() {
  if (HasEnded()) return;
  NoteFailure();
  if (on_end) on_end();
  end_.Complete();
}

// A new attempt, and a disconnection, reset the viewer's failure: the last one is kept here.
void StreamHost::NoteFailure() {
  if (const Failure failure = viewer_->LastFailure(); failure.kind != FailureKind::kNone) failure_ = failure;
}

void StreamHost::Pause(EventQueue::Nanoseconds time) {
  Completion over;
  Queue().ArmTimer(time, [&over] { over.Complete(); });
  platform_.loop.Wait(over);
}

}  // namespace orbelcast
