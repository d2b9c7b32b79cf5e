#include "orbelcast/watcher.h"

#include <chrono>
#include <ostream>
#include <sstream>
#include <utility>

#include "common/shown_text.h"
#include "orbelcast/event_json.h"
#include "orbelcast/picture_file.h"
#include "stream/failure_text.h"

namespace orbelcast {

namespace {

/// The time given to the motion scan of the last picture, after it was drawn.
constexpr std::chrono::milliseconds kSettle{20};

}  // namespace

Watcher::Watcher(WatchOptions options, std::ostream& output, std::ostream& messages)
    : options_(std::move(options)), output_(output), messages_(messages) {}

ExitStatus Watcher::Run() {
  host_.Run([this] { Begin(); });
  // The frame loop ends first, so that the newest picture's events come before those of the end.
  host_.Viewer().ToogleClock(false);
  if (options_.stream.Motion()) host_.Pause(kSettle);
  if (!failed_) host_.Viewer().Disconnect();  // A failed Connect has done so itself.
  return Outcome();
}

void Watcher::Begin() {
  ListenToAll(host_.Viewer().Events, [this](const EventEntry& event, std::span<const EventArgument> arguments) {
    NoteEvent(event, arguments);
  });
  host_.Pictures().on_picture = [this] { NotePicture(); };
  // Those that are counted are to be good ones.
  host_.Pictures().decodes_all = options_.decodes_all || options_.frames || options_.once;
  if (options_.seconds) host_.EndAfter(*options_.seconds);
  if (options_.time_out) host_.EndWithoutPictureAfter(*options_.time_out);
  host_.Resize(options_.size);
  Configure(host_.Viewer(), options_.stream);
  host_.Connect(options_.stream, options_.once);
}

void Watcher::NotePicture() {
  if (on_picture) on_picture();
  if (options_.frames && host_.Pictures().Count() >= *options_.frames) host_.End();
}

void Watcher::NoteEvent(const EventEntry& event, std::span<const EventArgument> arguments) {
  if (event.name == "ConnectionFailed") failed_ = true;
  if (event.name == "ConnectionBroken") broken_at_ = host_.Pictures().Count();
  if (options_.events && !options_.events->contains(event.name)) return;
  if (!PrintViewerEvent(output_, event, arguments)) host_.End();
}

ExitStatus Watcher::Outcome() {
  const int pictures = host_.Pictures().Count();
  if (pictures == 0) return Fail(WhyNoPicture(), kNoPictures);
  if (!options_.picture.empty()) {
    const std::string why = WriteLastPicture();
    if (!why.empty()) return Fail(WhyUnwritten(options_.picture, why), kBadUsage);
  }
  if (broken_at_ != pictures) return kWorked;
  return Fail({.kind = "broken",
               .text = "the connection to " + MaskedAddress(options_.stream.url).Text() + " was broken at the end"},
              kNoPictures);
}

Problem Watcher::WhyNoPicture() const {
  const Failure failure = host_.LastFailure();
  const std::string& from = options_.from.empty() ? options_.stream.url : options_.from;
  std::ostringstream text;
  text << "no picture from " << MaskedAddress(from).Text() << ": "
       << TextOf(failure, {.user_was_given = !options_.stream.access.user.empty()}).line;
  if (host_.GaveUp()) text << "; gave up after " << *options_.time_out << " s (--timeout S waits longer)";
  return Problem::Of(host_.GaveUp() && failure.kind == FailureKind::kNone ? Failure{FailureKind::kTimedOut} : failure,
                     text.str());
}

ExitStatus Watcher::Fail(Problem problem, ExitStatus status) {
  problem_ = std::move(problem);
  Tell(*problem_, messages_);
  return status;
}

std::string Watcher::WriteLastPicture() {
  if (options_.picture_as_sent || FormatOf(options_.picture) == PictureFormat::kJpeg) {
    return WritePicture(options_.picture, host_.Pictures().Newest().Bytes());
  }
  return WritePicture(options_.picture, host_.Viewer().VideoStream.Image(), host_.Services().pictures);
}

}  // namespace orbelcast
