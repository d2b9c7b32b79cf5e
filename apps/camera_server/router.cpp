#include "router.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

#include "bounds.h"
#include "control.h"
#include "home_page.h"
#include "http_status.h"
#include "info_text.h"
#include "live_address.h"
#include "login_base.h"
#include "picture_answer.h"
#include "query.h"

namespace orbelcast::camera_server {

namespace {

constexpr std::string_view kInfoPath = "/secure/srv_vigilbox$rdxviewer";
constexpr std::string_view kLookupPath = "/cgi-bin/relaypost.exe";

std::string ViewerCount(int viewers) {
  return std::to_string(viewers) + (viewers == 1 ? " viewer" : " viewers");
}

/// Host and port under which the client reached this server: as it says itself, since it may have come through a
/// forwarded port, unless that is nothing that an address could hold.
std::string AuthorityOf(const Request& request, const Client& client) {
  const std::string_view host = request.Header("Host");
  const auto is_fit = [](char letter) {
    return (letter >= '0' && letter <= '9') || (letter >= 'A' && letter <= 'Z') || (letter >= 'a' && letter <= 'z') ||
           std::string_view("-._:[]").find(letter) != std::string_view::npos;
  };
  const bool is_good = !host.empty() && host.size() <= kMaxHostBytes && std::all_of(host.begin(), host.end(), is_fit);
  return is_good ? std::string(host) : client.reached;
}

}  // namespace

Reply Router::Answer(const Request& request, const Client& client) {
  const std::string_view path = request.Path();
  if (path.starts_with("/control/")) return AnswerControl(rooms_, requests_, request, client);
  if (path.starts_with(kLivePath)) return AnswerLive(request, client);
  if (request.target.starts_with(kLoginBase)) return AnswerLoginBase(request, client);
  if (path == kInfoPath) return AnswerInfo(request, client);
  if (path == kLookupPath) return AnswerRelayLookup(request, client);
  if (auto refusal = authenticator_.Refuse(request)) {
    return Refuse(std::move(*refusal), {client.address, Authenticator::UserOf(request)}, "page");
  }
  return {HomeOrNothing(path), {}};
}

Reply Router::Refuse(Refusal refusal, const Actor& actor, std::string_view what) {
  if (refusal.was_wrong) rooms_.activity.Record(actor, "Refused", what);
  return {std::move(refusal.response), {}};
}

Response Router::HomeOrNothing(std::string_view path) const {
  if (path != "/") {
    return TextResponse(404, "There is nothing here. The cameras are at /live/1, /live/2, and so on; / lists them.");
  }
  Response response;
  response.headers = {{"Content-Type", "text/html; charset=utf-8"}, {"Cache-Control", "no-store"}};
  response.body = std::make_shared<const std::string>(HomePage(rooms_.settings, rooms_.site));
  return response;
}

Reply Router::AnswerLive(const Request& request, const Client& client) {
  const LiveAddress address = ParseLiveAddress(request.target, rooms_.settings.form).value_or(LiveAddress{});
  Actor actor{client.address, authenticator_.UserOfLogin(address.login)};
  if (actor.user.empty()) actor.user = Authenticator::UserOf(request);
  if (!authenticator_.IsLogin(address.login)) {
    if (auto refusal = authenticator_.Refuse(request)) {
      refusal->was_wrong |= !address.login.empty();
      return Refuse(std::move(*refusal), actor, "live picture");
    }
  }
  if (!rooms_.settings.HasCamera(address.camera)) return {TextResponse(kVideoNotFound, "There is no such camera."), {}};
  rooms_.activity.RecordBeginning(actor, "Live", rooms_.settings.NameOf(address.camera), "");
  const std::string viewers = ViewerCount(viewers_.Note(client.id, address.camera));
  const Picture picture = rooms_.pictures.Take(address.camera, address.form);
  return Misbehave(rooms_.faults.Next(address.camera),
                   {PictureAnswer(rooms_.settings, address.camera, picture, viewers), {}});
}

Reply Router::AnswerLoginBase(const Request& request, const Client& client) {
  const LoginBaseAddress address = ParseLoginBase(request.target).value_or(LoginBaseAddress{});
  const Actor actor{client.address, authenticator_.UserOfLoginBase(address.login)};
  if (auto refusal = authenticator_.RefuseLoginBase(address.login)) {
    return Refuse(std::move(*refusal), actor, "command");
  }
  return AnswerCommand(rooms_, actor, address.command);
}

Reply Router::AnswerInfo(const Request& request, const Client& client) {
  const Actor actor{client.address, Authenticator::UserOf(request)};
  if (auto refusal = authenticator_.RefuseUnlessBasic(request))
    return Refuse(std::move(*refusal), actor, "information");
  rooms_.activity.RecordBeginning(actor, "Login", "", "");
  const Settings& settings = rooms_.settings;
  Response response;
  response.headers = {{"Content-Type", "text/plain; charset=utf-8"},
                      {"Cache-Control", "no-store"},
                      {"GPS-Lat", settings.gps.latitude},
                      {"GPS-Lon", settings.gps.longitude},
                      {"GPS-Alt", settings.gps.altitude},
                      {"RC_QUERY", settings.rc_query}};
  std::erase_if(response.headers, [](const auto& header) { return header.second.empty(); });
  const auto running = std::chrono::duration_cast<std::chrono::seconds>(std::chrono::steady_clock::now() - start_);
  response.body =
      settings.info_text
          ? settings.info_text
          : std::make_shared<const std::string>(InfoText(settings, rooms_.site, AuthorityOf(request, client), running));
  return Misbehave(rooms_.faults.Next(kInfoPlace), {std::move(response), {}});
}

Reply Router::AnswerRelayLookup(const Request& request, const Client& client) {
  return Misbehave(rooms_.faults.Next(kRelayPlace), {RelayLookup(request, client), {}});
}

Response Router::RelayLookup(const Request& request, const Client& client) {
  if (QueryValue(request.target, "op") != "rdxviewer") return TextResponse(400, "The lookup is op=rdxviewer.");
  const std::string_view name = QueryValue(request.target, "account");
  const auto& accounts = rooms_.settings.accounts;
  const auto account =
      std::find_if(accounts.begin(), accounts.end(), [&](const Account& each) { return each.name == name; });
  if (account == accounts.end()) return TextResponse(404, "There is no such account.");
  rooms_.activity.RecordBeginning({client.address, ""}, "Relay lookup", account->name, "");
  return TextResponse(200,
                      "http://" + (account->address.empty() ? AuthorityOf(request, client) : account->address) + "/");
}

}  // namespace orbelcast::camera_server
