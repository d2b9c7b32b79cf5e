#include "player/picture_age.h"

#include <QPaintEvent>
#include <QPainter>
#include <QTime>
#include <algorithm>
#include <utility>

namespace orbelcast {

namespace {

constexpr std::chrono::milliseconds kLookEvery{250};
constexpr int kIntervals = 5;
constexpr QColor kDimming{0, 0, 0, 110};

/// Dims what is below it, and lets presses through.
class Veil final : public QWidget {
 public:
  explicit Veil(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
  }

 protected:
  void paintEvent(QPaintEvent* event) override { QPainter(this).fillRect(event->rect(), kDimming); }
};

}  // namespace

PictureAge::PictureAge(QWidget& window, VideoServerPush& viewer, Notice& notice, std::function<QString()> camera)
    : QObject(&window),
      viewer_(viewer),
      notice_(notice),
      camera_(std::move(camera)),
      veil_(new Veil(window.findChild<QWidget*>(QStringLiteral("VideoStream")))) {
  pictures_ = viewer.Events.VigilboxTCR.Connect([this](auto&...) { NotePicture(); });
  QObject::connect(&looks_, &QTimer::timeout, this, &PictureAge::Look);
  looks_.start(kLookEvery);
}

void PictureAge::NotePicture() {
  shown_ = viewer_.URL();
  shown_at_ = Clock::now();
  Tell({});
}

void PictureAge::Look() {
  if (std::string address = viewer_.URL(); address != asked_) {
    asked_ = std::move(address);
    asked_at_ = Clock::now();
  }
  if (!notice_.ShowsProblem()) Tell(WhatIsWrong());
  Q_EMIT Looked();
}

QString PictureAge::WhatIsWrong() const {
  if (asked_.empty() || viewer_.MultiCam.Enabled) return {};
  const auto now = Clock::now();
  if (asked_ != shown_) {
    const bool patient = now - asked_at_ < std::chrono::milliseconds(Notice::kPatienceMilliseconds);
    return patient ? QString() : tr("Waiting for %1…").arg(camera_());
  }
  const auto age = now - shown_at_;
  const auto old =
      std::max<Clock::duration>(kOld, kIntervals * std::chrono::seconds(1) / std::max<int>(viewer_.FrameRate(), 1));
  if (!viewer_.MasterTimer.Enabled || age < old) return {};
  const auto since = std::chrono::duration_cast<std::chrono::milliseconds>(age).count();
  return tr("No picture since %1")
      .arg(QTime::currentTime().addMSecs(-static_cast<int>(since)).toString(QStringLiteral("HH:mm:ss")));
}

void PictureAge::Tell(const QString& wrong) {
  const bool is_new = std::exchange(told_, wrong) != wrong;
  veil_->setVisible(!wrong.isEmpty());
  if (wrong.isEmpty()) {
    if (is_new) notice_.EndProgress();
    return;
  }
  veil_->setGeometry(veil_->parentWidget()->rect());
  if (is_new || !notice_.isVisible()) notice_.ShowProgress(wrong);
}

}  // namespace orbelcast
