#include "player/alerts_window.h"

#include "player/command_request.h"
#include "protocol/server_address.h"

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

AlertsWindow::AlertsWindow(HttpRequestFactory& http, ServerQuestions& questions, PlayerLife& life)
    : http_(http), questions_(questions) {
  AlertList.Font = OutList.Font = "Verdana";
  Load();
  Activate.OnClick = [this, &life] { life.Start([this] { Activate_Click(); }); };
  OutToogle.OnClick = [this, &life] { life.Start([this] { OutToogle_Click(); }); };
  OutToogleOff.OnClick = [this, &life] { life.Start([this] { OutToogleOff_Click(); }); };
}

void AlertsWindow::Load() {
  openings_.Begin();
  Width = kDesignWidth;
  Height = kDesignHeight;
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

}  // namespace orbelcast
