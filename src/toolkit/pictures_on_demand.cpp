#include "toolkit/pictures_on_demand.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "toolkit/surface.h"

namespace orbelcast {

namespace {

constexpr std::uint8_t kMarker = 0xff;
constexpr std::uint8_t kEndOfImage = 0xd9;

/// Larger pictures are drawn at once: a surface keeps up to two that nobody has seen.
constexpr std::size_t kMaxBytesKept = 4UL * 1024 * 1024;

/// Whether the picture has an end. It is at the end of the bytes, or a few before.
bool HasEnd(std::span<const std::uint8_t> bytes) {
  for (std::size_t at = bytes.size(); at >= 2; --at) {
    if (bytes[at - 2] == kMarker && bytes[at - 1] == kEndOfImage) return true;
  }
  return false;
}

/// A picture and its targets, each on a surface that waits for somebody to look.
class Picture final : public UnseenPicture {
 public:
  Picture(std::shared_ptr<JpegDecoder> decoder, FrameBytes jpeg)
      : decoder_(std::move(decoder)), jpeg_(std::move(jpeg)) {}

  /// `target`, which is on its surface already, with its size.
  void Add(const JpegTarget& target) {
    places_.push_back({target.surface.WhatIsUnseen(), target.width, target.height, target.x, target.y});
    serves_.width = std::max(serves_.width, target.width);
    serves_.height = std::max(serves_.height, target.height);
  }

  bool DrawOn(Surface& surface) override {
    if (damaged_) return false;
    std::vector<JpegTarget> targets;
    std::vector<std::shared_ptr<Surface::Unseen>> taken;
    for (const Place& place : places_) {
      const auto unseen = place.unseen.lock();
      if (!unseen) continue;
      Surface& its = *unseen->surface;
      if (&its != &surface) {
        auto others = its.TakeUnseen(*this);
        if (!others) continue;
        taken.push_back(std::move(others));
      }
      targets.push_back({its, place.width, place.height, place.x, place.y});
    }
    damaged_ = !decoder_->DrawOnAll(jpeg_, targets, serves_);
    if (!damaged_) return true;
    for (auto& others : taken) others->surface->GiveBack(others);
    return false;
  }

  bool DrawInto(const PixelMemory& memory, const Surface& surface) override {
    const auto place = std::ranges::find_if(places_, [&](const Place& its) {
      const auto unseen = its.unseen.lock();
      return unseen && unseen->surface == &surface;
    });
    const bool fits = place != places_.end() && place->x == 0 && place->y == 0 && place->width == memory.width &&
                      place->height == memory.height;
    if (!fits || damaged_) return false;
    damaged_ = !decoder_->DrawInto(memory, jpeg_, serves_);
    return !damaged_;
  }

 private:
  struct Place {
    std::weak_ptr<Surface::Unseen> unseen;
    int width;
    int height;
    int x;
    int y;
  };

  const std::shared_ptr<JpegDecoder> decoder_;
  const FrameBytes jpeg_;
  std::vector<Place> places_;
  Size serves_;
  bool damaged_ = false;
};

}  // namespace

bool IsLeftOut(const JpegTarget& target) {
  const auto refused = [](int side) { return side < 0 || side > Surface::kMaxSide; };
  return refused(target.width) || refused(target.height);
}

std::optional<Size> PicturesOnDemand::DrawAtOnce(const FrameBytes& jpeg, std::span<const JpegTarget> targets) {
  const auto size = DrawOnAll(jpeg, targets);
  for (const JpegTarget& target : targets) {
    if (!size || IsLeftOut(target)) continue;
    target.surface.TellPicture(jpeg, target.x, target.y, target.width == 0 ? size->width : target.width,
                               target.height == 0 ? size->height : target.height);
  }
  return size;
}

std::optional<Size> PicturesOnDemand::DrawWhenSeen(const FrameBytes& jpeg, std::span<const JpegTarget> targets) {
  if (jpeg.Size() > kMaxBytesKept) return DrawAtOnce(jpeg, targets);
  const auto size = SizeOf(jpeg);
  if (!size || !HasEnd(jpeg.Bytes()) || std::ranges::all_of(targets, IsLeftOut)) return std::nullopt;
  const auto picture = std::make_shared<Picture>(decoder_, jpeg);
  for (const JpegTarget& target : targets) {
    if (IsLeftOut(target)) continue;
    const JpegTarget sized{target.surface, target.width == 0 ? size->width : target.width,
                           target.height == 0 ? size->height : target.height, target.x, target.y};
    sized.surface.DrawWhenSeen(picture, sized.x, sized.y, sized.width, sized.height);
    picture->Add(sized);
    sized.surface.TellPicture(jpeg, sized.x, sized.y, sized.width, sized.height);
  }
  return size;
}

}  // namespace orbelcast
