// The picture that is shown, handed to the host.

#include "recording/picture_file.h"
#include "viewer/video_server_push.h"

namespace orbelcast {

void VideoServerPush::SaveImage(const std::string& Filename) {
  DeleteFile(Filename);
  const ShownPicture shown = PictureToSave();
  if (const auto* jpeg = std::get_if<FrameBytes>(&shown)) {
    WriteFile(Filename, jpeg->Bytes());
  } else {
    WriteFile(Filename, EncodeBitmap(*std::get<const Surface*>(shown)));
  }
}

ShownPicture VideoServerPush::PictureToSave() const {
  if (!VideoStream.Visible) return &Mira.Picture();
  if (MultiCam.Enabled) return &VideoStream.Image();
  return FrameBuffer;
}

void VideoServerPush::ImageOnClipboard() {
  platform_.clipboard.Clear();
  platform_.clipboard.SetPicture(VideoStream.Visible ? VideoStream.Image() : Mira.Picture());
}

std::vector<std::uint8_t> VideoServerPush::GetPictureArray() const {
  const auto bytes = FrameBuffer.Bytes();
  return {bytes.begin(), bytes.end()};
}

std::optional<Surface> VideoServerPush::GetPicture() {
  Surface& buffer = BuffPic.Canvas();
  if (!platform_.jpeg_decoder.DrawOn({buffer}, FrameBuffer)) return std::nullopt;
  return buffer;
}

void VideoServerPush::RenderPicture(std::int32_t PictureHdc, std::int32_t sX, std::int32_t sY) {
  Surface* surface = platform_.device_contexts.Find(PictureHdc);
  if (surface != nullptr) platform_.jpeg_decoder.DrawOn({*surface, sX, sY}, FrameBuffer);
}

}  // namespace orbelcast
