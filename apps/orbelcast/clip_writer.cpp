#include "orbelcast/clip_writer.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <limits>
#include <numeric>
#include <utility>
#include <variant>

#include "common/standard_stream.h"
#include "recording/clip_recorder.h"

namespace orbelcast {

namespace {

/// By the controls' recorder, whose questions are answered by the options.
class Compressing final : public ClipWriter {
 public:
  Compressing(Platform& services, const ClipOptions& options, ClipSource source)
      : answers_(options),
        platform_(services.With(answers_)),
        recorder_(platform_, conv_,
                  {.TakePicture = std::move(source.take_picture),
                   .DeclaredRate = [this, interval = std::move(source.interval)] { return rate_ = RateOf(interval()); },
                   .ShowRecording = [](bool) {}}) {}
  ~Compressing() override { recorder_.End(); }

  std::string Begin(const std::filesystem::path& place) override {
    answers_.place = place;
    recorder_.AviStart();
    begun_ = platform_.loop.Queue().Now();
    return recorder_.AviRecording() ? "" : answers_.complaint;
  }
  bool IsOpen() const override { return recorder_.AviRecording(); }
  bool Add() override {
    recorder_.SkipTo(PositionOfNow());
    return recorder_.WriteFrame();
  }
  void Finish() override { recorder_.StopAvi(); }
  double Seconds() const override { return static_cast<double>(recorder_.AviFrameIndex()) * rate_.scale / rate_.rate; }

 private:
  /// A person's answers, taken from the options.
  class Answers final : public Dialogs {
   public:
    explicit Answers(const ClipOptions& options) : options_(options) {}
    std::optional<std::string> AskSaveName(const SaveRequest&) override { return place.string(); }
    Answer ShowMessage(const MessageRequest& request) override {
      if (request.buttons == Buttons::kYesNo) return options_.overwrite ? Answer::kYes : Answer::kNo;
      if (request.icon != Icon::kInformation) complaint = request.text;
      return Answer::kOk;
    }
    std::optional<Compression> ChooseCompression(const CompressionRequest&) override { return options_.compression; }

    std::filesystem::path place;  ///< The clip's file.
    std::string complaint;        ///< The last failure that was told.

   private:
    const ClipOptions options_;
  };

  /// The recorder's first position; the one before it stays empty.
  static constexpr std::int32_t kFirstPosition = 1;

  /// The rate of pictures that come once in a timer's interval of whole milliseconds. (At 30 pictures a second that is
  /// 33 ms: a clip that declared 30 would lag behind its pictures.)
  static AviStreamInfo RateOf(int milliseconds) {
    const int divisor = std::gcd(1000, milliseconds);
    return {.scale = milliseconds / divisor, .rate = 1000 / divisor};
  }

  // Rounded down: a picture that is a little late does not leave an empty position after it.
  std::int32_t PositionOfNow() const {
    const std::chrono::duration<double> elapsed = platform_.loop.Queue().Now() - begun_;
    const double position = kFirstPosition + elapsed.count() * rate_.rate / rate_.scale;
    return static_cast<std::int32_t>(std::min(position, static_cast<double>(std::numeric_limits<std::int32_t>::max())));
  }

  Answers answers_;
  Platform platform_;
  PictureBox conv_;
  AviStreamInfo rate_;
  ClipRecorder recorder_;
  EventQueue::Nanoseconds begun_{};
};

/// The pictures as they were received, each at the time at which it was.
class Copying final : public ClipWriter {
 public:
  Copying(Platform& services, ClipContainer container, ClipSource source)
      : platform_(services), container_(container), source_(std::move(source)) {}

  std::string Begin(const std::filesystem::path& place) override {
    const auto size = platform_.jpeg_decoder.SizeOf(Picture());
    interval_ = std::chrono::milliseconds(source_.interval());
    const bool piped = IsStandardStream(place);
    clip_ = platform_.avi_files.CreateOfJpegs(
        piped ? "" : place.string(), {.container = container_, .size = size.value_or(Size{}), .interval = interval_});
    begun_ = platform_.loop.Queue().Now();
    return clip_ ? "" : "it cannot be written";
  }
  bool IsOpen() const override { return clip_ != nullptr; }
  bool Add() override {
    newest_ = std::chrono::duration_cast<std::chrono::milliseconds>(platform_.loop.Queue().Now() - begun_);
    return clip_->Write(Picture().Bytes(), newest_);
  }
  void Finish() override { clip_.reset(); }
  double Seconds() const override { return std::chrono::duration<double>(newest_ + interval_).count(); }

 private:
  FrameBytes Picture() const {
    const ShownPicture picture = source_.take_picture();
    const auto* const jpeg = std::get_if<FrameBytes>(&picture);
    return jpeg != nullptr ? *jpeg : FrameBytes();
  }

  Platform& platform_;
  const ClipContainer container_;
  const ClipSource source_;
  std::unique_ptr<JpegClip> clip_;
  EventQueue::Nanoseconds begun_{};
  std::chrono::milliseconds newest_{};  ///< When the newest picture came, from the first on.
  std::chrono::milliseconds interval_{};
};

}  // namespace

std::unique_ptr<ClipWriter> MakeClipWriter(Platform& services, const ClipOptions& options, ClipSource source) {
  if (options.copies) return std::make_unique<Copying>(services, ContainerOf(options.file), std::move(source));
  return std::make_unique<Compressing>(services, options, std::move(source));
}

}  // namespace orbelcast
