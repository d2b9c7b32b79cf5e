#include "player/camera_show.h"

#include <QPointer>
#include <algorithm>
#include <cmath>
#include <utility>

#include "player/tile_clicks.h"
#include "protocol/server_address.h"
#include "protocol/text.h"
#include "toolkit/ascii.h"
#include "viewer/video_server_push.h"

namespace orbelcast {

namespace {

/// The picture of a camera alone: the largest that every camera server has.
std::string AloneSuffix() {
  return QualitySuffix(PictureCode(640, 480, "080"));
}

}  // namespace

CameraShow::CameraShow(VideoServerPushWidget& viewer, bool strip) : QObject(&viewer), viewer_(viewer), strip_(strip) {
  // The camera before stays in sight until the next one's first picture.
  viewer_.setDisableTestScreen(true);
  const auto* const clicks = new TileClicks(viewer_, [this] { return shown_ == kAll ? Count() : 0; });
  QObject::connect(clicks, &TileClicks::DoubleClicked, this, [this](int tile) {
    if (shown_ != kAll || tile != kAll) Choose(tile);
  });
  QObject::connect(&tour_, &QTimer::timeout, this, [this] { Choose(Empty() ? kAll : (shown_ + 1) % Count()); });
}

void CameraShow::Take(std::vector<ShownCamera> cameras) {
  cameras_ = std::move(cameras);
}

int CameraShow::Find(const std::string& device) const {
  const auto found = std::ranges::find_if(
      cameras_, [&](const auto& each) { return !device.empty() && LowerCase(each.device) == LowerCase(device); });
  return found == cameras_.end() ? kAll : static_cast<int>(found - cameras_.begin());
}

void CameraShow::Choose(int camera) {
  viewer_.RunHandler([this, camera, mine = ++choices_, watch = QPointer(this)] {
    Show(camera);
    if (watch && mine == choices_) Q_EMIT Began();
  });
}

// Nothing is touched after the viewer's call: the window may be gone by then.
void CameraShow::Show(int camera) {
  if (camera < kAll || camera >= Count()) return;
  shown_ = camera;
  if (tour_.isActive()) tour_.start();
  Q_EMIT Changed();
  if (camera == kAll) {
    std::string addresses;
    for (const ShownCamera& each : cameras_) addresses.append(each.address).append(kCrLf);
    return viewer_.Control().MultiCamView(addresses);
  }
  viewer_.setShowBandwidth(strip_);
  viewer_.Control().Connect(LiveStreamAddress(cameras_[static_cast<std::size_t>(camera)].address, AloneSuffix()));
}

void CameraShow::StartTour(double seconds) {
  tour_.start(static_cast<int>(std::lround(seconds * 1000)));
}

std::string CameraShow::Address() const {
  return shown_ == kAll ? std::string() : cameras_[static_cast<std::size_t>(shown_)].address;
}

QString CameraShow::Name() const {
  if (shown_ == kAll) return tr("Mosaic of %1").arg(Count());
  return cameras_[static_cast<std::size_t>(shown_)].name;
}

}  // namespace orbelcast
