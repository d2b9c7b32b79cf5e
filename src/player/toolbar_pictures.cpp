#include "player/toolbar_pictures.h"

#include "player/toolbar.h"

namespace orbelcast::resources {

// Embedded by the build, each under its file's name.
// NOLINTBEGIN(readability-identifier-naming)
extern const std::span<const std::uint8_t> alerts_png;
extern const std::span<const std::uint8_t> archive_end_png;
extern const std::span<const std::uint8_t> archive_top_png;
extern const std::span<const std::uint8_t> cameras_png;
extern const std::span<const std::uint8_t> full_screen_png;
extern const std::span<const std::uint8_t> information_png;
extern const std::span<const std::uint8_t> input_output_png;
extern const std::span<const std::uint8_t> live_png;
extern const std::span<const std::uint8_t> log_png;
extern const std::span<const std::uint8_t> message_png;
extern const std::span<const std::uint8_t> play_png;
extern const std::span<const std::uint8_t> reverse_play_png;
extern const std::span<const std::uint8_t> save_avi_png;
extern const std::span<const std::uint8_t> search_png;
extern const std::span<const std::uint8_t> snapshot_png;
extern const std::span<const std::uint8_t> stop_avi_png;
extern const std::span<const std::uint8_t> stop_playing_png;
// NOLINTEND(readability-identifier-naming)

}  // namespace orbelcast::resources

namespace orbelcast::toolbar {

std::span<const std::uint8_t> PictureOf(std::int16_t command) {
  switch (command) {
    case kArchiveTop:
      return resources::archive_top_png;
    case kReversePlay:
      return resources::reverse_play_png;
    case kStop:
      return resources::stop_playing_png;
    case kPlay:
      return resources::play_png;
    case kArchiveEnd:
      return resources::archive_end_png;
    case kLive:
      return resources::live_png;
    case kInformation:
      return resources::information_png;
    case kSearch:
      return resources::search_png;
    case kStopAvi:
    case kWithoutCommand:  // the number's button carries the same picture
      return resources::stop_avi_png;
    case kSaveAvi:
      return resources::save_avi_png;
    case kSnapshot:
      return resources::snapshot_png;
    case kLogViewer:
      return resources::log_png;
    case kSendMessage:
      return resources::message_png;
    case kInputsAndOutputs:
      return resources::input_output_png;
    case kAlerts:
      return resources::alerts_png;
    case kFullScreen:
      return resources::full_screen_png;
    case kMultipleCameras:
      return resources::cameras_png;
    default:
      return {};
  }
}

}  // namespace orbelcast::toolbar
