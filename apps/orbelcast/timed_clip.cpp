#include "orbelcast/timed_clip.h"

#include <cstdio>
#include <filesystem>
#include <system_error>
#include <utility>

#include "adapters/posix/named_file.h"
#include "common/standard_stream.h"

namespace orbelcast {

namespace {

std::string SizeText(std::uintmax_t bytes) {
  const char* unit = bytes < 1'000'000 ? "kB" : "MB";
  char text[32];
  std::snprintf(text, sizeof text, "%.1f %s", static_cast<double>(bytes) / (bytes < 1'000'000 ? 1e3 : 1e6), unit);
  return text;
}

}  // namespace

TimedClip::TimedClip(Platform& services, ClipOptions options, ClipSource source)
    : options_(std::move(options)),
      target_(FollowLinks(options_.file)),
      place_(target_),
      writer_(MakeClipWriter(services, options_, std::move(source))) {}

bool TimedClip::Add() {
  if (!writer_->IsOpen() && (pictures_ > 0 || !Begin())) return false;
  if (!writer_->Add()) {
    why_not_ = IsStandardStream(place_) ? "it takes no more" : "could not write the next picture; is the disk full?";
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
  if (replaces) place_ = NameBeside(target_);
  why_not_ = writer_->Begin(place_);
  return writer_->IsOpen();
}

void TimedClip::Finish() {
  if (!writer_->IsOpen()) return;
  writer_->Finish();
  if (!IsBeside()) return;
  if (pictures_ == 0) {
    std::error_code ignored;
    std::filesystem::remove(place_, ignored);
    return;
  }
  if (!why_not_.empty()) return KeepBeside();
  why_not_ = PutInPlace(place_, target_);
  if (!why_not_.empty()) return KeepBeside();
  place_ = target_;
}

void TimedClip::KeepBeside() {
  why_not_ += "; the old clip is as it was, the new one is " + place_.string();
}

std::string TimedClip::Summary() const {
  std::error_code error;
  const auto size = std::filesystem::file_size(place_, error);
  char seconds[32];
  std::snprintf(seconds, sizeof seconds, "%.1f s", Seconds());
  return std::string(seconds) + ", " + std::to_string(pictures_) + (pictures_ == 1 ? " picture" : " pictures") +
         (IsStandardStream(place_) ? "" : ", " + SizeText(error ? 0 : size));
}

}  // namespace orbelcast
