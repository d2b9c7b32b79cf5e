#include "player/windows.h"

#include <algorithm>

#include "player/command_request.h"
#include "protocol/server_address.h"
#include "protocol/text.h"

namespace orbelcast {

namespace {

/// Height of a heading above a list.
constexpr float kHeadingHeight = 255;

/// Puts a child back to its start: enabled, and visible or not.
void Ready(ChildControl& control, bool visible = true) {
  control.Visible = visible;
  control.Enabled = true;
  control.Tag = "";
}

}  // namespace

// ---- Alerts, inputs and outputs -----------------------------------------------------------------------------------

AlertsWindow::AlertsWindow(HttpRequestFactory& http, ServerQuestions& questions, const HandlerStarter& start)
    : http_(http), questions_(questions) {
  AlertList.Font = OutList.Font = "Verdana";
  Load();
  Activate.OnClick = [this, start] { start([this] { Activate_Click(); }); };
  OutToogle.OnClick = [this, start] { start([this] { OutToogle_Click(); }); };
  OutToogleOff.OnClick = [this, start] { start([this] { OutToogleOff_Click(); }); };
}

void AlertsWindow::Load() {
  openings_.Begin();
  Width = 7005;
  Height = 4815;
  Caption = "Alerts";
  Place(BoxLabel[0], 120, 60, 3255, kHeadingHeight);
  Place(BoxLabel[1], 3600, 60, 3255, kHeadingHeight);
  Place(AlertList, 120, 360, 3255, 3570);
  Place(OutList, 3600, 360, 3255, 3570);
  Place(Activate, 120, 4200, 3255, 495);
  Place(OutToogle, 3600, 4200, 1395, 495);
  Place(OutToogleOff, 5400, 4200, 1455, 495);
  for (Label& heading : BoxLabel) heading.Caption = "Label1";
  Activate.Caption = "Activate selected alert";
  OutToogle.Caption = "ON";
  OutToogleOff.Caption = "OFF";
  Ready(Activate);
  // Theirs alone is the window of inputs and outputs.
  Ready(OutToogle, false);
  Ready(OutToogleOff, false);
  AlertList.Clear();
  OutList.Clear();
}

std::vector<NamedChild> AlertsWindow::Children() {
  return {{"BoxLabel(0)", &BoxLabel[0]},  {"AlertList", &AlertList}, {"Activate", &Activate},
          {"BoxLabel(1)", &BoxLabel[1]},  {"OutList", &OutList},     {"OutToogle", &OutToogle},
          {"OutToogleOff", &OutToogleOff}};
}

void AlertsWindow::Activate_Click() {
  SendAndClose(Activate, AlertActivationAddress(Activate.Tag.Get(), AlertList.ListIndex() + 1));
}

void AlertsWindow::OutToogle_Click() {
  SendAndClose(OutToogle, OutputSwitchAddress(OutToogle.Tag.Get(), OutList.ListIndex() + 1, true));
}

void AlertsWindow::OutToogleOff_Click() {
  SendAndClose(OutToogleOff, OutputSwitchAddress(OutToogle.Tag.Get(), OutList.ListIndex() + 1, false));
}

void AlertsWindow::SendAndClose(Button& button, const std::string& url) {
  if (questions_.Waiting()) return;
  const ServerQuestions::Question question(questions_);
  const auto opening = openings_.Current();
  button.Enabled = false;
  const auto request = http_.Create();
  question.WaitFor([&] { return SendCommand(*request, url); });
  if (opening.IsCurrent()) Unload();
}

// ---- Several cameras ----------------------------------------------------------------------------------------------

MultiCamsWindow::MultiCamsWindow(const HandlerStarter& start) {
  Cameras.MultiSelect = true;
  Go.Font = Bye.Font = "Verdana";
  Load();
  Go.OnClick = [this, start] { start([this] { Go_Click(); }); };
  Bye.OnClick = [this, start] { start([this] { Bye_Click(); }); };
}

void MultiCamsWindow::Load() {
  Width = 4680;
  Height = 3330;
  Caption = "Multiple Camera Viewer";
  Place(Cameras, 120, 120, 4455, 2310);
  Place(Go, 120, 2640, 2355, 555);
  Place(Bye, 2820, 2640, 1755, 555);
  Go.Caption = "View cameras";
  Bye.Caption = "Exit";
  Cameras.Clear();
}

std::vector<NamedChild> MultiCamsWindow::Children() {
  return {{"Cameras", &Cameras}, {"Go", &Go}, {"Bye", &Bye}};
}

void MultiCamsWindow::CamerasMatrix(std::int16_t X, const std::string& d) {
  if (X < 0) return;
  const auto place = static_cast<std::size_t>(X);
  CameraMatrix.resize(std::max(CameraMatrix.size(), place + 2));
  CameraMatrix[place] = d;
}

void MultiCamsWindow::Go_Click() {
  SelectionResult = "";
  for (int k = 0; k < Cameras.ListCount(); ++k) {
    const auto place = static_cast<std::size_t>(k);
    if (Cameras.Selected(k) && place < CameraMatrix.size()) SelectionResult.append(CameraMatrix[place]).append(kCrLf);
  }
  Unload();
}

void MultiCamsWindow::Bye_Click() {
  Unload();
}

// ---- Log ----------------------------------------------------------------------------------------------------------

LogWindow::LogWindow() {
  Log.MultiLine = true;
  Log.Font = "Verdana";
  Load();
}

void LogWindow::Load() {
  Caption = "";
  Width = 9015;
  Height = 4395;
  Place(Log, 0, 0, Width, Height);
  Log.Text = "";
}

std::vector<NamedChild> LogWindow::Children() {
  return {{"Log", &Log}};
}

// ---- Full screen --------------------------------------------------------------------------------------------------

FullScreenWindow::FullScreenWindow(Platform& platform, const HandlerStarter& start) : platform_(platform) {
  FullScreen = true;
  OnResize = [this, start] { start([this] { Form_Resize(); }); };
}

void FullScreenWindow::Load() {
  Tag = "";
  vs.reset();
}

VideoServerPush& FullScreenWindow::Viewer() {
  if (!vs) {
    vs = VideoServerPush::Create(platform_);
    ViewerMade(*vs);
    vs->Events.MouseDown.Listen([this](std::int16_t&) { vs_MouseDown(); });
  }
  return *vs;
}

// Starts the stream anew at each size: what was fetched for another one would be shown stretched until the next
// picture.
void FullScreenWindow::Form_Resize() {
  const std::weak_ptr<VideoServerPush> mine = vs;
  if (!vs) return;
  vs->Resize(Width, Height);
  if (mine.expired()) return;
  const std::string tag = Tag;
  if (tag.starts_with('*')) {
    vs->MultiCamView(tag.substr(1));
  } else {
    vs->Connect(tag);
  }
}

void FullScreenWindow::vs_MouseDown() {
  vs->StopGettingFrames();
  Unload();
}

}  // namespace orbelcast
