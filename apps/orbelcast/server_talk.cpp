#include "orbelcast/server_talk.h"

#include <cstdint>

#include "adapters/posix/configuration_file.h"
#include "common/command_line.h"
#include "common/http_status.h"
#include "common/option_values.h"
#include "common/shown_text.h"
#include "orbelcast/server_entries.h"
#include "protocol/relay.h"
#include "protocol/server_address.h"
#include "protocol/text.h"
#include "stream/failure_text.h"
#include "stream/seconds.h"

namespace orbelcast {

void AddServerOptions(CommandLine& command, ServerOptions& options) {
  command
      .AddText(
          "SERVER", [&options](const std::string& text) { options.server = ServerOf(text); },
          "The camera server: a host, host:port, a relay account's address, or the address of one of its pictures; "
          "http:// before it may be left out")
      .Required()
      .Check(CheckServer)
      .ShowEach(KeepSecretsOf)
      .ValueName("");
  AddAccessOptions(command, options.access, "User name, sent with the request (default: none)", WithoutPassword::kAsk);
  AddSecondsOption(command, "--timeout", options.time_out,
                   "Seconds that connecting and that the answer may take each; may have decimals (default: 10)",
                   kLongestTimeOut)
      .Group("Request");
  AddMessageOptions(command, options.messages);
}

ServerTalk::ServerTalk(const ServerOptions& options)
    : options_(options),
      http_(services_.Get().http, {.tells = options.messages.verbose, .limit = std::chrono::milliseconds(Limit())}) {}

std::int32_t ServerTalk::Limit() const {
  return static_cast<std::int32_t>(options_.time_out * 1000);
}

ServerInfo ServerTalk::AskForInformation() {
  return QueryServerInfo(http_, Services().configuration, options_.server, options_.access.user,
                         options_.access.password, Limit(), InfoMode::kAllLines);
}

std::string ServerTalk::AddressOf(const MakeAddress& address) {
  const Access& access = options_.access;
  return ResolveRelayUrl(http_, Services().configuration,
                         address(LoginBase(WithoutHttp(options_.server), "", access.user, access.password)), Limit());
}

std::shared_ptr<HttpRequest> ServerTalk::Send(const MakeAddress& address) {
  auto request = http_.Create();
  request->Open("GET", AddressOf(address));
  request->SetTimeouts(Limit(), Limit(), Limit(), Limit());
  request->Send();
  return request;
}

Problem ServerTalk::MakeProblem(const std::string& what, const Failure& failure, const std::string& why) const {
  return Problem::Of(failure, "no " + what + " from " + MaskedAddress(options_.server).Text() + ": " + why);
}

std::optional<Problem> ServerTalk::WhyNo(const std::string& what) const {
  const Failure failure = http_.Newest();
  if (failure.kind == FailureKind::kNone) return std::nullopt;
  return MakeProblem(what, failure, WhyRefused(failure, options_.HasLogin()));
}

std::optional<Problem> ServerTalk::WhyNoInformation(const ServerInfo& info) {
  const auto because = [this](const Failure& failure, const std::string& why) {
    return MakeProblem("information", failure, why);
  };
  const Configuration& configuration = services_.Get().configuration;
  if (info.AllHeaders.empty() && IsRelayAddress(configuration, WithoutHttp(options_.server)) && !info.ViaRelay) {
    return because(http_.Newest(), "the relay service at " + configuration.relay_lookup_host +
                                       " does not answer, or knows no server of this account");
  }
  if (http_.Newest() == Failure{FailureKind::kStatus, kNotFound}) {
    return because(http_.Newest(),
                   "it has no server information (404), so it is no camera server; 'orbelcast doctor' "
                   "tells more");
  }
  if (auto problem = WhyNo("information")) return problem;
  if (info.ViewerMarker) return std::nullopt;
  return Problem{
      .kind = "no-camera-server",
      .text = because({}, "it answers, but not as a camera server does; 'orbelcast doctor' tells more").text};
}

}  // namespace orbelcast
