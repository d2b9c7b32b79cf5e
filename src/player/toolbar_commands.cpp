#include "player/toolbar_commands.h"

#include <cstddef>

namespace orbelcast {

ToolbarCommands::ToolbarCommands(PlayerChildren& children, PlayerLife& life, const Targets& targets)
    : children_(children), life_(life), targets_(targets) {
  for (std::size_t i = 0; i < children.Player.size(); ++i) {
    children.Player[i].OnClick = [this, i, &life] {
      life.Start([this, i] { Player_Click(static_cast<std::int16_t>(i)); });
    };
  }
}

void ToolbarCommands::Player_Click(std::int16_t Index) {
  if (life_.Ended()) return;
  if (toolbar::AsksServer(Index) && targets_.server.DropsPress()) return;
  VideoServerPush& viewer = *children_.VS;
  LastCommand = Index;
  viewer.DisableTestScreen(true);
  const bool once = children_.FrameRate.ListIndex() == 0;
  const bool bandwidth_was_shown = viewer.ShowBandwidth();
  switch (Index) {
    case toolbar::kArchiveTop:
      return targets_.archive.ShowArchiveEnd(ArchiveStep::kTop, bandwidth_was_shown);
    case toolbar::kReversePlay:
      targets_.stream.Archive(ArchiveStep::kReversePlay, once);
      return;
    case toolbar::kStop:
      return viewer.StopGettingFrames();
    case toolbar::kPlay:
      targets_.stream.Archive(ArchiveStep::kPlay, once);
      return;
    case toolbar::kArchiveEnd:
      return targets_.archive.ShowArchiveEnd(ArchiveStep::kEnd, bandwidth_was_shown);
    case toolbar::kLive:
      targets_.stream.Live();
      return;
    case toolbar::kInformation:
      LastCommand = toolbar::kNotRepeated;
      return viewer.ShowBandwidth(!bandwidth_was_shown);
    case toolbar::kSearch:
      return targets_.archive.SearchArchive();
    case toolbar::kStopAvi:
      LastCommand = toolbar::kNotRepeated;
      return targets_.recorder.StopAvi();
    case toolbar::kSaveAvi:
      LastCommand = toolbar::kNotRepeated;
      return targets_.recorder.AviStart();
    case toolbar::kSnapshot:
      LastCommand = toolbar::kNotRepeated;
      return targets_.snapshot.SaveSnapshot();
    case toolbar::kLogViewer:
      return targets_.server.ShowLog();
    case toolbar::kSendMessage:
      return targets_.server.SendTextMessage();
    case toolbar::kInputsAndOutputs:
      return targets_.server.ShowInputsAndOutputs();
    case toolbar::kAlerts:
      return targets_.server.ShowAlerts();
    case toolbar::kFullScreen:
      return targets_.full_screen.ShowFullScreen();
    case toolbar::kMultipleCameras:
      return targets_.cameras.SetMultiCams();
    default:
      return;
  }
}

}  // namespace orbelcast
