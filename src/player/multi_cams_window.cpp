#include "player/multi_cams_window.h"

#include <algorithm>
#include <cstddef>

#include "protocol/text.h"

namespace orbelcast {

MultiCamsWindow::MultiCamsWindow(PlayerLife& life) {
  Cameras.MultiSelect = true;
  Go.Font = Bye.Font = "Verdana";
  Load();
  Go.OnClick = [this, &life] { life.Start([this] { Go_Click(); }); };
  Bye.OnClick = [this, &life] { life.Start([this] { Bye_Click(); }); };
}

void MultiCamsWindow::Load() {
  Width = kDesignWidth;
  Height = kDesignHeight;
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

}  // namespace orbelcast
