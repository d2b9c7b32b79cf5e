#include "router.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "home_page.h"
#include "live_address.h"

namespace orbelcast::camera_server {

namespace {

constexpr int kVideoNotFound = 506;

std::string StatusLine(const std::string& name, int viewers) {
  return name + ": " + std::to_string(viewers) + (viewers == 1 ? " viewer" : " viewers");
}

/// The value of the query's first item of that name, or empty.
std::string_view QueryValue(std::string_view target, std::string_view name) {
  std::string_view query = target.substr(std::min(target.find('?'), target.size()));
  while (!query.empty()) {
    query.remove_prefix(1);  // "?" or "&"
    const std::string_view item = query.substr(0, query.find('&'));
    query.remove_prefix(item.size());
    if (item.starts_with(name) && item.substr(name.size()).starts_with('=')) return item.substr(name.size() + 1);
  }
  return {};
}

}  // namespace

Reply Router::Answer(const Request& request, const Client& client) {
  const std::string_view path = request.Path();
  if (path.starts_with("/control/")) return AnswerControl(request, client);
  if (path.starts_with("/live/")) return AnswerLive(request, client);
  if (auto refused = authenticator_.Refuse(request)) return {std::move(*refused), {}};
  if (path == "/") return AnswerHome();
  return {TextResponse(404, "There is nothing here. The cameras are at /live/1, /live/2, and so on; / lists them."),
          {}};
}

Reply Router::AnswerHome() const {
  Response response;
  response.headers = {{"Content-Type", "text/html; charset=utf-8"}, {"Cache-Control", "no-store"}};
  response.body = std::make_shared<const std::string>(HomePage(settings_));
  return {std::move(response), {}};
}

Reply Router::AnswerLive(const Request& request, const Client& client) {
  const LiveAddress address = ParseLiveAddress(request.target, settings_.form).value_or(LiveAddress{});
  if (!authenticator_.IsLogin(address.login)) {
    if (auto refused = authenticator_.Refuse(request)) return {std::move(*refused), {}};
  }
  if (!settings_.HasCamera(address.camera)) return {TextResponse(kVideoNotFound, "There is no such camera."), {}};
  return Misbehave(faults_.Next(address.camera), {LivePicture(address, client), {}});
}

Response Router::LivePicture(const LiveAddress& address, const Client& client) {
  const Picture picture = pictures_.Take(address.camera, address.form);
  Response response;
  response.headers = {
      {"Content-Type", "image/jpeg"},
      {"Cache-Control", "no-store"},
      {"RC_TCR", TimeCode(picture.time)},
      {"Recording", settings_.IsRecording(address.camera, picture.time) ? "Yes" : "No"},
      {"HolmvaneStatus", StatusLine(settings_.NameOf(address.camera), viewers_.Note(client.id, address.camera))},
  };
  if (!settings_.vigilbox_info.empty()) response.headers.emplace_back("VigilboxInfo", settings_.vigilbox_info);
  if (!settings_.plug_ins.empty()) response.headers.emplace_back("PlugIns", settings_.plug_ins);
  response.body = picture.jpeg;
  return response;
}

Reply Router::AnswerControl(const Request& request, const Client& client) {
  if (!client.is_local) return {TextResponse(403, "This is for the server's own machine."), {}};
  if (request.Path() == "/control/fault") return AnswerFaults(request);
  if (request.Path() == "/control/requests") return AnswerRequests(request);
  return {TextResponse(404, "There are /control/fault and /control/requests."), {}};
}

Reply Router::AnswerRequests(const Request& request) {
  Response response;
  response.headers = {{"Content-Type", "application/x-ndjson"}, {"Cache-Control", "no-store"}};
  const bool is_last_time = QueryValue(request.target, "clear") == "yes";
  response.body = std::make_shared<const std::string>(is_last_time ? requests_.TakeLines() : requests_.Lines());
  return {std::move(response), {}};
}

Reply Router::AnswerFaults(const Request& request) {
  const std::string_view target = request.target;
  const std::string_view camera = QueryValue(target, "camera");
  const std::string_view fault = QueryValue(target, "fault");
  try {
    if (!camera.empty() || !fault.empty()) PlanFault(settings_, camera, fault, faults_);
  } catch (const std::invalid_argument& error) {
    return {TextResponse(400, error.what()), {}};
  }
  std::string lines;
  for (int each = 1; settings_.HasCamera(each); ++each) {
    lines += (lines.empty() ? "" : "\r\n") + std::to_string(each) + "=" + FaultText(faults_.Current(each));
  }
  return {TextResponse(200, lines), {}};
}

}  // namespace orbelcast::camera_server
