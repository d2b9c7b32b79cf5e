#include <functional>
#include <iostream>
#include <memory>
#include <string>

#include "assembly/headless_platform.h"
#include "common/access.h"
#include "common/command_line.h"
#include "common/credentials_file.h"
#include "common/stop_signals.h"
#include "gateway/gateway.h"
#include "orbelcast/commands.h"
#include "toolkit/ascii.h"

namespace orbelcast {

namespace {

constexpr int kUsualPort = 8090;

struct ServeOptions {
  GatewaySettings gateway{};
  std::string address = "127.0.0.1";
  int port = kUsualPort;
};

void TakeServer(ServeOptions& options, const std::string& text) {
  if (!options.gateway.servers.Add(text)) {
    throw UsageError("--allow", "a camera server is HOST, HOST:PORT or HOST:*");
  }
}

void TakeOrigin(ServeOptions& options, const std::string& text) {
  std::string origin = LowerCase(text);
  const bool known = origin.starts_with("http://") || origin.starts_with("https://");
  if (!known || origin.find('/', origin.find("//") + 2) != std::string::npos) {
    throw UsageError("--allow-origin", "an origin is http://HOST or https://HOST, with :PORT where it has one");
  }
  options.gateway.origins.push_back(std::move(origin));
}

void TakeLogin(ServeOptions& options, const CommandLine& command, const std::string& file) {
  try {
    const Credentials login = ReadCredentials(file);
    if (!login.user || !login.password) throw UsageError("--credentials", "the file is to have user and password");
    if (login.readable_by_others) WarnOfReaders(command, file);
    options.gateway.login = {*login.user, *login.password};
  } catch (const CredentialsError& error) {
    throw UsageError("--credentials", error.what());
  }
}

ExitStatus Serve(const ServeOptions& options) {
  HeadlessPlatform platform;
  platform.AskOnly(
      [servers = options.gateway.servers](std::string_view host, int port) { return servers.Allow(host, port); });
  bool stopped = false;
  const StopSignals signals(platform.Get().loop.Queue(), [&stopped] { stopped = true; });
  Gateway gateway(platform.Get(), options.gateway);
  try {
    const int port = gateway.Listen(options.address, options.port);
    const bool bracketed = options.address.find(':') != std::string::npos;
    std::cout << "http://" << (bracketed ? "[" + options.address + "]" : options.address) << ":" << port << "/"
              << std::endl;
  } catch (const std::exception& error) {
    std::cerr << "orbelcast serve: " << error.what() << '\n';
    return kFailed;
  }
  while (!stopped) platform.Get().loop.Queue().HandleNext();
  return kWorked;
}

}  // namespace

CommandRun BuildServe(CommandLine& command) {
  command.Footer(
      "Prints the address of a page with the player. Other pages load the elements from there\n"
      "(docs/web.md); docs/gateway.md is for who runs it.\n\n"
      "Exit status: 0 it was ended by SIGINT or SIGTERM; 1 it could not listen; 2 wrong usage.");
  const auto options = std::make_shared<ServeOptions>();
  command
      .AddList(
          "--allow", [options](const std::string& text) { TakeServer(*options, text); },
          "A camera server that pages may see: HOST (ports 80 and 443), HOST:PORT or HOST:* (any number of them)")
      .ValueName("SERVER")
      .Required();
  command
      .AddList(
          "--allow-origin", [options](const std::string& text) { TakeOrigin(*options, text); },
          "Pages of other origins that may use the gateway, such as https://example.org")
      .ValueName("ORIGIN");
  command
      .AddText("--listen", options->address,
               "The numeric address to listen at (default: 127.0.0.1, this machine alone)")
      .ValueName("ADDRESS");
  command
      .AddNumber("--port", options->port, 0, AllowedServers::kMaxPort,
                 "The port; 0 is one that the system picks (default: 8090)")
      .ValueName("PORT");
  command
      .AddText(
          "--credentials", [options, &command](const std::string& file) { TakeLogin(*options, command, file); },
          "A file with the login that people need: lines \"user = NAME\" and \"password = TEXT\"")
      .ValueName("FILE");
  command
      .AddNumber("--sessions", options->gateway.sessions, 1, Gateway::kMaxSessions,
                 "Elements that are connected at a time, of all pages (default: 256, at most 1024)")
      .ValueName("COUNT");
  return [options] { return Serve(*options); };
}

}  // namespace orbelcast
