// Any bytes as what a camera server says on its connections, through libcurl and the request object, to each kind of
// client. The first byte chooses the client, the rest is the server's script.

#include <dlfcn.h>
#include <sys/socket.h>

#include <cstdint>
#include <cstdlib>
#include <string>

#include "adapters/curl/curl_http.h"
#include "adapters/fiber/fiber_loop.h"
#include "adapters/multipart/multipart_http.h"
#include "fakes/fake_platform.h"
#include "fuzz/wire.h"
#include "protocol/relay.h"
#include "protocol/server_info.h"
#include "toolkit/ascii.h"
#include "viewer/video_server_push.h"

using namespace orbelcast;

// These take the places of the system's, for libcurl too: a TCP connection leads to the server of bytes.
extern "C" int socket(int family, int type, int protocol) noexcept {
  static auto* const system_socket = reinterpret_cast<decltype(&socket)>(dlsym(RTLD_NEXT, "socket"));
  if (family == AF_INET && (type & SOCK_STREAM) != 0) return fuzz::WireServer::Connect();
  return system_socket(family, type, protocol);
}
extern "C" int connect(int, const sockaddr*, socklen_t) {
  return 0;
}

namespace {

constexpr int kRequests = 5;
constexpr int kMostTransfers = 1 + http_limits::kMaxRedirects + 2;

void Require(bool condition) {
  if (!condition) std::abort();
}

/// Waits where others would block the thread, which the server runs on too.
class WaitingHttp final : public HttpRequestFactory {
 public:
  explicit WaitingHttp(HttpRequestFactory& http) : http_(http) {}
  std::shared_ptr<HttpRequest> Create() override { return std::make_shared<Request>(http_.Create()); }

 private:
  class Request final : public ForwardingHttpRequest {
   public:
    using ForwardingHttpRequest::ForwardingHttpRequest;
    bool Open(std::string_view method, std::string_view url, bool) override {
      return ForwardingHttpRequest::Open(method, url, true) && SetTimeouts(1000, 1000, 1000, 1000);
    }
    bool SetTimeouts(int, int, int, int) override { return ForwardingHttpRequest::SetTimeouts(900, 900, 900, 900); }
    bool Send() override { return ForwardingHttpRequest::Send() && WaitForResponse(std::nullopt); }
  };
  HttpRequestFactory& http_;
};

struct World : fakes::FakePlatform {
  explicit World(std::string script) : server(wire, std::move(script)) {}

  fuzz::WireQueue wire{queue};
  FiberLoop wire_loop{wire};
  fuzz::WireServer server;
  CurlHttp curl{wire_loop};
  MultipartHttp http{wire_loop, curl};
  WaitingHttp waiting{http};
};

void AskForFrames(World& world, bool with_login) {
  const auto request = world.http.Create();
  request->SetTimeouts(900, 900, 900, 900);
  for (int i = 0; i < kRequests; ++i) {
    const std::size_t before = world.server.Requests().size();
    Require(request->Open("GET", "http://127.0.0.1/a?b", true));
    if (with_login) Require(request->SetCredentials("us\"er", "pass", 0));
    const bool answered = request->Send() && request->WaitForResponse();
    Require(answered == (request->Status() != 0));
    Require(answered || (request->ResponseBody().Empty() && request->GetAllResponseHeaders().empty()));
    Require(request->GetAllResponseHeaders().size() <= 2 * http_limits::kMaxHeaderBytes);
    // One more where a kept connection turned out to be closed.
    Require(world.server.Requests().size() - before <= 2 * kMostTransfers);
  }
}

void AskForInformation(World& world, const std::string& server) {
  const ServerInfo info =
      QueryServerInfo(world.waiting, world.configuration, server, "user", "", 1000, InfoMode::kAllLines);
  Require(info.RelayHost.find(':') == std::string::npos);
  const std::string found = ResolveRelayUrl(world.waiting, world.configuration, server, 1000);
  Require(found.find_first_of("\r\n") == std::string::npos);
}

void WatchCamera(World& world) {
  Platform platform = world.platform.With(world.wire_loop).With(world.http);
  const auto viewer = VideoServerPush::Create(platform);
  viewer->Resize(1600, 1200);
  std::int16_t rate = 5;
  viewer->FrameRate(rate);
  viewer->Connect("http://127.0.0.1/live");
  const auto end = world.wire.Now() + std::chrono::seconds(1);
  while (world.wire.Now() < end) world.wire.HandleNext();
  viewer->RequestEnd();
}

/// Nothing that a server says adds a line to what it is sent.
void LookAtRequests(const World& world) {
  for (const std::string& each : world.server.Requests()) {
    Require(each.starts_with("GET /") && each.find("\r\nHost: ") == each.find("\r\n"));
    for (std::size_t i = 0; i < each.size(); ++i) {
      if (each[i] == '\r') Require(i + 1 < each.size() && each[i + 1] == '\n');
      if (each[i] == '\n') Require(i > 0 && each[i - 1] == '\r');
      if (each[i] != '\r' && each[i] != '\n') Require(!IsControl(each[i]));
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  World world(std::string(reinterpret_cast<const char*>(data) + 1, size - 1));
  world.configuration.relay_host = "relay.invalid";
  world.configuration.relay_lookup_host = "127.0.0.1";
  switch (data[0] % 5) {
    case 0:
    case 1:
      AskForFrames(world, data[0] % 5 == 1);
      break;
    case 2:
      AskForInformation(world, "127.0.0.1");
      break;
    case 3:
      AskForInformation(world, "relay.invalid/ann");
      break;
    default:
      WatchCamera(world);
  }
  LookAtRequests(world);
  return 0;
}
