#include "player/camera_failures.h"

#include <string>
#include <utility>

#include "player/user_control1.h"
#include "protocol/server_address.h"
#include "stream/failure_text.h"

namespace orbelcast {

CameraFailures::CameraFailures(PlayerWidget& player, Notice& notice, Login& login, std::function<QString()> camera)
    : QObject(&player), viewer_(*player.Control().VS), notice_(notice), login_(login), camera_(std::move(camera)) {
  connections_.push_back(
      viewer_.Events.ConnectionFailedV2.Connect([this](std::string& address, bool&) { Tell(address); }));
  connections_.push_back(viewer_.Events.Connected.Connect([this] { End(); }));
  connections_.push_back(player.Control().CamList.ListIndexChanged.Connect([this](int) { End(); }));
}

void CameraFailures::Tell(const std::string& address) {
  const Failure failure = viewer_.LastFailure();
  told_ = true;
  if (failure.kind == FailureKind::kStatus && Login::IsRefused(failure.status)) {
    login_.Refused(camera_(), {});
  } else if (failure.kind == FailureKind::kStatus && AsksForArchive(address)) {
    notice_.ShowProblem(tr("%1 has no picture of that time.").arg(camera_()));
  } else {
    notice_.ShowProblem(QString::fromStdString(TextOf(failure, {.address = camera_().toStdString()}).notice));
  }
}

void CameraFailures::End() {
  if (std::exchange(told_, false)) notice_.Dismiss();
}

}  // namespace orbelcast
