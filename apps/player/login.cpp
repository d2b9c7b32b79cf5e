#include "player/login.h"

#include <utility>

#include "common/http_status.h"
#include "common/shown_text.h"
#include "stream/failure_text.h"

namespace orbelcast {

namespace {

/// Whether the command line, or the dialog, has given a login; an address may hold one.
bool HasLogin(const PlayerOptions& options) {
  return !options.access.user.empty() || !options.access.password.empty() ||
         HidePasswordsOfAddress(options.camera) != options.camera;
}

}  // namespace

Login::Login(QWidget& window, Notice& notice, PlayerOptions& options, std::function<void()> log_in)
    : QObject(&window), window_(window), notice_(notice), options_(options), log_in_(std::move(log_in)) {
  QObject::connect(&notice, &Notice::LogInWanted, this, &Login::Ask);
}

bool Login::IsRefused(int status) {
  return status == kUnauthorized || status == kForbidden;
}

void Login::Refused(const QString& place, NoticeChoices choices) {
  const Failure failure{FailureKind::kStatus, kUnauthorized};
  refused_ = HasLogin(options_) ? QString::fromStdString(TextOf(failure, {.address = place.toStdString()}).notice)
                                : tr("%1 asks for a login.").arg(place);
  choices.log_in = true;
  notice_.ShowProblem(refused_, choices);
  Ask();
}

void Login::Ask() {
  if (dialog_) return dialog_->raise();
  dialog_ = new ServerDialog(options_, refused_, &window_);
  dialog_->setAttribute(Qt::WA_DeleteOnClose);
  QObject::connect(dialog_, &QDialog::accepted, this, [this] {
    std::exchange(dialog_, {})->Fill(options_);
    log_in_();
  });
  dialog_->open();
}

}  // namespace orbelcast
