#include "adapters/qt/player_widget.h"

#include <QPointer>
#include <QResizeEvent>

#include "adapters/qt/control_widgets.h"
#include "adapters/qt/window_widget.h"

namespace orbelcast {

namespace {

/// Twips: the size that the children were laid out for.
constexpr double kDesignWidth = 5295;
constexpr double kDesignHeight = 5940;

/// The window that a viewer fills.
class FullScreenWidget final : public WindowWidget {
 public:
  FullScreenWidget(FullScreenWindow& window, Platform& platform, QWidget* parent)
      : WindowWidget(window, platform.screen, parent), window_(window), platform_(platform) {}

 protected:
  void Fill() override {
    if (!window_.vs) return;
    viewer_ = new VideoServerPushWidget(platform_, window_.vs, this);
    viewer_->setGeometry(rect());
    viewer_->show();
  }
  // Later: it may be a press on the viewer that closes the window.
  void Empty() override {
    if (viewer_) viewer_->deleteLater();
    viewer_ = nullptr;
  }
  void resizeEvent(QResizeEvent* event) override {
    WindowWidget::resizeEvent(event);
    if (viewer_) viewer_->setGeometry(rect());
  }

 private:
  FullScreenWindow& window_;
  Platform& platform_;
  QPointer<VideoServerPushWidget> viewer_;
};

}  // namespace

PlayerWidget::PlayerWidget(Platform& platform, QWidget* parent)
    : QWidget(parent), platform_(platform), control_(UserControl1::Create(platform)) {
  setAccessibleName(tr("Player"));
  MakeChildren();
  MakeWindows();
  NameForScreenReaders();
  pointer_ = control_->MousePointer.Changed.Connect([this](int pointer) {
    if (pointer == UserControl1::kHourglass) {
      setCursor(Qt::WaitCursor);
    } else {
      unsetCursor();
    }
  });
}

PlayerWidget::~PlayerWidget() {
  // What listens to the control goes first; a handler that still waits may outlive both.
  pointer_.Disconnect();
  viewer_place_.reset();
  qDeleteAll(findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly));
  control_.reset();
}

void PlayerWidget::MakeChildren() {
  viewer_ = new VideoServerPushWidget(platform_, control_->VS, this);
  viewer_->setObjectName(QStringLiteral("VS"));
  viewer_place_ = std::make_unique<Mirror>(control_->VSPlace, *viewer_, platform_.screen);
  MakeWidgets(control_->Children(), platform_.screen, *this);
}

void PlayerWidget::MakeWindows() {
  for (const NamedChild& child : control_->Windows()) {
    Window& window = *std::get<Window*>(child.control);
    QWidget* const widget = &window == &control_->XFullScreen
                                ? new FullScreenWidget(control_->XFullScreen, platform_, this)
                                : new WindowWidget(window, platform_.screen, this);
    widget->setObjectName(QString::fromStdString(child.name));
  }
}

// What has neither a caption nor a tool tip.
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
  loaded_ = true;
  const QPointer watch(this);
  control_->ReadProperties(kept_);
  if (watch) Q_EMIT Loaded();
}

bool PlayerWidget::EnsureLoaded() {
  if (loaded_) return true;
  const QPointer watch(this);
  Load();
  return watch;
}

QString PlayerWidget::Kept(const char* key) const {
  const auto found = kept_.find(key);
  return found == kept_.end() ? QString() : QString::fromStdString(found->second);
}

void PlayerWidget::Keep(const char* key, const QString& value) {
  kept_[key] = FromText(value);
}

void PlayerWidget::resizeEvent(QResizeEvent* event) {
  control_->Resize(static_cast<float>(event->size().width() * platform_.screen.TwipsPerPixelX()),
                   static_cast<float>(event->size().height() * platform_.screen.TwipsPerPixelY()));
}

void PlayerWidget::showEvent(QShowEvent* event) {
  if (event->spontaneous()) return;
  // As a handler: the window is there while the server is asked.
  RunHandler([widget = QPointer(this)] {
    if (widget) widget->EnsureLoaded();
  });
  control_->Show();
}

QSize PlayerWidget::sizeHint() const {
  return {qRound(kDesignWidth / platform_.screen.TwipsPerPixelX()),
          qRound(kDesignHeight / platform_.screen.TwipsPerPixelY())};
}

QString PlayerWidget::SystemName() const {
  return ToLine(control_->SystemName());
}
void PlayerWidget::setShowExtendedFeatures(bool value) {
  if (EnsureLoaded()) control_->ShowExtendedFeatures(value);
}
void PlayerWidget::AviStart() {
  if (EnsureLoaded()) control_->AviStart();
}
void PlayerWidget::StopAvi() {
  if (EnsureLoaded()) control_->StopAvi();
}
void PlayerWidget::RefreshURLs(const QString& l, const QString& i) {
  if (EnsureLoaded()) control_->RefreshURLs(FromText(l), FromText(i));
}
void PlayerWidget::DoResize(bool X) {
  if (EnsureLoaded()) control_->DoResize(X);
}
void PlayerWidget::Connect2Server(const QString& xServer, const QString& xUsername, const QString& xPassword) {
  if (EnsureLoaded()) control_->Connect2Server(FromText(xServer), FromText(xUsername), FromText(xPassword));
}
void PlayerWidget::SetMultiCams() {
  if (EnsureLoaded()) control_->SetMultiCams();
}

}  // namespace orbelcast
