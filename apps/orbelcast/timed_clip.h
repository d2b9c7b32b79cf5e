#pragma once

#include <memory>
#include <string>

#include "orbelcast/clip_options.h"
#include "orbelcast/clip_writer.h"

namespace orbelcast {

/// A clip that plays in real time: each picture's position is the moment at which it was added.
///
/// One that is to replace another is written beside it and replaces it once finished: until then, and where it fails,
/// the old one stays. Standard output is written to as it comes.
class TimedClip {
 public:
  TimedClip(Platform& services, ClipOptions options, ClipSource source);

  /// Adds the picture of this moment; the first one begins the clip. False where it fails; see WhyNot.
  bool Add();
  /// Finishes the file. WhyNot gives an error.
  void Finish();

  int Pictures() const { return pictures_; }
  /// How long the clip plays so far.
  double Seconds() const { return writer_->Seconds(); }
  /// The reason why there is no clip, for people; empty where nothing went wrong.
  const std::string& WhyNot() const { return why_not_; }
  /// A description of the clip, for people: "12.0 s, 120 pictures, 1.3 MB".
  std::string Summary() const;

 private:
  bool Begin();
  bool IsBeside() const { return place_ != target_; }
  void KeepBeside();

  const ClipOptions options_;
  const std::filesystem::path target_;  ///< The file that its name leads to.
  std::filesystem::path place_;         ///< The file that the clip is in.
  const std::unique_ptr<ClipWriter> writer_;
  int pictures_ = 0;
  std::string why_not_;
};

}  // namespace orbelcast
