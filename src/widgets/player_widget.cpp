#include "orbelcast/player_widget.h"

#include <QPointer>
#include <QResizeEvent>
#include <utility>

#include "platform/platform.h"
#include "player/user_control1.h"
#include "qt_common/lent_platform.h"
#include "qt_common/qt_texts.h"
#include "toolkit/twips.h"
#include "widgets/control_widgets.h"
#include "widgets/full_screen_widget.h"
#include "widgets/mirror.h"
#include "widgets/window_widget.h"

namespace orbelcast {

// Programs have it as a member and derive from it: its size is part of the library's binary form.
static_assert(sizeof(PlayerWidget) == sizeof(QWidget) + sizeof(void*));

struct PlayerWidget::Parts {
  std::shared_ptr<Platform> platform;
  std::shared_ptr<UserControl1> control;
  PropertyBag kept{};
  bool loaded = false;
  bool designing = false;
  VideoServerPushWidget* viewer = nullptr;
  std::unique_ptr<Mirror> viewer_place{};
  Connection pointer{};
};

PlayerWidget::PlayerWidget(Platform& platform, QWidget* parent) : PlayerWidget(Lent(platform), parent) {}

PlayerWidget::PlayerWidget(std::shared_ptr<Platform> platform, QWidget* parent)
    : QWidget(parent), parts_(new Parts{.platform = platform, .control = UserControl1::Create(*platform)}) {
  setAccessibleName(tr("Player"));
  MakeChildren();
  MakeWindows();
  NameForScreenReaders();
  parts_->pointer = Control().MousePointer.Changed.Connect([this](int pointer) { ShowPointer(pointer); });
}

PlayerWidget::~PlayerWidget() {
  // The listeners to the control go first; a handler that still waits may outlive both.
  parts_->pointer.Disconnect();
  parts_->viewer_place.reset();
  qDeleteAll(findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly));
  parts_->control.reset();
}

UserControl1& PlayerWidget::Control() {
  return *parts_->control;
}

VideoServerPushWidget& PlayerWidget::VS() {
  return *parts_->viewer;
}

void PlayerWidget::RunHandler(std::function<void()> handler) {
  parts_->platform->loop.RunHandler(std::move(handler));
}

void PlayerWidget::MakeChildren() {
  Platform& platform = *parts_->platform;
  parts_->viewer = new VideoServerPushWidget(platform, Control().VS, this);
  VS().setObjectName(QStringLiteral("VS"));
  parts_->viewer_place = std::make_unique<Mirror>(Control().VSPlace, VS(), platform.screen);
  MakeWidgets(Control().Children(), platform.screen, *this);
}

void PlayerWidget::MakeWindows() {
  Platform& platform = *parts_->platform;
  for (const NamedChild& child : Control().Windows()) {
    Window& window = *std::get<Window*>(child.control);
    QWidget* const widget = &window == &Control().XFullScreen
                                ? new FullScreenWidget(Control().XFullScreen, platform, this)
                                : new WindowWidget(window, platform.screen, this);
    widget->setObjectName(QString::fromStdString(child.name));
  }
}

// Over the alerts window too, which asks the server itself.
void PlayerWidget::ShowPointer(int pointer) {
  for (QWidget* each : {static_cast<QWidget*>(this), findChild<QWidget*>(QStringLiteral("AlertsWin"))}) {
    if (pointer == UserControl1::kHourglass) {
      each->setCursor(Qt::WaitCursor);
    } else {
      each->unsetCursor();
    }
  }
}

// For the controls that have neither a caption nor a tool tip.
void PlayerWidget::NameForScreenReaders() {
  const std::pair<const char*, QString> names[] = {{"CamList", tr("Camera")},  {"PlayerControls", tr("Toolbar")},
                                                   {"TCR(0)", tr("Year")},     {"TCR(1)", tr("Month")},
                                                   {"TCR(2)", tr("Day")},      {"TCR(3)", tr("Hour")},
                                                   {"TCR(4)", tr("Minute")},   {"TCR(5)", tr("Second")},
                                                   {"Cameras", tr("Cameras")}, {"Log", tr("Activity log")}};
  for (const auto& [name, text] : names) {
    if (auto* widget = findChild<QWidget*>(QString::fromLatin1(name))) widget->setAccessibleName(text);
  }
}

void PlayerWidget::Load() {
  if (parts_->designing) return;
  Site();
  const QPointer watch(this);
  Control().ReadProperties(parts_->kept);
  if (watch) Q_EMIT Loaded();
}

// As ReadProperties, without requests to a server.
void PlayerWidget::ShowDesign() {
  Site();
  parts_->designing = true;
  Control().CamList.Visible = !Server().isEmpty();
  Control().ShowExtendedFeatures(ExtendedControls() == QLatin1String("Yes"));
}

bool PlayerWidget::EnsureLoaded() {
  if (parts_->loaded) return true;
  const QPointer watch(this);
  Load();
  return watch;
}

QString PlayerWidget::Kept(const char* key) const {
  const auto found = parts_->kept.find(key);
  return found == parts_->kept.end() ? QString() : QString::fromStdString(found->second);
}

void PlayerWidget::Keep(const char* key, const QString& value) {
  parts_->kept[key] = FromText(value);
  if (parts_->designing) ShowDesign();
}

// Once, before the properties are read: a size from before them is not laid out.
void PlayerWidget::Site() {
  if (std::exchange(parts_->loaded, true)) return;
  const auto [width, height] = SizeInTwips(*this, parts_->platform->screen);
  Control().Site(width, height);
}

// As handlers, here and when it is shown: a layout yields.
void PlayerWidget::resizeEvent(QResizeEvent*) {
  if (!parts_->loaded) return;
  RunHandler([this] {
    const auto [width, height] = SizeInTwips(*this, parts_->platform->screen);
    Control().Resize(width, height);
  });
}

void PlayerWidget::showEvent(QShowEvent* event) {
  if (event->spontaneous()) return;
  const QPointer watch(this);
  // The window is there while the server is asked.
  RunHandler([this] { EnsureLoaded(); });
  if (watch) RunHandler([this] { Control().Show(); });
}

QSize PlayerWidget::sizeHint() const {
  const TwipsScale scale = TwipsScale::Of(parts_->platform->screen);
  return {scale.PixelsX(UserControl1::kDesignWidth), scale.PixelsY(UserControl1::kDesignHeight)};
}

QString PlayerWidget::SystemName() const {
  return ToLine(parts_->control->SystemName());
}
bool PlayerWidget::ShowExtendedFeatures() const {
  return parts_->control->ShowExtendedFeatures();
}
void PlayerWidget::setShowExtendedFeatures(bool value) {
  if (EnsureLoaded()) Control().ShowExtendedFeatures(value);
}
void PlayerWidget::AviStart() {
  if (EnsureLoaded()) Control().AviStart();
}
void PlayerWidget::StopAvi() {
  if (EnsureLoaded()) Control().StopAvi();
}
void PlayerWidget::RefreshURLs(const QString& l, const QString& i) {
  if (EnsureLoaded()) Control().RefreshURLs(FromText(l), FromText(i));
}
void PlayerWidget::DoResize(bool X) {
  if (EnsureLoaded()) Control().DoResize(X);
}
void PlayerWidget::Connect2Server(const QString& xServer, const QString& xUsername, const QString& xPassword) {
  if (EnsureLoaded()) Control().Connect2Server(FromText(xServer), FromText(xUsername), FromText(xPassword));
}
void PlayerWidget::SetMultiCams() {
  if (EnsureLoaded()) Control().SetMultiCams();
}

}  // namespace orbelcast
