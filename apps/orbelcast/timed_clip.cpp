#include "orbelcast/timed_clip.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <limits>
#include <numeric>
#include <utility>

#include "adapters/posix/named_file.h"

namespace orbelcast {

namespace {

/// The recorder's first position; the one before it stays empty.
constexpr std::int32_t kFirstPosition = 1;

std::string SizeText(std::uintmax_t bytes) {
  const char* unit = bytes < 1'000'000 ? "kB" : "MB";
  char text[32];
  std::snprintf(text, sizeof text, "%.1f %s", static_cast<double>(bytes) / (bytes < 1'000'000 ? 1e3 : 1e6), unit);
  return text;
}

}  // namespace

AviStreamInfo TimedClip::RateOfInterval(int milliseconds) {
  const int divisor = std::gcd(1000, milliseconds);
  return {.scale = milliseconds / divisor, .rate = 1000 / divisor};
}

TimedClip::TimedClip(Platform& services, ClipOptions options, std::function<ShownPicture()> take_picture,
                     std::function<AviStreamInfo()> rate)
    : options_(std::move(options)),
      target_(FollowLinks(options_.file)),
      answers_(options_),
      platform_(services.With(answers_)),
      ask_rate_(std::move(rate)),
      recorder_(platform_, conv_,
                {.TakePicture = std::move(take_picture),
                 .DeclaredRate = [this] { return rate_ = ask_rate_(); },
                 .ShowRecording = [](bool) {}}) {}

TimedClip::~TimedClip() {
  recorder_.End();
}

bool TimedClip::Add() {
  if (!recorder_.AviRecording() && (pictures_ > 0 || !Begin())) return false;
  recorder_.SkipTo(PositionOfNow());
  if (!recorder_.WriteFrame()) {
    why_not_ = "could not write the next picture; is the disk full?";
    return false;
  }
  ++pictures_;
  return true;
}

bool TimedClip::Begin() {
  const bool replaces = HasContent(target_);
  if (replaces && !options_.overwrite) {
    why_not_ = "there is a file of that name by now";
    return false;
  }
  answers_.place = replaces ? NameBeside(target_) : target_;
  recorder_.AviStart();
  begun_ = platform_.loop.Queue().Now();
  if (!recorder_.AviRecording()) why_not_ = answers_.complaint;
  return recorder_.AviRecording();
}

void TimedClip::Finish() {
  if (!recorder_.AviRecording()) return;
  recorder_.StopAvi();
  if (!IsBeside()) return;
  if (pictures_ == 0) return DeleteFile(answers_.place.string());
  if (!why_not_.empty()) return KeepBeside();
  why_not_ = PutInPlace(answers_.place, target_);
  if (!why_not_.empty()) return KeepBeside();
  answers_.place = target_;
}

void TimedClip::KeepBeside() {
  why_not_ += "; the old clip is as it was, the new one is " + answers_.place.string();
}

double TimedClip::Seconds() const {
  return static_cast<double>(recorder_.AviFrameIndex()) * rate_.scale / rate_.rate;
}

std::string TimedClip::Summary() const {
  std::error_code error;
  const auto size = std::filesystem::file_size(answers_.place, error);
  char seconds[32];
  std::snprintf(seconds, sizeof seconds, "%.1f s", Seconds());
  return std::string(seconds) + ", " + std::to_string(pictures_) + (pictures_ == 1 ? " picture, " : " pictures, ") +
         SizeText(error ? 0 : size);
}

// Rounded down: a picture that is a little late does not leave an empty position after it.
std::int32_t TimedClip::PositionOfNow() const {
  const std::chrono::duration<double> elapsed = platform_.loop.Queue().Now() - begun_;
  const double position = kFirstPosition + elapsed.count() * rate_.rate / rate_.scale;
  return static_cast<std::int32_t>(std::min(position, static_cast<double>(std::numeric_limits<std::int32_t>::max())));
}

Dialogs::Answer TimedClip::Answers::ShowMessage(const MessageRequest& request) {
  if (request.buttons == Buttons::kYesNo) return options_.overwrite ? Answer::kYes : Answer::kNo;
  if (request.icon != Icon::kInformation) complaint = request.text;
  return Answer::kOk;
}

}  // namespace orbelcast
