#pragma once

#include <QDialog>

#include "player/player_options.h"

class QCheckBox;
class QDialogButtonBox;
class QLabel;
class QLineEdit;

namespace orbelcast {

/// Asks for a camera server or a picture's address that the command line did not name, and for the login. The last
/// entries are offered again, but for the password, which is stored nowhere.
class ServerDialog final : public QDialog {
  Q_OBJECT

 public:
  explicit ServerDialog(const PlayerOptions& options);

  /// Writes the entries into `options`.
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
