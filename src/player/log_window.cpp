#include "player/log_window.h"

namespace orbelcast {

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

}  // namespace orbelcast
