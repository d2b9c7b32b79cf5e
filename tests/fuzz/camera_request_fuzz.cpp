// Any bytes as a request of the camera server's, and as the password in one whose log must not show it.

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <variant>

#include "camera_server/addresses.h"
#include "camera_server/http.h"
#include "camera_server/logs.h"

using namespace orbelcast::camera_server;

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

void ReadTarget(const Request& request) {
  Require(request.target.starts_with('/'));
  if (const auto live = ParseLiveAddress(request.target, PictureForm{})) {
    const PictureForm bounded = live->form.Bounded();
    Require(bounded.width == live->form.width && bounded.height == live->form.height);
    Require(live->login.size() < request.target.size());
  }
  if (const auto base = ParseLoginBase(request.target)) {
    Require(base->login.size() + base->command.size() < request.target.size());
  }
  QueryValue(request.target, "account");
  if (const auto query = ParseArchiveQuery(request.target, PictureForm{})) {
    Require(query->form.Bounded().width == query->form.width && query->form.Bounded().quality == query->form.quality);
  }
}

void RequireSecret(std::string_view rest) {
  const std::string password = "S3CRET" + std::string(rest.substr(0, rest.find('\n')));
  const Client client;
  RequestLog log("", RequestLog::Credentials::kMasked);
  log.Record("GET /$openlogin/user/" + password + "/srv_vigilbox$output=1+1 HTTP/1.1\r\n\r\n", client);
  log.Record("GET /live/1/user:" + password + "?live-special0320x0240050 HTTP/1.1\r\n\r\n", client);
  log.Record("GET / HTTP/1.1\r\nAuthorization:  Basic " + password + "\r\n\r\n", client);
  Require(log.Lines().find("S3CRET") == std::string::npos);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const auto end = FindEndOfHead(bytes);
  Require(!end || *end <= size);
  const std::string_view head = bytes.substr(0, end.value_or(size));
  const auto request = ParseRequest(head);
  if (const auto* good = std::get_if<Request>(&request)) ReadTarget(*good);
  RequireSecret(bytes);
  return 0;
}
