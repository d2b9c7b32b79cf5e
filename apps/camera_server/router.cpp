#include "camera_server/router.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

#include "camera_server/addresses.h"
#include "camera_server/commands.h"
#include "camera_server/content.h"
#include "common/http_status.h"

namespace orbelcast::camera_server {

namespace {

constexpr std::string_view kInfoPath = "/secure/srv_vigilbox$rdxviewer";
constexpr std::string_view kLookupPath = "/cgi-bin/relaypost.exe";

/// Host and port under which the client reached this server: as it says itself, since it may have come through a
/// forwarded port, unless that is nothing that an address could hold.
std::string AuthorityOf(const Request& request, const Client& client) {
  constexpr std::string_view kFit = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-._:[]";
  const std::string_view host = request.Header("Host");
  const bool is_good =
      !host.empty() && host.size() <= kMaxHostBytes && host.find_first_not_of(kFit) == std::string_view::npos;
  return is_good ? std::string(host) : client.reached;
}

}  // namespace

Response Router::Answer(const Request& request, const Client& client) {
  const std::string_view path = request.Path();
  if (path.starts_with("/control/")) return AnswerControl(services_, request, client);
  if (path.starts_with(kLivePath)) return AnswerLive(request, client);
  if (request.target.starts_with(kLoginBase)) return AnswerLoginBase(request, client);
  if (path == kInfoPath) return AnswerInfo(request, client);
  if (path == kLookupPath) return services_.faults.Apply(kRelayPlace, AnswerRelayLookup(request, client));
  return AnswerPage(request, client);
}

void Router::Gone(const Client& client) {
  const std::lock_guard lock(watches_mutex_);
  watches_.erase(client.id);
}

int Router::CountViewers(std::uint64_t client, int camera) {
  // A stream slower than this is somebody looking now and then.
  constexpr std::chrono::seconds kForgottenAfter{10};
  const std::lock_guard lock(watches_mutex_);
  const Clock::time_point now = Clock::now();
  watches_[client] = {.camera = camera, .last = now};
  return static_cast<int>(std::ranges::count_if(watches_, [&](const auto& entry) {
    return entry.second.camera == camera && now - entry.second.last < kForgottenAfter;
  }));
}

Response Router::Refuse(Refusal refusal, const Actor& actor, std::string_view what) {
  if (refusal.was_wrong) services_.activity.Record(actor, "Refused", what);
  return std::move(refusal.response);
}

Response Router::AnswerPage(const Request& request, const Client& client) {
  if (auto refusal = authenticator_.Refuse(request)) {
    return Refuse(std::move(*refusal), {client.address, Authenticator::UserOf(request)}, "page");
  }
  if (request.Path() == "/") {
    return FreshResponse("text/html; charset=utf-8", std::make_shared<const std::string>(HomePage(services_)));
  }
  return TextResponse(kNotFound,
                      "There is nothing here. The cameras are at /live/1, /live/2, and so on; / lists them.");
}

Response Router::AnswerLive(const Request& request, const Client& client) {
  const Settings& settings = services_.settings;
  const LiveAddress address = ParseLiveAddress(request.target, settings.form).value_or(LiveAddress{});
  Actor actor{client.address, authenticator_.NameIn(address.login, ':')};
  if (actor.user.empty()) actor.user = Authenticator::UserOf(request);
  if (authenticator_.FindUser(address.login, ':') == nullptr) {
    if (auto refusal = authenticator_.Refuse(request)) {
      refusal->was_wrong |= !address.login.empty();
      return Refuse(std::move(*refusal), actor, "live picture");
    }
  }
  if (!settings.HasCamera(address.camera)) return TextResponse(kVideoNotFound, "There is no such camera.");
  services_.activity.RecordBeginning(actor, "Live", settings.NameOf(address.camera));
  const int viewers = CountViewers(client.id, address.camera);
  const Picture picture = services_.pictures->Take(address.camera, address.form);
  const std::string status = std::to_string(viewers) + (viewers == 1 ? " viewer" : " viewers");
  return services_.faults.Apply(std::to_string(address.camera),
                                PictureResponse(settings, address.camera, picture, status));
}

Response Router::AnswerLoginBase(const Request& request, const Client& client) {
  const LoginBaseAddress address = ParseLoginBase(request.target).value_or(LoginBaseAddress{});
  const Actor actor{client.address, authenticator_.NameIn(address.login, '/')};
  auto refusal = authenticator_.RefuseLoginBase(address.login);
  if (refusal) return Refuse(std::move(*refusal), actor, "command");
  return AnswerCommand(services_, actor, address.command);
}

Response Router::AnswerInfo(const Request& request, const Client& client) {
  const Actor actor{client.address, Authenticator::UserOf(request)};
  auto refusal = authenticator_.RefuseUnlessBasic(request);
  if (refusal) return Refuse(std::move(*refusal), actor, "information");
  services_.activity.RecordBeginning(actor, "Login");
  const Settings& settings = services_.settings;
  const auto running = std::chrono::duration_cast<std::chrono::seconds>(Clock::now() - start_);
  Response response = FreshResponse("text/plain; charset=utf-8", settings.info_text);
  if (!response.body) {
    response.body = std::make_shared<const std::string>(InfoText(services_, AuthorityOf(request, client), running));
  }
  for (std::size_t i = 0; i < settings.gps.size(); ++i) {
    static constexpr std::array kNames{"GPS-Lat", "GPS-Lon", "GPS-Alt"};
    if (!settings.gps.at(i).empty()) response.headers.emplace_back(kNames.at(i), settings.gps.at(i));
  }
  if (!settings.rc_query.empty()) response.headers.emplace_back("RC_QUERY", settings.rc_query);
  return services_.faults.Apply(kInfoPlace, std::move(response));
}

Response Router::AnswerRelayLookup(const Request& request, const Client& client) {
  if (QueryValue(request.target, "op") != "rdxviewer") return TextResponse(kBadRequest, "The lookup is op=rdxviewer.");
  const auto& accounts = services_.settings.accounts;
  const auto account = std::ranges::find(accounts, QueryValue(request.target, "account"), &Account::name);
  if (account == accounts.end()) return TextResponse(kNotFound, "There is no such account.");
  services_.activity.RecordBeginning({client.address, ""}, "Relay lookup", account->name);
  const std::string authority = account->address.empty() ? AuthorityOf(request, client) : account->address;
  return TextResponse(200, "http://" + authority + "/");
}

}  // namespace orbelcast::camera_server
