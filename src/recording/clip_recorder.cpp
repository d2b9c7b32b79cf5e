#include "recording/clip_recorder.h"

#include <utility>

#include "recording/overwrite_question.h"

namespace orbelcast {

namespace {

constexpr const char* kTitle = "AVI Maker";
/// Of a picture in a clip: one of 8K, 7680 × 4320, is as large as players take.
constexpr std::int64_t kMaxPixels = 7680LL * 4320;
/// The size of a BMP file's header, before its information header.
constexpr std::size_t kFileHeaderBytes = 14;

AviSample SampleOf(const cDIB& bitmap) {
  return {bitmap.Width(), bitmap.Height(), bitmap.PointerToBits()};
}

}  // namespace

ClipRecorder::ClipRecorder(Platform& platform, PictureBox& conv, Host host)
    : platform_(platform), Conv(conv), host_(std::move(host)) {}

void ClipRecorder::AviStart() {
  if (recording_) return StopAvi();
  const auto path = AskFileName();
  if (!path || !MayReplace(*path)) return;
  platform_.files.Delete(*path);

  file_ = platform_.avi_files.Create(*path);
  if (!file_) return Fail("Error initializing AVI Engine. Can't create file.");
  if (!LoadIntoConv(host_.TakePicture())) return Fail("Can't create the first image.");
  const cDIB bitmap = BitmapOfConv();
  if (!file_->CreateStream(StreamOf(bitmap))) return Fail("Can't create compressed stream.");

  const auto choice = platform_.dialogs.ChooseCompression({.codecs = platform_.avi_files.Codecs()});
  if (ended_) return;
  if (!choice) return Release();
  // The file may be gone: the host may stop the clip while the dialog waits.
  if (!file_ || !file_->MakeCompressedStream(*choice)) return Fail("Can't make compressed stream.");
  if (!file_->SetFormat(bitmap.PointerToBitmapInfo())) return Fail("Can't select AVI format.");

  recording_ = true;
  frame_index_ = 1;
  host_.ShowRecording(true);
}

void ClipRecorder::StopAvi() {
  platform_.dialogs.ShowMessage({.text = "Done\r\nTotal frames: " + std::to_string(frame_index_),
                                 .title = kTitle,
                                 .icon = Dialogs::Icon::kInformation});
  if (ended_) return;
  recording_ = false;
  Release();
  host_.ShowRecording(false);
}

bool ClipRecorder::WriteFrame() {
  if (!recording_) return false;
  LoadIntoConv(host_.TakePicture());
  const cDIB bitmap = BitmapOfConv();
  const bool written = file_ && file_->Write(frame_index_, SampleOf(bitmap));
  ++frame_index_;
  return written;
}

void ClipRecorder::SkipTo(std::int32_t position) {
  if (recording_ && position > frame_index_) frame_index_ = position;
}

void ClipRecorder::End() {
  ended_ = true;
  recording_ = false;
  Release();
}

std::optional<std::string> ClipRecorder::AskFileName() {
  auto path = platform_.dialogs.AskSaveName({.title = "Choose the filename...", .filter = "Video Clip (*.avi)|*.avi"});
  if (ended_) return std::nullopt;
  return path;
}

bool ClipRecorder::MayReplace(const std::string& path) {
  if (platform_.files.LengthOf(path).value_or(0) == 0) return true;
  const auto answer = platform_.dialogs.ShowMessage(OverwriteQuestion());
  return answer == Dialogs::Answer::kYes && !ended_;
}

cDIB ClipRecorder::BitmapOfConv() const {
  const auto file = EncodeBitmap(Conv.Image());
  cDIB bitmap;
  if (!file.empty()) bitmap.CreateFromPackedDIBPointer(std::span(file).subspan(kFileHeaderBytes));
  return bitmap;
}

bool ClipRecorder::LoadIntoConv(const ShownPicture& shown) {
  if (const auto* jpeg = std::get_if<FrameBytes>(&shown)) return LoadIntoConv(*jpeg);
  const Surface& picture = *std::get<const Surface*>(shown);
  if (picture.Empty()) return false;
  SizeConv({picture.Width(), picture.Height()}).Draw(picture, 0, 0);
  return true;
}

bool ClipRecorder::LoadIntoConv(const FrameBytes& jpeg) {
  const auto size = platform_.jpeg_decoder.SizeOf(jpeg);
  if (!size || std::int64_t{size->width} * size->height > kMaxPixels) return false;
  // Beside Conv, which stays as it is where the picture turns out to be damaged.
  loaded_.Resize(size->width, size->height, 0);
  if (!platform_.jpeg_decoder.DrawOn({loaded_}, jpeg)) return false;
  SizeConv(*size).Swap(loaded_);
  return true;
}

Surface& ClipRecorder::SizeConv(Size size) {
  const auto scale = TwipsScale::Of(platform_.screen);
  Conv.SetScale(scale);
  Conv.Width = scale.TwipsX(size.width);
  Conv.Height = scale.TwipsY(size.height);
  return Conv.Canvas();
}

AviStreamInfo ClipRecorder::StreamOf(const cDIB& bitmap) const {
  AviStreamInfo info = host_.DeclaredRate();
  info.width = bitmap.Width();
  info.height = bitmap.Height();
  return info;
}

void ClipRecorder::Release() {
  if (file_) file_->Release();
  file_.reset();
  loaded_ = {};
}

void ClipRecorder::Fail(const std::string& text) {
  platform_.dialogs.Beep();
  platform_.dialogs.ShowMessage({.text = text, .title = {}});
}

}  // namespace orbelcast
