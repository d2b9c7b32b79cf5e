#include "orbelcast/camera_address.h"

#include <algorithm>

#include "common/shown_text.h"
#include "orbelcast/camera_options.h"
#include "protocol/server_address.h"
#include "toolkit/ascii.h"

namespace orbelcast {

namespace {

/// Larger and better than a player's defaults: what is kept and recorded should show what the camera can do.
constexpr int kAskedWidth = 640;
constexpr int kAskedHeight = 480;
constexpr const char* kAskedQuality = "080";

Problem NoCamera(const ServerOptions& options, const std::string& why) {
  return {.kind = "no-camera", .text = "no picture from " + MaskedAddress(options.server).Text() + ": " + why};
}

/// The cameras that the server has; a problem where it tells of none.
std::optional<Problem> AskForCameras(const ServerOptions& options, std::vector<Entry>& cameras) {
  ServerTalk server(options);
  const ServerInfo info = server.AskForInformation();
  if (auto problem = server.WhyNoInformation(info)) return problem;
  cameras = EntriesOf(info, "CAM:");
  if (cameras.empty()) return NoCamera(options, "the server shows this user no camera");
  return std::nullopt;
}

}  // namespace

const Entry* FindCamera(const std::vector<Entry>& cameras, const std::string& device) {
  const auto camera = std::ranges::find_if(
      cameras, [&](const Entry& each) { return device.empty() || EqualIgnoringCase(each.Field(0), device); });
  return camera == cameras.end() ? nullptr : &*camera;
}

std::string DevicesOf(const std::vector<Entry>& cameras) {
  std::string devices;
  for (const Entry& each : cameras) devices += (devices.empty() ? "" : ", ") + each.Field(0);
  return devices;
}

std::string AskedPicture() {
  return QualitySuffix(PictureCode(kAskedWidth, kAskedHeight, kAskedQuality));
}

ServerOptions ServerOfStream(const StreamOptions& stream, std::optional<double> time_out) {
  return {.server = ServerOf(stream.url),
          .access = stream.access,
          .time_out = std::min(time_out.value_or(kAnswerWithin), kAnswerWithin),
          .messages = stream.messages};
}

std::optional<Problem> FindPicture(StreamOptions& stream, std::optional<double> time_out) {
  if (stream.device.empty() && !NamesServer(stream.url)) return std::nullopt;
  const ServerOptions options = ServerOfStream(stream, time_out);
  std::vector<Entry> cameras;
  if (auto problem = AskForCameras(options, cameras)) return problem;
  const Entry* const camera = FindCamera(cameras, stream.device);
  if (camera == nullptr) {
    return NoCamera(options,
                    "it has no camera '" + stream.device + "'; give one of these to --device: " + DevicesOf(cameras));
  }
  const std::string& base = camera->Field(2);
  if (const std::string wrong = CheckAddress(base); !wrong.empty()) {
    return NoCamera(options, "the server's address of camera '" + camera->Field(0) + "' is of no use: " + wrong);
  }
  stream.device = camera->Field(0);
  stream.url = LiveStreamAddress(TileAddress(base, stream.access), AskedPicture());
  return std::nullopt;
}

std::optional<Problem> FindAllCameras(std::vector<std::string>& places, const ServerOptions& options) {
  std::vector<std::string> addresses;
  for (const std::string& place : places) {
    if (!NamesServer(place)) {
      addresses.push_back(place);
      continue;
    }
    ServerOptions server = options;
    server.server = place;
    std::vector<Entry> cameras;
    if (auto problem = AskForCameras(server, cameras)) return problem;
    for (const Entry& camera : cameras) {
      if (CheckAddress(camera.Field(2)).empty()) addresses.push_back(camera.Field(2));
    }
  }
  places = std::move(addresses);
  if (places.empty()) return NoCamera(options, "the server's addresses of its cameras are of no use");
  return std::nullopt;
}

}  // namespace orbelcast
