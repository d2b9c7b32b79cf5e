#include "orbelcast/video_server_push_widget.h"

#include <QCursor>
#include <QMenu>
#include <QMimeData>
#include <QPainter>
#include <QPalette>
#include <QPointer>
#include <QResizeEvent>
#include <QTimer>
#include <algorithm>
#include <limits>
#include <vector>

#include "platform/platform.h"
#include "qt_common/camera_address.h"
#include "qt_common/lent_platform.h"
#include "qt_common/qt_texts.h"
#include "qt_common/warnings.h"
#include "toolkit/twips.h"
#include "viewer/video_server_push.h"
#include "widgets/mirror.h"
#include "widgets/picture_widgets.h"
#include "widgets/plain_widgets.h"

namespace orbelcast {

// Programs have it as a member and derive from it: its size is part of the library's binary form.
static_assert(sizeof(VideoServerPushWidget) == sizeof(QWidget) + sizeof(void*));

struct VideoServerPushWidget::Parts {
  std::shared_ptr<Platform> platform;
  std::shared_ptr<VideoServerPush> control;
  bool sizes_control = false;
  std::unique_ptr<CameraAddress> address{};
  std::vector<Connection> events{};
  QTimer hidden{};  // until it is known that a hide is one
};

VideoServerPushWidget::VideoServerPushWidget(Platform& platform, QWidget* parent)
    : VideoServerPushWidget(Lent(platform), parent) {}

VideoServerPushWidget::VideoServerPushWidget(Platform& platform, std::shared_ptr<VideoServerPush> control,
                                             QWidget* parent)
    : VideoServerPushWidget(Lent(platform), std::move(control), parent) {}

VideoServerPushWidget::VideoServerPushWidget(std::shared_ptr<Platform> platform, QWidget* parent)
    : VideoServerPushWidget(platform, VideoServerPush::Create(*platform), parent) {
  parts_->sizes_control = true;
}

VideoServerPushWidget::VideoServerPushWidget(std::shared_ptr<Platform> platform,
                                             std::shared_ptr<VideoServerPush> control, QWidget* parent)
    : QWidget(parent), parts_(new Parts{.platform = std::move(platform), .control = std::move(control)}) {
  setAccessibleName(tr("Camera"));
  parts_->address = std::make_unique<CameraAddress>(*parts_->platform, Control(), [this] { Q_EMIT urlChanged(); });
  MakeChildren();
  ForwardEvents();
  parts_->hidden.setSingleShot(true);
  QObject::connect(&parts_->hidden, &QTimer::timeout, this, [this] {
    if (isVisible()) return;
    Control().UserControl_Hide();
    parts_->address->Hidden();
  });
}

VideoServerPushWidget::~VideoServerPushWidget() {
  // The children's mirrors listen to the control and go first; a handler that still waits may outlive both.
  parts_->events.clear();
  parts_->address.reset();
  qDeleteAll(findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly));
  parts_->control.reset();
}

VideoServerPush& VideoServerPushWidget::Control() {
  return *parts_->control;
}

// From the bottommost to the topmost; the stacking never changes.
void VideoServerPushWidget::MakeChildren() {
  VideoServerPush& c = Control();
  Screen& screen = parts_->platform->screen;
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
  VideoServerPushEvents& events = Control().Events;
  // Somebody else's control may live longer than the widget.
  const auto on = [this](auto& signal, auto listener) { parts_->events.push_back(signal.Connect(listener)); };
  // A slot may delete the widget: nothing is touched after a signal.
  on(events.StreamInfo, [this](std::int32_t& bytes, std::int32_t& frames) { Q_EMIT StreamInfo(bytes, frames); });
  on(events.MotionDetected, [this](int x1, int y1, int x2, int y2) { Q_EMIT MotionDetected(x1, y1, x2, y2); });
  on(events.Connected, [this] { Q_EMIT Connected(); });
  on(events.Disconnected, [this] { Q_EMIT Disconnected(); });
  on(events.ConnectionFailed, [this] { Q_EMIT ConnectionFailed(); });
  on(events.ConnectionFailedV2, [this](std::string& url, bool& once) { Q_EMIT ConnectionFailedV2(ToText(url), once); });
  on(events.ConnectionBroken, [this] { Q_EMIT ConnectionBroken(); });
  on(events.Status, [this](std::string& text) { Q_EMIT Status(ToText(text)); });
  on(events.VigilboxInfo, [this](std::string& info) { Q_EMIT VigilboxInfo(ToText(info)); });
  on(events.VigilboxTCR, [this](std::string& year, std::string& month, std::string& day, std::string& hour,
                                std::string& minute, std::string& second, std::string& ds, std::string& tcr) {
    Q_EMIT VigilboxTCR(ToText(year), ToText(month), ToText(day), ToText(hour), ToText(minute), ToText(second),
                       ToText(ds), ToText(tcr));
  });
  on(events.MouseDown, [this](std::int16_t& button) { Q_EMIT MouseDown(button); });
  on(events.RCQueryMethod, [this](std::string& query) { Q_EMIT RCQueryMethod(ToText(query)); });
  on(events.Plugin, [this](std::string& plugin) { Q_EMIT Plugin(ToText(plugin)); });
  on(events.OLEDragDrop,
     [this](DropData& dropped, std::int32_t& effect, std::int16_t& button, std::int16_t& shift, float& x, float& y) {
       QMimeData offered;
       for (const auto& [format, bytes] : dropped.formats) {
         offered.setData(QString::fromStdString(format), QByteArray::fromStdString(bytes));
       }
       Q_EMIT OLEDragDrop(&offered, effect, button, shift, x, y);
     });
  on(events.MotionArea, [this](std::int32_t& x1, std::int32_t& y1, std::int32_t& x2, std::int32_t& y2) {
    Q_EMIT MotionArea(x1, y1, x2, y2);
  });
  on(events.MotionDetectedArea, [this](std::int16_t& area) { Q_EMIT MotionDetectedArea(area); });
  on(events.NewFrame, [this] { Q_EMIT NewFrame(); });
  parts_->events.push_back(WarnOfIgnoredAddresses(Control()));
  on(Control().MainMenu.PoppedUp, [this] { PopUpMenu(); });
}

void VideoServerPushWidget::PopUpMenu() {
  auto* menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  for (MenuItem* item : Control().MainMenu.Items) {
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

// As a handler: a layout yields.
void VideoServerPushWidget::resizeEvent(QResizeEvent*) {
  if (!parts_->sizes_control) return;
  RunHandler([this] {
    const auto [width, height] = SizeInTwips(*this, parts_->platform->screen);
    Control().Resize(width, height);
  });
}

// A dock that floats, a tab that changes or a new parent hides the widget and shows it in the same turn of the loop.
void VideoServerPushWidget::hideEvent(QHideEvent* event) {
  if (!event->spontaneous() && !window()->isMinimized()) parts_->hidden.start(0);
}

void VideoServerPushWidget::showEvent(QShowEvent* event) {
  if (!event->spontaneous()) parts_->address->Shown();
}

QSize VideoServerPushWidget::sizeHint() const {
  constexpr TwipsScale kUsual;
  return {kUsual.PixelsX(VideoServerPush::kDesignWidth), kUsual.PixelsY(VideoServerPush::kDesignHeight)};
}

void VideoServerPushWidget::RunHandler(std::function<void()> handler) {
  parts_->platform->loop.RunHandler(std::move(handler));
}

QString VideoServerPushWidget::url() const {
  return parts_->address->Get();
}
void VideoServerPushWidget::setUrl(const QString& value) {
  parts_->address->Set(value);
}

void VideoServerPushWidget::ShowDesign() {
  parts_->address->Hold();
}

// ---- The interface, member by member -------------------------------------------------------------------------------

int VideoServerPushWidget::FrameRate() const {
  return parts_->control->FrameRate();
}
void VideoServerPushWidget::setFrameRate(int value) {
  auto rate = static_cast<std::int16_t>(
      std::clamp<int>(value, std::numeric_limits<std::int16_t>::min(), std::numeric_limits<std::int16_t>::max()));
  parts_->control->FrameRate(rate);
}
QString VideoServerPushWidget::Server() const {
  return ToText(parts_->control->Server());
}
bool VideoServerPushWidget::ShowBandwidth() const {
  return parts_->control->ShowBandwidth();
}
void VideoServerPushWidget::setShowBandwidth(bool value) {
  parts_->control->ShowBandwidth(value);
}
bool VideoServerPushWidget::MotionDetector() const {
  return parts_->control->MotionDetector();
}
void VideoServerPushWidget::setMotionDetector(bool value) {
  parts_->control->MotionDetector(value);
}
QString VideoServerPushWidget::Username() const {
  return QString::fromStdString(parts_->control->Username());
}
void VideoServerPushWidget::setUsername(const QString& value) {
  parts_->control->Username(FromText(value));
}
QString VideoServerPushWidget::Password() const {
  return QString::fromStdString(parts_->control->Password());
}
void VideoServerPushWidget::setPassword(const QString& value) {
  parts_->control->Password(FromText(value));
}
bool VideoServerPushWidget::DirectToDisk() const {
  return parts_->control->DirectToDisk();
}
void VideoServerPushWidget::setDirectToDisk(bool value) {
  parts_->control->DirectToDisk(value);
}
int VideoServerPushWidget::MotionArea_Y2() const {
  return parts_->control->MotionArea_Y2();
}
void VideoServerPushWidget::setMotionArea_Y2(int value) {
  parts_->control->MotionArea_Y2(value);
}
int VideoServerPushWidget::MotionArea_y1() const {
  return parts_->control->MotionArea_y1();
}
void VideoServerPushWidget::setMotionArea_y1(int value) {
  parts_->control->MotionArea_y1(value);
}
int VideoServerPushWidget::MotionArea_x2() const {
  return parts_->control->MotionArea_x2();
}
void VideoServerPushWidget::setMotionArea_x2(int value) {
  parts_->control->MotionArea_x2(value);
}
int VideoServerPushWidget::MotionArea_x1() const {
  return parts_->control->MotionArea_x1();
}
void VideoServerPushWidget::setMotionArea_x1(int value) {
  parts_->control->MotionArea_x1(value);
}
int VideoServerPushWidget::MotionSensivity() const {
  return parts_->control->MotionSensivity();
}
void VideoServerPushWidget::setMotionSensivity(int value) {
  parts_->control->MotionSensivity(value);
}
bool VideoServerPushWidget::ShowMotion() const {
  return parts_->control->ShowMotion();
}
void VideoServerPushWidget::setShowMotion(bool value) {
  parts_->control->ShowMotion(value);
}
bool VideoServerPushWidget::AlwaysSmooth() const {
  return parts_->control->AlwaysSmooth();
}
void VideoServerPushWidget::setAlwaysSmooth(bool value) {
  parts_->control->AlwaysSmooth(value);
}
bool VideoServerPushWidget::DisableTestScreen() const {
  return parts_->control->DisableTestScreen();
}
void VideoServerPushWidget::setDisableTestScreen(bool value) {
  parts_->control->DisableTestScreen(value);
}
bool VideoServerPushWidget::MotionByZones() const {
  return parts_->control->MotionByZones();
}
void VideoServerPushWidget::setMotionByZones(bool value) {
  parts_->control->MotionByZones(value);
}
QString VideoServerPushWidget::MotionString() const {
  return QString::fromStdString(parts_->control->MotionString());
}
void VideoServerPushWidget::setMotionString(const QString& value) {
  parts_->control->MotionString(FromText(value));
}
QString VideoServerPushWidget::URL() const {
  return QString::fromStdString(parts_->control->URL());
}
bool VideoServerPushWidget::AutoReconnect() const {
  return parts_->control->AutoReconnect();
}
void VideoServerPushWidget::setAutoReconnect(bool value) {
  parts_->control->AutoReconnect(value);
}

void VideoServerPushWidget::Connect(const QString& URL, bool OnlyOnce, const QString& msg) {
  const QPointer watch(this);
  parts_->address->Follow(URL);
  if (watch) parts_->control->Connect(FromText(URL), OnlyOnce, FromText(msg));
}
void VideoServerPushWidget::Disconnect(bool NoNewStatus) {
  const QPointer watch(this);
  parts_->address->Follow({});
  if (watch) parts_->control->Disconnect(NoNewStatus);
}
void VideoServerPushWidget::StopGettingFrames() {
  parts_->control->StopGettingFrames();
}
void VideoServerPushWidget::ShowStatus(const QString& X) {
  parts_->control->ShowStatus(FromText(X));
}
void VideoServerPushWidget::ToogleClock(bool X) {
  parts_->control->ToogleClock(X);
}
void VideoServerPushWidget::Pulse() {
  parts_->control->Pulse();
}
void VideoServerPushWidget::RequestEnd() {
  parts_->control->RequestEnd();
}
void VideoServerPushWidget::MultiCamView(const QString& inpString) {
  const QPointer watch(this);
  if (!inpString.isEmpty()) parts_->address->Follow({});
  if (watch) parts_->control->MultiCamView(FromText(inpString));
}
void VideoServerPushWidget::SaveImage(const QString& Filename) {
  parts_->control->SaveImage(FromText(Filename));
}
void VideoServerPushWidget::ImageOnClipboard() {
  parts_->control->ImageOnClipboard();
}
QImage VideoServerPushWidget::GetPicture() {
  std::optional<Surface> picture = parts_->control->GetPicture();
  return picture ? ImageOf(std::move(*picture)) : QImage();
}
QByteArray VideoServerPushWidget::GetPictureArray() const {
  const std::vector<std::uint8_t> bytes = parts_->control->GetPictureArray();
  return {reinterpret_cast<const char*>(bytes.data()), static_cast<qsizetype>(bytes.size())};
}
void VideoServerPushWidget::RenderPicture(QPaintDevice* device, int sX, int sY) {
  const QImage picture = GetPicture();
  if (device == nullptr || picture.isNull() || sX < 0 || sY < 0) return;
  QPainter painter(device);
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  painter.drawImage(QRect(0, 0, sX == 0 ? picture.width() : sX, sY == 0 ? picture.height() : sY), picture);
}

}  // namespace orbelcast
