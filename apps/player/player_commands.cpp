#include "player/player_commands.h"

#include <QObject>

#include "player/toolbar.h"
#include "player/user_control1.h"
#include "widgets/mirror.h"

namespace orbelcast {

namespace {

Button& ButtonOf(PlayerWidget& player, std::int16_t index) {
  return player.Control().Player[static_cast<std::size_t>(index)];
}

/// Presses a button of the toolbar.
KeyCommand Press(PlayerWidget& player, std::int16_t index, Qt::Key key, const char* name, const char* does) {
  return {.keys = {key},
          .name = QObject::tr(name),
          .does = QObject::tr(does),
          .run = [&player, index](int) { Call(ButtonOf(player, index).OnClick); },
          .allowed = [&player, index] { return ButtonOf(player, index).Enabled.Get(); }};
}

KeyCommand StopOrLive(PlayerWidget& player) {
  return {.keys = {Qt::Key_Space},
          .name = QObject::tr("Stop / Live"),
          .does = QObject::tr("Stop the stream; show the live picture again"),
          .run = [&player](int) {
            const bool runs = player.Control().VS->MasterTimer.Enabled;
            Call(ButtonOf(player, runs ? toolbar::kStop : toolbar::kLive).OnClick);
          }};
}

KeyCommand Record(PlayerWidget& player) {
  return {.keys = {Qt::Key_R},
          .name = QObject::tr("Save AVI / Stop AVI"),
          .does = QObject::tr("Record a clip; end it"),
          .run = [&player](int) {
            const bool records = ButtonOf(player, toolbar::kStopAvi).Visible;
            Call(ButtonOf(player, records ? toolbar::kStopAvi : toolbar::kSaveAvi).OnClick);
          }};
}

KeyCommand ChooseCamera(PlayerWidget& player) {
  return {.keys = {Qt::Key_1, Qt::Key_2, Qt::Key_3, Qt::Key_4, Qt::Key_5, Qt::Key_6, Qt::Key_7, Qt::Key_8, Qt::Key_9},
          .name = QObject::tr("Camera"),
          .does = QObject::tr("Show that camera of the list"),
          .run = [&player](int camera) { player.Control().CamList.Choose(camera); },
          .shown = QObject::tr("1 to 9")};
}

}  // namespace

std::vector<KeyCommand> PlayerCommands(PlayerWidget& player, const PlayerWindowActions& actions) {
  return {
      StopOrLive(player),
      Press(player, toolbar::kSnapshot, Qt::Key_S, "Snapshot…", "Save the picture"),
      Record(player),
      Press(player, toolbar::kFullScreen, Qt::Key_F, "Fullscreen", "Show the picture over the whole screen"),
      Press(player, toolbar::kInformation, Qt::Key_I, "Information", "Show or hide the strip below the picture"),
      ChooseCamera(player),
      {},
      Press(player, toolbar::kReversePlay, Qt::Key_Left, "Reverse Play", "Play the archive backwards, after a search"),
      Press(player, toolbar::kPlay, Qt::Key_Right, "Play", "Play the archive forwards, after a search"),
      Press(player, toolbar::kArchiveTop, Qt::Key_Home, "Top of the archive", "Show the archive's first picture"),
      Press(player, toolbar::kArchiveEnd, Qt::Key_End, "End of Archive", "Show the archive's last picture"),
      {.keys = {Qt::Key_C},
       .name = QObject::tr("Search the archive…"),
       .does = QObject::tr("Choose a day and a time of the archive"),
       .run = [search = actions.search_archive](int) { search(); }},
      {},
      {.keys = {Qt::Key_F5},
       .name = QObject::tr("Connect again"),
       .does = QObject::tr("Ask the server for its cameras again, and connect again"),
       .run = [again = actions.connect_again](int) { again(); }},
      {.keys = {Qt::Key_F11},
       .name = QObject::tr("Full screen window"),
       .does = QObject::tr("The window over the whole screen, and back"),
       .shown = QObject::tr("F11, Escape")},
      {.keys = {Qt::CTRL | Qt::Key_Q},
       .name = QObject::tr("Quit"),
       .does = QObject::tr("End the player"),
       .run = [quit = actions.quit](int) { quit(); }},
  };
}

}  // namespace orbelcast
