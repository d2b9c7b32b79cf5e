#include "player/log_window.h"

namespace orbelcast {

LogWindow::LogWindow() {
  Log.MultiLine = true;
  Log.Font = "Verdana";
  Load();
}

void LogWindow::Load() {
  Caption = "";
  Width = kDesignWidth;
  Height = kDesignHeight;
  Place(Log, 0, 0, kDesignWidth, kDesignHeight);
  Log.Text = "";
}

std::vector<NamedChild> LogWindow::Children() {
  return {{"Log", &Log}};
}

}  // namespace orbelcast
