#pragma once

#include <optional>
#include <string>

#include "platform/platform.h"
#include "player/server_questions.h"
#include "protocol/server_info.h"

namespace orbelcast {

/// The camera server that the player has turned to: its address, the login that every command carries, and the player's
/// own requests to it. Those block the thread, or the handler that makes them, until they are answered or a time-out
/// has ended them.
class PlayerServer {
 public:
  /// Both outlive this object.
  PlayerServer(Platform& platform, BusyPointer& pointer) : platform_(platform), questions_(pointer) {}

  /// Turns to a server, a host or host:port; empty is none. Port and login are kept. Questions to the
  /// former server are void; the result is current until the next call.
  ServerQuestions::Server TurnTo(std::string server);
  /// The port (empty: addresses carry none) and the login from now on.
  void LogIn(std::string port, std::string user_name, std::string password);
  /// The player has ended: every question is void.
  void End() { questions_.TurnToServer(); }

  /// The name that the server gives itself; its address where it gave none.
  std::string SystemName() const { return SysName.empty() ? Server : SysName; }
  /// The name that it gives itself; empty where it gave none.
  const std::string& ReportedName() const { return SysName; }

  /// The beginning of every command's address, login included.
  std::string CommandBase() const;
  std::string LiveUrlOf(const std::string& live_base) const;

  /// Asks the server as one question; nothing where the question was voided meanwhile.
  std::optional<ServerInfo> Ask(InfoMode mode);
  /// Asks `address` for its cameras as Ask does, and takes on the name that it gives itself.
  std::optional<ServerInfo> AskForCameras(std::string address);
  /// Sends a command as one question, by way of the relay service where its address names an account. False where it
  /// was voided meanwhile; the command is not sent then, unless it was already.
  bool SendByRelay(HttpRequest& request, const std::string& url);

  ServerQuestions& Questions() { return questions_; }

 private:
  std::optional<ServerInfo> AskAt(std::string address, InfoMode mode);

  Platform& platform_;
  ServerQuestions questions_;
  std::string Server;
  std::string Port;
  std::string Username;
  std::string Password;
  std::string SysName;
};

}  // namespace orbelcast
