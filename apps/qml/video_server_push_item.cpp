#include "qml/video_server_push_item.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QQuickWindow>
#include <QSGImageNode>

#include "qt_common/control_view.h"
#include "qt_common/qt_services.h"
#include "qt_common/warnings.h"

namespace orbelcast {

namespace {

/// The layers in the scene, by their numbers; null for one that is not shown.
struct LayerNodes final : QSGNode {
  std::vector<QSGImageNode*> nodes;
};

QImage Copy(const PictureBox& box) {
  return ViewOf(box.Image(), QImage::Format_RGB32).copy();
}

void DrawLabel(QPainter& painter, const Label& label, const Screen& screen) {
  if (!label.Visible) return;
  painter.setFont(SmallFont(label.Font));
  painter.drawText(PlaceOf(label, screen), Qt::AlignLeft | Qt::AlignTop, ToText(label.Caption));
}

}  // namespace

VideoServerPushItem::VideoServerPushItem(QQuickItem* parent)
    : QQuickItem(parent),
      platform_(SharedPlatform<QtServices>()),
      control_(VideoServerPush::Create(*platform_)),
      address_(std::make_unique<CameraAddress>(*platform_, *control_, [this] { Q_EMIT urlChanged(); })) {
  setFlags(ItemHasContents | ItemAcceptsDrops);
  setAcceptedMouseButtons(Qt::AllButtons);
  const TwipsScale scale = TwipsScale::Of(platform_->screen);
  setImplicitSize(scale.PixelsX(VideoServerPush::kDesignWidth), scale.PixelsY(VideoServerPush::kDesignHeight));
  MakeLayers();
  ForwardEvents();
  Forward(control_->Events.NewFrame, &VideoServerPushItem::newFrame);
  Keep(WarnOfIgnoredAddresses(*control_));
}

VideoServerPushItem::~VideoServerPushItem() {
  // A handler that still waits may outlive the item, and then has nobody to tell.
  connections_.clear();
  address_.reset();
}

// ---- The interface -------------------------------------------------------------------------------------------------

QVariantMap VideoServerPushItem::ToQml(const DropData& value) {
  QVariantMap formats;
  for (const auto& [format, bytes] : value.formats) {
    formats.insert(QString::fromStdString(format), QByteArray::fromStdString(bytes));
  }
  return formats;
}

QByteArray VideoServerPushItem::ToQml(const std::vector<std::uint8_t>& value) {
  return {reinterpret_cast<const char*>(value.data()), static_cast<qsizetype>(value.size())};
}

QImage VideoServerPushItem::ToQml(std::optional<Surface> value) {
  return value ? ImageOf(std::move(*value)) : QImage();
}

void VideoServerPushItem::connect(const QString& URL, bool OnlyOnce, const QString& msg) {
  address_->Follow(URL);
  Call(&VideoServerPush::Connect, URL, OnlyOnce, msg);
}

void VideoServerPushItem::disconnect(bool NoNewStatus) {
  address_->Follow({});
  Call(&VideoServerPush::Disconnect, NoNewStatus);
}

void VideoServerPushItem::multiCamView(const QString& inpString) {
  if (!inpString.isEmpty()) address_->Follow({});
  Call(&VideoServerPush::MultiCamView, inpString);
}

void VideoServerPushItem::ForwardEvents() {
  // clang-format off
  // made by tools/make_reference: QML
  Forward(control_->Events.StreamInfo, &VideoServerPushItem::streamInfo);
  Forward(control_->Events.MotionDetected, &VideoServerPushItem::motionDetected);
  Forward(control_->Events.Connected, &VideoServerPushItem::connected);
  Forward(control_->Events.Disconnected, &VideoServerPushItem::disconnected);
  Forward(control_->Events.ConnectionFailed, &VideoServerPushItem::connectionFailed);
  Forward(control_->Events.ConnectionFailedV2, &VideoServerPushItem::connectionFailedV2);
  Forward(control_->Events.ConnectionBroken, &VideoServerPushItem::connectionBroken);
  Forward(control_->Events.Status, &VideoServerPushItem::status);
  Forward(control_->Events.VigilboxInfo, &VideoServerPushItem::vigilboxInfo);
  Forward(control_->Events.VigilboxTCR, &VideoServerPushItem::vigilboxTCR);
  Forward(control_->Events.MouseDown, &VideoServerPushItem::mouseDown);
  Forward(control_->Events.RCQueryMethod, &VideoServerPushItem::rCQueryMethod);
  Forward(control_->Events.Plugin, &VideoServerPushItem::plugin);
  Forward(control_->Events.OLEDragDrop, &VideoServerPushItem::oLEDragDrop);
  Forward(control_->Events.MotionArea, &VideoServerPushItem::motionArea);
  Forward(control_->Events.MotionDetectedArea, &VideoServerPushItem::motionDetectedArea);
  // end of QML
  // clang-format on
}

// ---- Layers --------------------------------------------------------------------------------------------------------

void VideoServerPushItem::MakeLayers() {
  VideoServerPush& c = *control_;
  AddLayer({.control = c.Mira,
            .picture = [&c] { return ViewOf(c.Mira.Picture(), QImage::Format_ARGB32).copy(); },
            .on_drop = &c.Mira.OnDrop});
  Keep(c.Mira.PictureChanged.Connect([this, layer = layers_.size() - 1] { Touch(layer); }));
  for (PictureBox* box : {&c.VideoStream, &c.MotionPicture[2], &c.StatusDisplay}) {
    const bool strip = box == &c.StatusDisplay;
    AddLayer({.control = *box,
              .picture = [this, box, strip] { return strip ? Strip() : Copy(*box); },
              .on_drop = &box->OnDrop});
    Keep(box->Refreshed.Connect([this, layer = layers_.size() - 1] { Touch(layer); }));
  }
  for (Label* label : {&c.lStatus, &c.TimeRetrieve}) {
    const auto touch = [this, layer = layers_.size() - 1](const auto&) { Touch(layer); };
    Keep(label->Caption.Changed.Connect(touch));
    Keep(label->Visible.Changed.Connect(touch));
  }
  AddLayer({.control = c.WarningFrame, .picture = [this] { return Warning(); }});
  Keep(c.WarningMsg.Caption.Changed.Connect([this, layer = layers_.size() - 1](const auto&) { Touch(layer); }));
}

void VideoServerPushItem::AddLayer(Layer layer) {
  const auto touch = [this, number = layers_.size()](const auto&) { Touch(number); };
  for (Property<float>* side : {&layer.control.Left, &layer.control.Top, &layer.control.Width, &layer.control.Height}) {
    Keep(side->Changed.Connect(touch));
  }
  Keep(layer.control.Visible.Changed.Connect(touch));
  layers_.push_back(std::move(layer));
}

void VideoServerPushItem::Touch(std::size_t layer) {
  layers_[layer].stale = true;
  polish();
}

// On the application's thread, and only while the scene is rendered: a picture that nobody sees is not decoded.
void VideoServerPushItem::updatePolish() {
  for (Layer& layer : layers_) {
    if (!std::exchange(layer.stale, false)) continue;
    layer.image = layer.control.Visible ? layer.picture() : QImage();
    layer.changed = true;
  }
  update();
}

// On the thread that renders, while the application's waits.
QSGNode* VideoServerPushItem::updatePaintNode(QSGNode* node, UpdatePaintNodeData*) {
  auto* scene = static_cast<LayerNodes*>(node);
  const bool is_new = scene == nullptr;
  if (is_new) {
    scene = new LayerNodes;
    scene->nodes.resize(layers_.size());
  }
  QSGNode* above = nullptr;
  for (std::size_t i = layers_.size(); i-- > 0;) {
    QSGImageNode*& shown = scene->nodes[i];
    if (std::exchange(layers_[i].changed, false) || is_new) Show(layers_[i], *scene, shown, above);
    if (shown != nullptr) above = shown;
  }
  return scene;
}

// A node enters the scene with its texture: one without is drawn by nobody, and not by every renderer left alone.
void VideoServerPushItem::Show(const Layer& layer, QSGNode& scene, QSGImageNode*& shown, QSGNode* above) const {
  if (layer.image.isNull()) {
    delete std::exchange(shown, nullptr);
    return;
  }
  const bool is_new = shown == nullptr;
  if (is_new) {
    shown = window()->createImageNode();
    shown->setOwnsTexture(true);
    shown->setFiltering(QSGTexture::Linear);
  }
  shown->setTexture(window()->createTextureFromImage(layer.image));
  shown->setSourceRect(layer.image.rect());
  shown->setRect(PlaceOf(layer.control, platform_->screen));
  if (!is_new) return;
  above == nullptr ? scene.appendChildNode(shown) : scene.insertChildNodeBefore(shown, above);
}

// The strip is light whatever the desktop's theme is, so its texts are dark.
QImage VideoServerPushItem::Strip() const {
  QImage strip = Copy(control_->StatusDisplay);
  if (strip.isNull()) return strip;
  QPainter painter(&strip);
  painter.setPen(Qt::black);
  DrawLabel(painter, control_->lStatus, platform_->screen);
  DrawLabel(painter, control_->TimeRetrieve, platform_->screen);
  return strip;
}

QImage VideoServerPushItem::Warning() const {
  QImage frame(PlaceOf(control_->WarningFrame, platform_->screen).size(), QImage::Format_RGB32);
  if (frame.isNull()) return frame;
  frame.fill(Qt::white);
  QPainter painter(&frame);
  painter.drawRect(frame.rect().adjusted(0, 0, -1, -1));
  DrawLabel(painter, control_->WarningMsg, platform_->screen);
  return frame;
}

// ---- The scene's events --------------------------------------------------------------------------------------------

void VideoServerPushItem::geometryChange(const QRectF& now, const QRectF& before) {
  QQuickItem::geometryChange(now, before);
  if (now.size() == before.size()) return;
  const auto [width, height] = SizeInTwips(now.size(), platform_->screen);
  Run([this, width = width, height = height] { control_->Resize(width, height); });
}

void VideoServerPushItem::itemChange(ItemChange change, const ItemChangeData& data) {
  QQuickItem::itemChange(change, data);
  if (change != ItemVisibleHasChanged || !address_) return;
  if (data.boolValue) {
    address_->Shown();
  } else {
    control_->UserControl_Hide();
    address_->Hidden();
  }
}

VideoServerPushItem::Layer* VideoServerPushItem::LayerAt(QPointF position) {
  for (std::size_t i = layers_.size(); i-- > 0;) {
    const ChildControl& control = layers_[i].control;
    if (control.Visible && PlaceOf(control, platform_->screen).contains(position.toPoint())) return &layers_[i];
  }
  return nullptr;
}

void VideoServerPushItem::mousePressEvent(QMouseEvent* event) {
  const Layer* const layer = LayerAt(event->position());
  const std::int16_t button = ButtonNumber(event->button());
  if (layer != nullptr && button != 0 && layer->control.OnMouseDown) layer->control.OnMouseDown(button);
}

void VideoServerPushItem::dragEnterEvent(QDragEnterEvent* event) {
  event->acceptProposedAction();
}

void VideoServerPushItem::dropEvent(QDropEvent* event) {
  const Layer* const layer = LayerAt(event->position());
  if (layer != nullptr && layer->on_drop != nullptr) HandOver(*event, *layer->on_drop, platform_->screen);
}

}  // namespace orbelcast
