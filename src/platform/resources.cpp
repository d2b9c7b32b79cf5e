#include "platform/resources.h"

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

#undef ORBELCAST_RESOURCE
// NOLINTEND(bugprone-macro-parentheses)

}  // namespace orbelcast::resources
