#include "adapters/qt/video_server_push_widget.h"

#include <QCursor>
#include <QMenu>
#include <QPalette>
#include <QPointer>
#include <QResizeEvent>
#include <algorithm>
#include <limits>

#include "adapters/qt/control_widgets.h"

namespace orbelcast {

VideoServerPushWidget::VideoServerPushWidget(Platform& platform, QWidget* parent)
    : VideoServerPushWidget(platform, VideoServerPush::Create(platform), parent) {
  sizes_control_ = true;
}

VideoServerPushWidget::VideoServerPushWidget(Platform& platform, std::shared_ptr<VideoServerPush> control,
                                             QWidget* parent)
    : QWidget(parent), platform_(platform), control_(std::move(control)) {
  setAccessibleName(tr("Camera"));
  MakeChildren();
  ForwardEvents();
  menu_popped_up_ = control_->MainMenu.PoppedUp.Connect([this] { PopUpMenu(); });
}

VideoServerPushWidget::~VideoServerPushWidget() {
  // The children's mirrors listen to the control and go first; a handler that still waits may outlive both.
  menu_popped_up_.Disconnect();
  qDeleteAll(findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly));
  control_.reset();
}

// From the bottommost to the topmost; the stacking never changes.
void VideoServerPushWidget::MakeChildren() {
  VideoServerPush& c = *control_;
  Screen& screen = platform_.screen;
  new ImageWidget(c.Mira, screen, this);
  auto* video = new PictureWidget(c.VideoStream, screen, this);
  video->setObjectName(QStringLiteral("VideoStream"));
  video->setAccessibleName(tr("Video"));
  auto* overlay = new PictureWidget(c.MotionPicture[2], screen, this);
  overlay->setAccessibleName(tr("Motion"));
  auto* strip = new PictureWidget(c.StatusDisplay, screen, this);
  strip->setObjectName(QStringLiteral("StatusDisplay"));
  strip->setAccessibleName(tr("Status"));
  // The strip is light whatever the desktop's theme is, so its texts are dark.
  QPalette palette = strip->palette();
  palette.setColor(QPalette::WindowText, Qt::black);
  strip->setPalette(palette);
  auto* status = new LabelWidget(c.lStatus, screen, strip);
  status->setObjectName(QStringLiteral("lStatus"));
  status->setAccessibleName(tr("Status line"));
  auto* time = new LabelWidget(c.TimeRetrieve, screen, strip);
  time->setObjectName(QStringLiteral("TimeRetrieve"));
  time->setAccessibleName(tr("Server information"));
  auto* warning = new FrameWidget(c.WarningFrame, screen, this);
  warning->setFrameStyle(QFrame::StyledPanel | QFrame::Raised);
  warning->setAutoFillBackground(true);
  new LabelWidget(c.WarningMsg, screen, warning);
}

void VideoServerPushWidget::ForwardEvents() {
  VideoServerPushEvents& events = control_->Events;
  // A slot may delete the widget: nothing is touched after a signal.
  events.StreamInfo.Listen([this](std::int32_t& bytes, std::int32_t& frames) { Q_EMIT StreamInfo(bytes, frames); });
  events.MotionDetected.Listen([this](int x1, int y1, int x2, int y2) { Q_EMIT MotionDetected(x1, y1, x2, y2); });
  events.Connected.Listen([this] { Q_EMIT Connected(); });
  events.Disconnected.Listen([this] { Q_EMIT Disconnected(); });
  events.ConnectionFailed.Listen([this] { Q_EMIT ConnectionFailed(); });
  events.ConnectionFailedV2.Listen(
      [this](std::string& url, bool& once) { Q_EMIT ConnectionFailedV2(ToText(url), once); });
  events.ConnectionBroken.Listen([this] { Q_EMIT ConnectionBroken(); });
  events.Status.Listen([this](std::string& text) { Q_EMIT Status(ToText(text)); });
  events.VigilboxInfo.Listen([this](std::string& info) { Q_EMIT VigilboxInfo(ToText(info)); });
  events.VigilboxTCR.Listen([this](std::string& year, std::string& month, std::string& day, std::string& hour,
                                   std::string& minute, std::string& second, std::string& ds, std::string& tcr) {
    Q_EMIT VigilboxTCR(ToText(year), ToText(month), ToText(day), ToText(hour), ToText(minute), ToText(second),
                       ToText(ds), ToText(tcr));
  });
  events.MouseDown.Listen([this](std::int16_t& button) { Q_EMIT MouseDown(button); });
  events.RCQueryMethod.Listen([this](std::string& query) { Q_EMIT RCQueryMethod(ToText(query)); });
  events.Plugin.Listen([this](std::string& plugin) { Q_EMIT Plugin(ToText(plugin)); });
  events.OLEDragDrop.Listen([this](DropData& dropped, std::int32_t& effect, std::int16_t& button, std::int16_t& shift,
                                   float& x, float& y) { Q_EMIT OLEDragDrop(dropped, effect, button, shift, x, y); });
  events.MotionArea.Listen([this](std::int32_t& x1, std::int32_t& y1, std::int32_t& x2, std::int32_t& y2) {
    Q_EMIT MotionArea(x1, y1, x2, y2);
  });
  events.MotionDetectedArea.Listen([this](std::int16_t& area) { Q_EMIT MotionDetectedArea(area); });
}

void VideoServerPushWidget::PopUpMenu() {
  auto* menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  for (MenuItem* item : control_->MainMenu.Items) {
    if (item->Caption.Get() == "-") {
      menu->addSeparator();
      continue;
    }
    QAction* action = menu->addAction(ToText(item->Caption));
    action->setEnabled(item->Enabled);
    action->setCheckable(item->Checked);
    action->setChecked(item->Checked);
    QObject::connect(action, &QAction::triggered, this, [item] { item->OnClick(); });
  }
  menu->popup(QCursor::pos());
}

void VideoServerPushWidget::resizeEvent(QResizeEvent* event) {
  if (!sizes_control_) return;
  control_->Resize(static_cast<float>(event->size().width() * platform_.screen.TwipsPerPixelX()),
                   static_cast<float>(event->size().height() * platform_.screen.TwipsPerPixelY()));
}

void VideoServerPushWidget::hideEvent(QHideEvent* event) {
  if (!event->spontaneous() && !window()->isMinimized()) control_->UserControl_Hide();
}

QSize VideoServerPushWidget::sizeHint() const {
  return {401, 260};
}  // 6015 × 3900 twips.

void VideoServerPushWidget::setFrameRate(int value) {
  auto rate = static_cast<std::int16_t>(
      std::clamp<int>(value, std::numeric_limits<std::int16_t>::min(), std::numeric_limits<std::int16_t>::max()));
  control_->FrameRate(rate);
}

QString VideoServerPushWidget::Server() const {
  return ToText(control_->Server());
}
QString VideoServerPushWidget::Username() const {
  return QString::fromStdString(control_->Username());
}
void VideoServerPushWidget::setUsername(const QString& value) {
  control_->Username(FromText(value));
}
QString VideoServerPushWidget::Password() const {
  return QString::fromStdString(control_->Password());
}
void VideoServerPushWidget::setPassword(const QString& value) {
  control_->Password(FromText(value));
}
QString VideoServerPushWidget::MotionString() const {
  return QString::fromStdString(control_->MotionString());
}
void VideoServerPushWidget::setMotionString(const QString& value) {
  control_->MotionString(FromText(value));
}
QString VideoServerPushWidget::URL() const {
  return QString::fromStdString(control_->URL());
}

void VideoServerPushWidget::Connect(const QString& URL, bool OnlyOnce, const QString& msg) {
  control_->Connect(FromText(URL), OnlyOnce, FromText(msg));
}
void VideoServerPushWidget::Disconnect(bool NoNewStatus) {
  control_->Disconnect(NoNewStatus);
}
void VideoServerPushWidget::StopGettingFrames() {
  control_->StopGettingFrames();
}
void VideoServerPushWidget::MultiCamView(const QString& inpString) {
  control_->MultiCamView(FromText(inpString));
}
void VideoServerPushWidget::ShowStatus(const QString& X) {
  control_->ShowStatus(FromText(X));
}
void VideoServerPushWidget::ToogleClock(bool X) {
  control_->ToogleClock(X);
}
void VideoServerPushWidget::Pulse() {
  control_->Pulse();
}
void VideoServerPushWidget::RequestEnd() {
  control_->RequestEnd();
}
void VideoServerPushWidget::SaveImage(const QString& Filename) {
  control_->SaveImage(FromText(Filename));
}
void VideoServerPushWidget::ImageOnClipboard() {
  control_->ImageOnClipboard();
}

}  // namespace orbelcast
