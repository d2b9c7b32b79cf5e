#pragma once

#include <QPointer>
#include <QString>
#include <functional>
#include <string>

#include "player/notice.h"
#include "player/player_options.h"
#include "player/server_dialog.h"

namespace orbelcast {

/// Asks for another login where a server has refused the one that it was given, or was given none: at once in a dialog,
/// and again from the notice's button.
class Login final : public QObject {
  Q_OBJECT

 public:
  /// `options` are the window's; `log_in` uses what was entered there. Both and `notice` live as long as `window`.
  Login(QWidget& window, Notice& notice, PlayerOptions& options, std::function<void()> log_in);

  /// Whether a server refuses a login by answering with this HTTP status.
  static bool IsRefused(int status);

  /// `place` has refused the login; `choices` are those of the notice that tells it.
  void Refused(const QString& place, NoticeChoices choices);

 private:
  void Ask();

  QWidget& window_;
  Notice& notice_;
  PlayerOptions& options_;
  const std::function<void()> log_in_;
  QString refused_;
  QPointer<ServerDialog> dialog_;
};

}  // namespace orbelcast
