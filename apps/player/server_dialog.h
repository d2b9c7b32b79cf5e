#pragma once

#include <QDialog>

#include "player/player_options.h"

class QCheckBox;
class QDialogButtonBox;
class QLabel;
class QLineEdit;

namespace orbelcast {

/// Asks for what the command line did not name: a camera server or a picture's address, and who one is there. What was
/// entered last is offered again, but for the password, which is kept nowhere.
class ServerDialog final : public QDialog {
  Q_OBJECT

 public:
  explicit ServerDialog(const PlayerOptions& options);

  /// Writes what was entered into `options`.
  void Fill(PlayerOptions& options) const;

  void accept() override;

 private:
  void ShowProblem();

  QLineEdit* camera_;
  QLineEdit* user_;
  QLineEdit* password_;
  QCheckBox* extended_;
  QLabel* problem_;
  QDialogButtonBox* buttons_;
};

}  // namespace orbelcast
