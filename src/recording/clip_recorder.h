#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "imaging/dib.h"
#include "platform/avi_file.h"
#include "platform/platform.h"
#include "recording/picture_file.h"
#include "toolkit/controls.h"
#include "toolkit/surface.h"

namespace orbelcast {

/// Records a viewer's pictures into an AVI clip: one picture each time its host says so.
///
/// The control that owns a recorder calls `AviStart` and `StopAvi` from handlers of the message loop (both ask people
/// questions, and wait for the answers), `WriteFrame` on each of its viewer's StreamInfo events, and `End` when its
/// host releases it; it keeps the recorder alive until the handlers in it have returned. Nothing throws; failures are
/// told in message boxes or skipped, as each method says.
///
/// A picture's pixels are those of the bitmap that a picture box would save: its own size, 24 bits, rows from the
/// bottom.
class ClipRecorder {
 public:
  /// The recorder's questions to the control that owns it. All three are set.
  struct Host {
    /// The picture to record, the one that the viewer's SaveImage would save.
    std::function<ShownPicture()> TakePicture;
    /// The pictures a second that the clip declares, `rate` / `scale`; only these two are filled.
    std::function<AviStreamInfo()> DeclaredRate;
    /// Recording has begun (true: hide "Save AVI", then show "Stop AVI") or ended (false: show "Save AVI", then hide
    /// "Stop AVI").
    std::function<void(bool recording)> ShowRecording;
  };

  /// The rate that a player declares: one more than the position of the choice in its frame-rate list.
  static AviStreamInfo RateOfListPosition(int position) { return {.scale = 1, .rate = position + 1}; }

  /// `conv` is the owner's hidden scratch picture box: each picture is loaded into it, and it takes the picture's size.
  ClipRecorder(Platform& platform, PictureBox& conv, Host host);
  ClipRecorder(const ClipRecorder&) = delete;
  ClipRecorder& operator=(const ClipRecorder&) = delete;

  /// Starts a clip: asks for its name and its compression, and takes a first picture for its size. While a clip is
  /// recorded it stops that one instead. A failing step is told in a message box and leaves the recorder idle, with
  /// its file still open until the next clip or StopAvi.
  void AviStart();
  /// Ends the clip: tells the number of the next position, then closes the file. Without a clip it tells all the same.
  void StopAvi();
  /// Writes the picture of this moment at the next position; nothing while no clip is recorded. A picture that cannot
  /// be loaded is the one before once more; any other failing step is skipped, and the position moves on. True when the
  /// clip has one picture more.
  bool WriteFrame();
  /// Skips to `position`, if the next one is before it: the positions between are empty frames.
  void SkipTo(std::int32_t position);
  /// The host has released the control: closes the file and asks nothing more.
  void End();

  bool AviRecording() const { return recording_; }
  /// The position of the next picture. The first of a clip is 1: position 0 stays empty.
  std::int32_t AviFrameIndex() const { return frame_index_; }

 private:
  std::optional<std::string> AskFileName();
  bool MayReplace(const std::string& path);
  /// False, and Conv keeps the picture that it had, where the new one cannot be loaded.
  bool LoadIntoConv(const ShownPicture& shown);
  bool LoadIntoConv(const FrameBytes& jpeg);
  Surface& SizeConv(Size size);
  cDIB BitmapOfConv() const;
  AviStreamInfo StreamOf(const cDIB& bitmap) const;
  void Release();
  void Fail(const std::string& text);

  Platform& platform_;
  PictureBox& Conv;
  Host host_;

  Surface loaded_;  ///< The target that the next picture is decoded into.
  std::unique_ptr<AviFile> file_;
  bool recording_ = false;
  std::int32_t frame_index_ = 0;
  bool ended_ = false;
};

}  // namespace orbelcast
