// Recording what the viewer shows.

#include "player/toolbar.h"
#include "player/user_control1.h"

namespace orbelcast {

ClipRecorder::Host UserControl1::RecorderHost() {
  return {.TakePicture = [this] { return VS->PictureToSave(); },
          .DeclaredRate = [this] { return ClipRecorder::RateOfListPosition(FrameRate.ListIndex()); },
          .ShowRecording = [this](bool recording) { ShowRecording(recording); }};
}

void UserControl1::AviStart() {
  const auto alive = StayAlive();
  recorder_.AviStart();
}

void UserControl1::StopAvi() {
  const auto alive = StayAlive();
  recorder_.StopAvi();
}

// The two buttons share a place.
void UserControl1::ShowRecording(bool recording) {
  if (recording) {
    Player[toolbar::kSaveAvi].Visible = false;
    Player[toolbar::kStopAvi].Visible = true;
  } else {
    Player[toolbar::kSaveAvi].Visible = true;
    Player[toolbar::kStopAvi].Visible = false;
  }
}

}  // namespace orbelcast
