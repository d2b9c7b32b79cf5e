#include "platform/resources.h"

#include <array>

namespace orbelcast::resources {

// The symbols that the build makes of the files in resources/. NOLINTBEGIN(bugprone-macro-parentheses): they are
// declared.
#define ORBELCAST_RESOURCE(Function, symbol) \
  extern const unsigned char symbol[];       \
  extern const std::size_t symbol##_size;    \
  std::span<const std::uint8_t> Function() { \
    return {symbol, symbol##_size};          \
  }

ORBELCAST_RESOURCE(TestCard, test_card_png)
ORBELCAST_RESOURCE(NoAnswer, no_answer_png)
ORBELCAST_RESOURCE(RecordingIcon, recording_png)
ORBELCAST_RESOURCE(StopIcon, stop_png)
ORBELCAST_RESOURCE(ConnectIcon, connect_png)
ORBELCAST_RESOURCE(DisconnectIcon, disconnect_png)

// Its own functions alone: the toolbar's pictures are reached by number.
#define ORBELCAST_TOOL(Function, symbol)            \
  extern const unsigned char symbol[];              \
  extern const std::size_t symbol##_size;           \
  static std::span<const std::uint8_t> Function() { \
    return {symbol, symbol##_size};                 \
  }

ORBELCAST_TOOL(ArchiveTop, archive_top_png)
ORBELCAST_TOOL(ReversePlay, reverse_play_png)
ORBELCAST_TOOL(StopPlaying, stop_playing_png)
ORBELCAST_TOOL(Play, play_png)
ORBELCAST_TOOL(ArchiveEnd, archive_end_png)
ORBELCAST_TOOL(Live, live_png)
ORBELCAST_TOOL(Information, information_png)
ORBELCAST_TOOL(Search, search_png)
ORBELCAST_TOOL(StopAvi, stop_avi_png)
ORBELCAST_TOOL(SaveAvi, save_avi_png)
ORBELCAST_TOOL(Snapshot, snapshot_png)
ORBELCAST_TOOL(LogViewer, log_png)
ORBELCAST_TOOL(SendMessage, message_png)
ORBELCAST_TOOL(InputOutput, input_output_png)
ORBELCAST_TOOL(Alerts, alerts_png)
ORBELCAST_TOOL(FullScreen, full_screen_png)
ORBELCAST_TOOL(Cameras, cameras_png)

#undef ORBELCAST_TOOL
#undef ORBELCAST_RESOURCE
// NOLINTEND(bugprone-macro-parentheses)

std::span<const std::uint8_t> ToolbarPicture(int index) {
  // Two buttons are "Stop AVI".
  static constexpr std::array kPictures{ArchiveTop,  ReversePlay, StopPlaying, Play,    ArchiveEnd, Live,
                                        Information, Search,      StopAvi,     SaveAvi, Snapshot,   LogViewer,
                                        StopAvi,     SendMessage, InputOutput, Alerts,  FullScreen, Cameras};
  if (index < 0 || index >= static_cast<int>(kPictures.size())) return {};
  return kPictures[static_cast<std::size_t>(index)]();
}

}  // namespace orbelcast::resources
