#pragma once

#include <QDialog>

#include "player/player_options.h"

class QCheckBox;
class QDialogButtonBox;
class QLabel;
class QLineEdit;

namespace orbelcast {

/// Asks for a camera server or a picture's address that the command line did not name, and for the login. The last
/// entries are offered again, but for the password, which is stored nowhere. Where a server has refused the login, it
/// asks for another one alone.
class ServerDialog final : public QDialog {
  Q_OBJECT

 public:
  explicit ServerDialog(const PlayerOptions& options);
  /// Asks for a login, above the question that the last one was refused.
  ServerDialog(const PlayerOptions& options, const QString& refused, QWidget* parent);

  /// Writes the entries that were asked for into `options`.
  void Fill(PlayerOptions& options) const;

  void accept() override;

 private:
  void MakeForm();
  void ShowProblem();

  const QString refused_;  ///< Why the dialog asks for the login alone; empty where it does not.
  QLineEdit* camera_;
  QLineEdit* user_;
  QLineEdit* password_;
  QCheckBox* extended_;
  QLabel* problem_;
  QDialogButtonBox* buttons_;
};

}  // namespace orbelcast
