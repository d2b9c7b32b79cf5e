#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/platform.h"
#include "recording/picture_file.h"
#include "toolkit/controls.h"
#include "viewer/frame_view.h"

namespace orbelcast {

/// The picture that is shown, handed to the host. The methods are VideoServerPush's.
class PictureExport {
 public:
  struct Children {
    const PictureBox& VideoStream;
    PictureBox& BuffPic;
    const Image& Mira;
    const Timer& MultiCam;
  };

  PictureExport(Children children, Platform& platform, const FrameView& frames)
      : on_(children), platform_(platform), frames_(frames) {}

  void SaveImage(const std::string& Filename) const;
  ShownPicture PictureToSave() const;
  void ImageOnClipboard() const;
  std::vector<std::uint8_t> GetPictureArray() const;
  std::optional<Surface> GetPicture() const;
  void RenderPicture(std::int32_t PictureHdc, std::int32_t sX, std::int32_t sY) const;

 private:
  const Children on_;
  Platform& platform_;
  const FrameView& frames_;
};

}  // namespace orbelcast
