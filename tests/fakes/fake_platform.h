#pragma once

#include <string>

#include "adapters/fiber/fiber_loop.h"
#include "adapters/posix/memory_clipboard.h"
#include "fakes/fake_avi_files.h"
#include "fakes/fake_dialogs.h"
#include "fakes/fake_http.h"
#include "fakes/manual_queue.h"
#include "platform/platform.h"

namespace orbelcast::fakes {

/// A decoder whose pictures are one colour: a "JPEG" is the bytes red, green, blue, width / 10, height / 10. Anything
/// shorter cannot be read; one without a height has a header, and cannot be drawn.
class FakeJpegDecoder final : public JpegDecoder {
 public:
  std::optional<Size> DrawOnAll(const FrameBytes& jpeg, std::span<const JpegTarget> targets, Size /*serves*/) override {
    const auto size = SizeOf(jpeg);
    if (!size || size->height == 0) return std::nullopt;
    const auto bytes = jpeg.Bytes();
    for (const JpegTarget& target : targets) {
      const int width = target.width == 0 ? size->width : target.width;
      const int height = target.height == 0 ? size->height : target.height;
      target.surface.FillBox(target.x, target.y, target.x + width - 1, target.y + height - 1,
                             Rgb(bytes[0], bytes[1], bytes[2]));
    }
    return size;
  }
  bool DrawInto(const PixelMemory& /*memory*/, const FrameBytes& /*jpeg*/, Size /*serves*/) override { return false; }
  std::optional<Size> SizeOf(const FrameBytes& jpeg) override {
    const auto bytes = jpeg.Bytes();
    if (bytes.size() < 5) return std::nullopt;
    return Size{bytes[3] * 10, bytes[4] * 10};
  }
};

/// Every picture is 16 × 16 (the first byte of the file is not looked at) and one colour.
class FakePictures final : public PictureCodec {
 public:
  Surface Decode(std::span<const std::uint8_t>) override { return {16, 16, Rgb(1, 2, 3)}; }
  std::vector<std::uint8_t> Encode(const Surface&) override { return {}; }
};

class FakeFiles final : public Files {
 public:
  std::string TemporaryDirectory() const override { return "/tmp/"; }
  std::string ModuleFolder() const override { return module_folder; }
  std::string module_folder = "/tmp/";
};

/// A screen whose scale a test sets before it makes a control.
class FakeScreen final : public Screen {
 public:
  int TwipsPerPixelX() const override { return twips_x; }
  int TwipsPerPixelY() const override { return twips_y; }
  int twips_x = 15;
  int twips_y = 15;
};

/// Everything that a control needs, with time that a test moves and a server that a test scripts.
struct FakePlatform {
  ManualQueue queue;
  FiberLoop loop{queue};
  ManualClock clock{queue};
  FakeScreen screen;
  TextMapper text_mapper;
  FakeFiles files;
  FakeHttp http{loop};
  FakeJpegDecoder jpeg_decoder;
  FakePictures pictures;
  MemoryClipboard clipboard;
  DeviceContexts device_contexts;
  Registry registry;
  FakeDialogs dialogs{loop};
  FakeAviFiles avi_files;
  Configuration configuration;
  FakePlatform() {
    http.block = [this](EventQueue::Nanoseconds time) { queue.Block(time); };
  }
  Platform platform{.loop = loop,
                    .clock = clock,
                    .screen = screen,
                    .text_mapper = text_mapper,
                    .files = files,
                    .http = http,
                    .jpeg_decoder = jpeg_decoder,
                    .pictures = pictures,
                    .clipboard = clipboard,
                    .device_contexts = device_contexts,
                    .registry = registry,
                    .dialogs = dialogs,
                    .avi_files = avi_files,
                    .configuration = configuration};
};

}  // namespace orbelcast::fakes
