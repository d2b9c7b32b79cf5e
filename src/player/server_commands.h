#pragma once

#include "platform/platform.h"
#include "player/alerts_window.h"
#include "player/log_window.h"
#include "player/player_life.h"
#include "player/player_server.h"

namespace orbelcast {

/// The toolbar's commands that ask the player's server something, each with the window that shows the answer.
class ServerCommands {
 public:
  /// All outlive this object.
  ServerCommands(Platform& platform, PlayerLife& life, PlayerServer& server, AlertsWindow& alerts, LogWindow& log)
      : platform_(platform), life_(life), server_(server), AlertsWin(alerts), LogForm(log) {}

  /// Whether a press that would ask something is dropped: one question is asked at a time, and its window is closed
  /// before the next one.
  bool DropsPress() const;

  void ShowLog();
  void SendTextMessage();
  void ShowInputsAndOutputs();
  void ShowAlerts();

 private:
  Platform& platform_;
  PlayerLife& life_;
  PlayerServer& server_;
  AlertsWindow& AlertsWin;
  LogWindow& LogForm;
};

}  // namespace orbelcast
