#include "player/player_server.h"

#include <utility>

#include "player/command_request.h"
#include "player/limits.h"
#include "protocol/relay.h"
#include "protocol/server_address.h"

namespace orbelcast {

ServerQuestions::Server PlayerServer::TurnTo(std::string server) {
  const auto turned = questions_.TurnToServer();
  Server = std::move(server);
  return turned;
}

void PlayerServer::LogIn(std::string port, std::string user_name, std::string password) {
  Port = std::move(port);
  Username = std::move(user_name);
  Password = std::move(password);
}

std::string PlayerServer::CommandBase() const {
  return LoginBase(Server, Port, Username, Password);
}

std::string PlayerServer::LiveUrlOf(const std::string& live_base) const {
  return LiveAddress(live_base, Username, Password);
}

std::optional<ServerInfo> PlayerServer::Ask(InfoMode mode) {
  return AskAt(Port.empty() ? Server : Server + ":" + Port, mode);
}

std::optional<ServerInfo> PlayerServer::AskForCameras(std::string address) {
  auto info = AskAt(std::move(address), InfoMode::kCameras);
  if (info) SysName = info->SystemName;
  return info;
}

// Of copies: the player may turn to another server while this one is asked.
std::optional<ServerInfo> PlayerServer::AskAt(std::string address, InfoMode mode) {
  const ServerQuestions::Question question(questions_);
  ServerInfo info = question.WaitFor([&, user_name = Username, password = Password] {
    return QueryServerInfo(platform_.http, platform_.configuration, address, user_name, password,
                           player_limits::kInformationTimeout, mode);
  });
  return question.Holds() ? std::optional(std::move(info)) : std::nullopt;
}

bool PlayerServer::SendByRelay(HttpRequest& request, const std::string& url) {
  const ServerQuestions::Question question(questions_);
  question.WaitFor([&] {
    const std::string resolved =
        ResolveRelayUrl(platform_.http, platform_.configuration, url, player_limits::kRelayTimeout);
    return question.Holds() && SendCommand(request, resolved);
  });
  return question.Holds();
}

}  // namespace orbelcast
