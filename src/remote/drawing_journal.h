#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <list>
#include <variant>
#include <vector>

#include "platform/frame_bytes.h"
#include "platform/picture_codec.h"
#include "toolkit/surface.h"

namespace orbelcast {

/// A drawing that a front end makes to have the surface that the control has.
struct Drawing {
  using Png = std::vector<std::uint8_t>;

  /// The place, in the surface's pixels. A JPEG is stretched to it; a PNG has its size, and its transparent pixels are
  /// blended.
  PixelBox box;
  /// A colour that fills the box, a frame as its camera sent it, or a picture that is no frame.
  std::variant<Color, FrameBytes, Png> what;
};

/// The drawings by which a front end on the far side of a wire shows a surface: those that are still to be seen, in
/// order, each with whether the front end has it.
///
/// A drawing that a later one covers is forgotten, taken or not: however slow the front end, it gets the newest picture
/// and no queue of old ones. Too many of them become one, the surface's pixels. Pictures are passed on as they came,
/// nothing is decoded for it.
class DrawingJournal final : public DrawingWatcher {
 public:
  /// Drawings kept; with one more they become one, the pixels.
  static constexpr std::size_t kMaxKept = 256;
  /// Pictures taken whose painting was not told yet. One is painted while the next one travels.
  static constexpr int kMaxOnTheWay = 2;

  /// `look` gives the surface, while the journal lives; `news` is called when there is something to take.
  DrawingJournal(std::function<const Surface&()> look, PictureCodec& codec, std::function<void()> news)
      : look_(std::move(look)), codec_(codec), news_(std::move(news)) {}

  void Filled(const PixelBox& box, Color color) override;
  void PictureDrawn(const FrameBytes& jpeg, const PixelBox& box) override;
  void SurfaceDrawn(const Surface& source, int x, int y) override;

  /// The surface is another one: all that was drawn before counts no more.
  void TakeAnew();
  /// Nobody sees the surface (nothing is to be taken), or somebody does again, who has drawn nothing yet.
  void SetSeen(bool seen);
  /// The front end has painted a picture that it took.
  void Painted();

  /// Whether a picture that it took is to be painted yet.
  bool AwaitsPainting() const { return on_the_way_ > 0; }

  /// The drawings that the front end does not have yet, from the oldest.
  std::vector<Drawing> Take();

 private:
  /// The surface's pixels, made when they are taken.
  struct Pixels {};
  struct Entry {
    PixelBox box;
    std::variant<Pixels, Color, FrameBytes, Drawing::Png> what;
    bool taken = false;
  };

  void Add(Entry entry);
  bool MayTake() const { return seen_ && on_the_way_ < kMaxOnTheWay; }
  void TellNews() const;
  Drawing ToDrawing(const Entry& entry) const;

  const std::function<const Surface&()> look_;
  PictureCodec& codec_;
  const std::function<void()> news_;
  std::list<Entry> entries_;
  bool seen_ = true;
  int on_the_way_ = 0;
};

}  // namespace orbelcast
