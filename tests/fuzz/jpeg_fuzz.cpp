// Any bytes as a picture, drawn at sizes that take each of the decoder's ways.

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <vector>

#include "adapters/jpeg/jpeg_decoder.h"
#include "toolkit/pictures_on_demand.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using orbelcast::FrameBytes;
  using orbelcast::JpegTarget;
  using orbelcast::PicturesOnDemand;
  using orbelcast::Surface;
  using orbelcast::TurboJpegDecoder;
  static TurboJpegDecoder decoder;
  static Surface area(64, 48, orbelcast::Rgb(1, 2, 3));
  const FrameBytes frame(std::vector<std::uint8_t>(data, data + size));
  // Drawn when somebody looks, it is what it would have been at once, or leaves what was there.
  static PicturesOnDemand on_demand(std::make_shared<TurboJpegDecoder>());
  static Surface unseen(64, 48);
  static Surface unseen_thumbnail(89, 82);
  unseen = area;
  const JpegTarget later[]{{unseen, 64, 48}, {unseen_thumbnail, 100, 100}};
  on_demand.DrawWhenSeen(frame, later);
  std::vector<std::uint32_t> straight(64 * 48);
  const bool looked = unseen.LookInto({straight.data(), 64, 48, 40, 64});
  const Surface before = area;
  static Surface thumbnail(89, 82);
  const JpegTarget together[]{{area, 64, 48}, {thumbnail, 100, 100}};
  // A picture that cannot be read leaves the surface as it was.
  if (!decoder.DrawOnAll(frame, together) && !std::ranges::equal(area.Pixels(), before.Pixels())) std::abort();
  if (!std::ranges::equal(unseen.Pixels(), area.Pixels())) std::abort();
  if (looked && !std::equal(straight.begin(), straight.begin() + 64 * 40, area.Pixels().begin())) std::abort();
  decoder.DrawOn({thumbnail, 30, 30}, frame);
  decoder.DrawOn({area, 30, 30, -5, 40}, frame);
  static Surface native(100, 100);
  const FrameBytes again(std::vector<std::uint8_t>(data, data + size));
  const auto promised = decoder.SizeOf(again);
  const auto shown = decoder.DrawOn({native}, again);
  if (shown && (!promised || shown->width != promised->width || shown->height != promised->height)) std::abort();
  return 0;
}
