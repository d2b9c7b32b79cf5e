#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "orbelcast/clip_options.h"
#include "platform/platform.h"
#include "recording/clip_recorder.h"

namespace orbelcast {

/// A clip that plays in real time: each picture's position is the moment at which it was added.
///
/// The recorder is the controls' own; its questions are answered by the options. A clip that is to replace another is
/// written beside it and replaces it once finished: until then, and where it fails, the old one stays.
class TimedClip {
 public:
  /// The rate of pictures that come once in a timer's interval of whole milliseconds. (At 30 pictures a second that is
  /// 33 ms: a clip that declared 30 would lag behind its pictures.)
  static AviStreamInfo RateOfInterval(int milliseconds);

  /// `take_picture` gives the picture of the moment; `rate` how often pictures come, asked for at the first one.
  TimedClip(Platform& services, ClipOptions options, std::function<ShownPicture()> take_picture,
            std::function<AviStreamInfo()> rate);
  ~TimedClip();
  TimedClip(const TimedClip&) = delete;
  TimedClip& operator=(const TimedClip&) = delete;

  /// Adds the picture of this moment; the first one begins the clip. False where it fails; see WhyNot.
  bool Add();
  /// Finishes the file. WhyNot gives an error.
  void Finish();

  int Pictures() const { return pictures_; }
  /// How long the clip plays so far.
  double Seconds() const;
  /// The reason why there is no clip, for people; empty where nothing went wrong.
  const std::string& WhyNot() const { return why_not_; }
  /// A description of the clip, for people: "12.0 s, 120 pictures, 1.3 MB".
  std::string Summary() const;

 private:
  /// A person's answers, taken from the options.
  class Answers final : public Dialogs {
   public:
    explicit Answers(const ClipOptions& options) : options_(options) {}
    std::optional<std::string> AskSaveName(const SaveRequest&) override { return place.string(); }
    Answer ShowMessage(const MessageRequest& request) override;
    std::optional<Compression> ChooseCompression(const CompressionRequest&) override { return options_.compression; }

    std::filesystem::path place;  ///< The clip's file.
    std::string complaint;        ///< The last failure that was told.

   private:
    const ClipOptions& options_;
  };

  bool Begin();
  bool IsBeside() const { return answers_.place != target_; }
  void KeepBeside();
  std::int32_t PositionOfNow() const;

  const ClipOptions options_;
  const std::filesystem::path target_;  ///< The file that its name leads to.
  Answers answers_;
  Platform platform_;
  PictureBox conv_;
  std::function<AviStreamInfo()> ask_rate_;
  AviStreamInfo rate_;
  ClipRecorder recorder_;
  EventQueue::Nanoseconds begun_{};
  int pictures_ = 0;
  std::string why_not_;
};

}  // namespace orbelcast
