#include "player/recording.h"

#include "player/toolbar.h"

namespace orbelcast {

namespace {

// The two buttons share a place: the one goes before the other comes.
void ShowRecording(PlayerChildren& children, bool recording) {
  Button& save = children.Player[toolbar::kSaveAvi];
  Button& stop = children.Player[toolbar::kStopAvi];
  if (recording) {
    save.Visible = false;
    stop.Visible = true;
  } else {
    save.Visible = true;
    stop.Visible = false;
  }
}

}  // namespace

ClipRecorder::Host RecordingOf(PlayerChildren& children) {
  return {.TakePicture = [&children] { return children.VS->PictureToSave(); },
          .DeclaredRate = [&children] { return ClipRecorder::RateOfListPosition(children.FrameRate.ListIndex()); },
          .ShowRecording = [&children](bool recording) { ShowRecording(children, recording); }};
}

}  // namespace orbelcast
