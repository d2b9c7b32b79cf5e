#include "player/notice.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>
#include <algorithm>

namespace orbelcast {

namespace {

constexpr int kMargin = 12;
constexpr int kTop = 40;  // below a list of cameras
constexpr int kWidest = 460;
constexpr int kProgressHeight = 4;

}  // namespace

Notice::Notice(QWidget* parent)
    : QFrame(parent),
      icon_(new QLabel),
      text_(new QLabel),
      progress_(new QProgressBar),
      log_in_(new QPushButton(tr("&Log in…"))),
      retry_(new QPushButton(tr("&Try again"))),
      dismiss_(new QPushButton(tr("&Close"))) {
  setObjectName(QStringLiteral("notice"));
  setStyleSheet(
      QStringLiteral("#notice { background: palette(base); border: 1px solid palette(mid);"
                     " border-radius: 6px; }"));
  const int side = style()->pixelMetric(QStyle::PM_LargeIconSize);
  icon_->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxWarning).pixmap(side, side));
  text_->setTextFormat(Qt::PlainText);
  text_->setWordWrap(true);
  progress_->setRange(0, 0);
  progress_->setTextVisible(false);
  progress_->setFixedHeight(kProgressHeight);

  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(log_in_);
  buttons->addWidget(retry_);
  buttons->addWidget(dismiss_);
  auto* words = new QVBoxLayout;
  words->addWidget(text_);
  words->addWidget(progress_);
  words->addLayout(buttons);
  auto* layout = new QHBoxLayout(this);
  layout->addWidget(icon_, 0, Qt::AlignTop);
  layout->addLayout(words, 1);

  QObject::connect(log_in_, &QPushButton::clicked, this, &Notice::LogInWanted);
  QObject::connect(retry_, &QPushButton::clicked, this, [this] {
    Dismiss();
    Q_EMIT Retried();
  });
  QObject::connect(dismiss_, &QPushButton::clicked, this, &Notice::Dismiss);
  parent->installEventFilter(this);
  hide();
}

void Notice::ShowProgress(const QString& text) {
  problem_ = false;
  Appear(text);
}

void Notice::ShowProblem(const QString& text, NoticeChoices choices) {
  problem_ = true;
  choices_ = choices;
  Appear(text);
  (choices.log_in ? log_in_ : retry_)->setFocus();
}

void Notice::EndProgress() {
  if (!problem_) hide();
}

void Notice::Dismiss() {
  problem_ = false;
  hide();
}

bool Notice::Close() {
  if (!ShowsProblem() || !choices_.close) return false;
  Dismiss();
  return true;
}

void Notice::Appear(const QString& text) {
  text_->setText(text);
  setAccessibleName(text);
  progress_->setVisible(!problem_);
  icon_->setVisible(problem_);
  log_in_->setVisible(problem_ && choices_.log_in);
  retry_->setVisible(problem_);
  dismiss_->setVisible(problem_ && choices_.close);
  Place();
  show();
  raise();
}

void Notice::Place() {
  const int width = std::min(parentWidget()->width() - 2 * kMargin, kWidest);
  layout()->activate();
  resize(width, layout()->hasHeightForWidth() ? layout()->totalHeightForWidth(width) : sizeHint().height());
  move((parentWidget()->width() - width) / 2, kTop);
}

bool Notice::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Resize) Place();
  return QFrame::eventFilter(watched, event);
}

}  // namespace orbelcast
