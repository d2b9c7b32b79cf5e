#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "assembly/headless_platform.h"
#include "common/access.h"
#include "common/messages.h"
#include "orbelcast/problem.h"
#include "protocol/server_info.h"
#include "stream/noted_http.h"

namespace orbelcast {

class CommandLine;

/// How long connecting and an answer may take each where not told otherwise, in seconds.
inline constexpr double kAnswerWithin = 10;

/// A camera server as a command line names it, and how it is asked.
struct ServerOptions {
  std::string server{};  ///< A host, host:port, or a relay account's address.
  Access access{};
  double time_out = kAnswerWithin;
  Messages messages{};

  bool HasLogin() const { return !access.user.empty() || !access.password.empty(); }
};

/// Declares SERVER, which may also be the address of one of its pictures, the login, --timeout and the messages.
void AddServerOptions(CommandLine& command, ServerOptions& options);

/// A command's questions to one camera server, one after the other.
class ServerTalk {
 public:
  /// `options` outlive this.
  explicit ServerTalk(const ServerOptions& options);

  Platform& Services() { return services_.Get(); }

  /// The server's information on itself, every line of it.
  ServerInfo AskForInformation();
  /// Why `info` is none of a camera server; nothing where it is.
  std::optional<Problem> WhyNoInformation(const ServerInfo& info);

  using MakeAddress = std::function<std::string(const std::string& login_base)>;
  /// Sends a command of the player's, and returns the answer, whatever it is.
  std::shared_ptr<HttpRequest> Send(const MakeAddress& address);
  /// The address of such a command, where a relay service is asked who is meant; empty where that does not tell.
  std::string AddressOf(const MakeAddress& address);
  /// Why the newest request failed, after `what` was to come from the server; nothing where it was answered.
  std::optional<Problem> WhyNo(const std::string& what) const;

 private:
  std::int32_t Limit() const;
  Problem MakeProblem(const std::string& what, const Failure& failure, const std::string& why) const;

  const ServerOptions& options_;
  HeadlessPlatform services_;
  NotedHttp http_;
};

}  // namespace orbelcast
