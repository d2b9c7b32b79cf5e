#include "player/server_cameras.h"

#include <QObject>

#include "common/http_status.h"
#include "protocol/server_address.h"
#include "protocol/server_info.h"
#include "protocol/text.h"
#include "qt_common/qt_texts.h"
#include "stream/failure_text.h"

namespace orbelcast {

namespace {

/// Milliseconds, for each step of the request.
constexpr int kInformationTimeOut = 10'000;

std::vector<ShownCamera> CamerasIn(const ServerInfo& info, const Access& access) {
  std::vector<ShownCamera> cameras;
  for (const std::string_view line : Split(info.Lines, kCrLf)) {
    const auto fields = Split(line, "\t");
    if (fields.size() < 3) continue;
    cameras.push_back({.device = std::string(fields[0]),
                       .name = ToLine(std::string(fields[1])),
                       .address = LiveAddress(fields[2], access.user, access.password)});
  }
  return cameras;
}

QString ProblemOf(const ServerInfo& info, const QString& place) {
  if (info.Status == kUnauthorized || info.Status == kForbidden) {
    const Failure refused{FailureKind::kStatus, info.Status};
    return QString::fromStdString(TextOf(refused, {.address = place.toStdString()}).notice);
  }
  if (info.Status == kHttpOk) return QObject::tr("%1 has no cameras for this user.").arg(place);
  return QObject::tr("%1 does not answer as a camera server does. Is the address right, and is it running?").arg(place);
}

}  // namespace

ServerCameras AskForCameras(Platform& platform, const PlayerOptions& options) {
  const QString place = ShownAddress(options.camera);
  const ServerInfo info = QueryServerInfo(platform.http, platform.configuration, options.camera, options.access.user,
                                          options.access.password, kInformationTimeOut, InfoMode::kCameras);
  ServerCameras told{.cameras = CamerasIn(info, options.access),
                     .name = info.SystemName.empty() ? place : ToLine(info.SystemName),
                     .problem = {}};
  if (told.cameras.empty()) told.problem = ProblemOf(info, place);
  return told;
}

}  // namespace orbelcast
