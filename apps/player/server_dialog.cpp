#include "player/server_dialog.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSettings>

namespace orbelcast {

namespace {

constexpr const char* kCameraKey = "player/camera";
constexpr const char* kUserKey = "player/user";
constexpr const char* kExtendedKey = "player/extended";
/// Pixels: room for a whole address.
constexpr int kFieldWidth = 320;

QString Last(const char* key) {
  return QSettings().value(QLatin1String(key)).toString();
}

}  // namespace

ServerDialog::ServerDialog(const PlayerOptions& options) : ServerDialog(options, {}, nullptr) {}

ServerDialog::ServerDialog(const PlayerOptions& options, const QString& refused, QWidget* parent)
    : QDialog(parent),
      refused_(refused),
      camera_(new QLineEdit(Last(kCameraKey))),
      user_(new QLineEdit(options.access.user.empty() ? Last(kUserKey) : QString::fromStdString(options.access.user))),
      password_(new QLineEdit(QString::fromStdString(options.access.password))),
      extended_(new QCheckBox(tr("Buttons for log, messages, alerts, &outputs and several cameras"))),
      problem_(new QLabel),
      buttons_(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel)) {
  camera_->setPlaceholderText(tr("host:port, or http://… for one picture"));
  camera_->setMinimumWidth(kFieldWidth);
  user_->setMinimumWidth(kFieldWidth);
  password_->setEchoMode(QLineEdit::Password);
  extended_->setChecked(options.extended || QSettings().value(QLatin1String(kExtendedKey)).toBool());
  problem_->setTextFormat(Qt::PlainText);
  problem_->setWordWrap(true);
  problem_->setMinimumHeight(2 * problem_->fontMetrics().lineSpacing());
  MakeForm();
  QObject::connect(buttons_, &QDialogButtonBox::accepted, this, &ServerDialog::accept);
  QObject::connect(buttons_, &QDialogButtonBox::rejected, this, &ServerDialog::reject);
  QObject::connect(camera_, &QLineEdit::textChanged, this, &ServerDialog::ShowProblem);
  ShowProblem();
}

void ServerDialog::MakeForm() {
  const bool login = !refused_.isEmpty();
  setWindowTitle(login ? tr("Log in – Orbelcast") : tr("Open a camera server – Orbelcast"));
  buttons_->button(QDialogButtonBox::Ok)->setText(login ? tr("Log in") : tr("Open"));
  auto* const form = new QFormLayout(this);
  if (login) form->addRow(problem_);
  form->addRow(tr("&Camera server"), camera_);
  form->addRow(tr("&User name"), user_);
  form->addRow(tr("&Password"), password_);
  form->addRow(QString(), extended_);
  if (!login) form->addRow(QString(), problem_);
  form->addRow(buttons_);
  form->setRowVisible(camera_, !login);
  form->setRowVisible(extended_, !login);
  if (login) (user_->text().isEmpty() ? user_ : password_)->setFocus();
}

void ServerDialog::ShowProblem() {
  if (!refused_.isEmpty()) {
    problem_->setText(refused_);
    return;
  }
  const std::string camera = camera_->text().trimmed().toStdString();
  const std::string problem = camera.empty() ? std::string() : CameraProblem(camera);
  problem_->setText(QString::fromStdString(problem));
  buttons_->button(QDialogButtonBox::Ok)->setEnabled(!camera.empty() && problem.empty());
}

void ServerDialog::accept() {
  QSettings settings;
  settings.setValue(QLatin1String(kUserKey), user_->text());
  if (!refused_.isEmpty()) return QDialog::accept();
  // An address may hold a password.
  if (!camera_->text().contains(QLatin1Char('@'))) {
    settings.setValue(QLatin1String(kCameraKey), camera_->text().trimmed());
  }
  settings.setValue(QLatin1String(kExtendedKey), extended_->isChecked());
  QDialog::accept();
}

void ServerDialog::Fill(PlayerOptions& options) const {
  options.access.user = user_->text().toStdString();
  options.access.password = password_->text().toStdString();
  if (!refused_.isEmpty()) return;
  options.camera = camera_->text().trimmed().toStdString();
  options.extended = extended_->isChecked();
}

}  // namespace orbelcast
