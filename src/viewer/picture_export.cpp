#include "viewer/picture_export.h"

namespace orbelcast {

void PictureExport::SaveImage(const std::string& Filename) const {
  platform_.files.Delete(Filename);
  const ShownPicture shown = PictureToSave();
  if (const auto* jpeg = std::get_if<FrameBytes>(&shown)) {
    platform_.files.Write(Filename, jpeg->Bytes());
  } else {
    platform_.files.Write(Filename, EncodeBitmap(*std::get<const Surface*>(shown)));
  }
}

ShownPicture PictureExport::PictureToSave() const {
  if (!on_.VideoStream.Visible) return &on_.Mira.Picture();
  if (on_.MultiCam.Enabled) return &on_.VideoStream.Image();
  return frames_.Newest();
}

void PictureExport::ImageOnClipboard() const {
  platform_.clipboard.Clear();
  platform_.clipboard.SetPicture(on_.VideoStream.Visible ? on_.VideoStream.Image() : on_.Mira.Picture());
}

std::vector<std::uint8_t> PictureExport::GetPictureArray() const {
  const auto bytes = frames_.Newest().Bytes();
  return {bytes.begin(), bytes.end()};
}

std::optional<Surface> PictureExport::GetPicture() const {
  Surface& buffer = on_.BuffPic.Canvas();
  if (!platform_.jpeg_decoder.DrawOn({buffer}, frames_.Newest())) return std::nullopt;
  return buffer;
}

void PictureExport::RenderPicture(std::int32_t PictureHdc, std::int32_t sX, std::int32_t sY) const {
  Surface* surface = platform_.device_contexts.Find(PictureHdc);
  if (surface == nullptr) return;
  // Both come from the decoding that serves the area, whether or not somebody has seen that.
  on_.VideoStream.Image().Settle();
  platform_.jpeg_decoder.DrawOn({*surface, sX, sY}, frames_.Newest());
}

}  // namespace orbelcast
