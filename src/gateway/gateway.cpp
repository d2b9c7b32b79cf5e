#include "gateway/gateway.h"

#include <openssl/crypto.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <string_view>

#include "gateway/page_session.h"
#include "json/json.h"
#include "protocol/base64.h"
#include "toolkit/ascii.h"

namespace orbelcast {

// The files of web/, which the build embeds under their names.
// NOLINTBEGIN(readability-identifier-naming)
namespace resources {
extern const std::span<const std::uint8_t> drawing_js;
extern const std::span<const std::uint8_t> element_js;
extern const std::span<const std::uint8_t> gateway_html;
extern const std::span<const std::uint8_t> gateway_js;
extern const std::span<const std::uint8_t> gateway_css;
extern const std::span<const std::uint8_t> interface_js;
extern const std::span<const std::uint8_t> mirror_js;
extern const std::span<const std::uint8_t> orbelcast_js;
extern const std::span<const std::uint8_t> player_js;
extern const std::span<const std::uint8_t> player_svg;
extern const std::span<const std::uint8_t> questions_js;
extern const std::span<const std::uint8_t> search_js;
extern const std::span<const std::uint8_t> session_js;
extern const std::span<const std::uint8_t> style_js;
extern const std::span<const std::uint8_t> viewer_js;
}  // namespace resources
// NOLINTEND(readability-identifier-naming)

namespace {

constexpr const char* kHtml = "text/html; charset=utf-8";
constexpr const char* kCss = "text/css; charset=utf-8";
constexpr const char* kScript = "text/javascript; charset=utf-8";
constexpr const char* kSessionTarget = "/session";

struct WebFile {
  std::string_view target;
  const std::span<const std::uint8_t>& bytes;
  const char* type;
};

std::span<const WebFile> WebFiles() {
  static const std::array files{
      WebFile{"/", resources::gateway_html, kHtml},
      WebFile{"/gateway.js", resources::gateway_js, kScript},
      WebFile{"/gateway.css", resources::gateway_css, kCss},
      WebFile{"/icon.svg", resources::player_svg, "image/svg+xml"},
      WebFile{"/orbelcast.js", resources::orbelcast_js, kScript},
      WebFile{"/drawing.js", resources::drawing_js, kScript},
      WebFile{"/element.js", resources::element_js, kScript},
      WebFile{"/interface.js", resources::interface_js, kScript},
      WebFile{"/mirror.js", resources::mirror_js, kScript},
      WebFile{"/player.js", resources::player_js, kScript},
      WebFile{"/questions.js", resources::questions_js, kScript},
      WebFile{"/search.js", resources::search_js, kScript},
      WebFile{"/session.js", resources::session_js, kScript},
      WebFile{"/style.js", resources::style_js, kScript},
      WebFile{"/viewer.js", resources::viewer_js, kScript},
  };
  return files;
}

HttpReply Refusal(unsigned status, std::string why) {
  return {.status = status, .body = std::move(why) + "\n"};
}

/// Equal, in a time that does not tell where they differ.
bool EqualInEqualTime(std::string_view a, std::string_view b) {
  return a.size() == b.size() && CRYPTO_memcmp(a.data(), b.data(), a.size()) == 0;
}

/// The host of "host:port" or "[address]:port".
std::string_view WithoutPort(std::string_view host) {
  const std::size_t colon = host.find(':', host.starts_with('[') ? std::min(host.find(']'), host.size()) : 0);
  return host.substr(0, colon);
}

/// A name that a page of somebody else's cannot make its own: a numeric address, or this machine's.
bool IsOwnName(std::string_view host) {
  return host == "localhost" || host.starts_with('[') ||
         (!host.empty() && host.find_first_not_of("0123456789.") == std::string_view::npos);
}

void AddSecurityHeaders(HttpReply& reply) {
  reply.headers.emplace_back("Content-Security-Policy",
                             "default-src 'none'; script-src 'self'; style-src 'self'; connect-src 'self'; "
                             "img-src 'self' blob:; base-uri 'none'; form-action 'none'; frame-ancestors 'self'");
  reply.headers.emplace_back("X-Content-Type-Options", "nosniff");
  reply.headers.emplace_back("Referrer-Policy", "no-referrer");
  reply.headers.emplace_back("Cache-Control", "no-cache");
}

}  // namespace

Gateway::Gateway(Platform& platform, GatewaySettings settings)
    : platform_(platform),
      settings_(std::move(settings)),
      named_(std::make_shared<NamedServers>(settings_.named)),
      front_(platform.loop.Queue(),
             {.answer = [this](const HttpQuestion& question) { return Answer(question); },
              .refuse = [this](const HttpQuestion& question) { return Refuse(question); },
              .open = [this](std::shared_ptr<Page> page) { return Open(std::move(page)); }},
             settings_.tls) {}

// The elements are for pages of all origins: there is no secret in them. The rest is for those who logged in.
HttpReply Gateway::Answer(const HttpQuestion& question) const {
  HttpReply reply = Refusal(404, "There is no such page.");
  const std::string target = question.target.substr(0, question.target.find('?'));
  const auto file = std::ranges::find(WebFiles(), target, &WebFile::target);
  if (question.method != "GET" && question.method != "HEAD") {
    reply = Refusal(405, "Only GET and HEAD.");
  } else if (file != WebFiles().end() && file->type == kScript) {
    reply = {.type = kScript, .body = std::string(file->bytes.begin(), file->bytes.end())};
    reply.headers.emplace_back("Access-Control-Allow-Origin", "*");
    reply.headers.emplace_back("Cross-Origin-Resource-Policy", "cross-origin");
  } else if (!IsLoggedIn(question)) {
    reply = Refusal(401, "Log in.");
    reply.headers.emplace_back("WWW-Authenticate", "Basic realm=\"Orbelcast\", charset=\"UTF-8\"");
  } else if (file != WebFiles().end()) {
    reply = {.type = file->type, .body = std::string(file->bytes.begin(), file->bytes.end())};
  } else if (target == "/gateway.json") {
    reply = {.type = "application/json", .body = Description()};
  }
  AddSecurityHeaders(reply);
  return reply;
}

std::optional<HttpReply> Gateway::Refuse(const HttpQuestion& question) const {
  if (question.target != kSessionTarget) return Refusal(404, "There is no such page.");
  if (!IsOwnPage(question) && !IsAllowedOrigin(question.origin)) {
    return Refusal(403, "Pages of this origin may not use the gateway; --allow-origin names it.");
  }
  if (!IsLoggedIn(question)) return Refusal(401, "Log in.");
  if (*sessions_ >= settings_.sessions) return Refusal(503, "There are as many sessions as there may be.");
  return std::nullopt;
}

// Each login is looked at, so that the time does not tell which one was nearly right either.
bool Gateway::IsLoggedIn(const HttpQuestion& question) const {
  if (settings_.logins.empty()) return true;
  constexpr std::string_view kBasic = "Basic ";
  if (!StartsWithIgnoringCase(question.authorization, kBasic)) return false;
  const std::string_view given = std::string_view(question.authorization).substr(kBasic.size());
  bool known = false;
  for (const auto& [user, password] : settings_.logins) {
    known |= EqualInEqualTime(given, EncodeBase64(user + ":" + password));
  }
  return known;
}

// A page is the gateway's own where it comes from the name that it asks under, if that name is one that cannot be made
// to lead here by whoever owns it.
bool Gateway::IsOwnPage(const HttpQuestion& question) const {
  const std::string host = LowerCase(question.host);
  return IsOwnName(WithoutPort(host)) && (question.origin == "http://" + host || question.origin == "https://" + host);
}

bool Gateway::IsAllowedOrigin(const std::string& origin) const {
  return !origin.empty() && std::ranges::find(settings_.origins, LowerCase(origin)) != settings_.origins.end();
}

std::shared_ptr<PageUser> Gateway::Open(std::shared_ptr<Page> page) {
  ++*sessions_;
  // Counted until its memory is free: its controls may wait for a camera longer than the page is there.
  std::shared_ptr<void> counted(nullptr, [count = sessions_](void*) { --*count; });
  return PageSession::Create(platform_, named_, std::move(page), std::move(counted));
}

std::string Gateway::Description() const {
  std::vector<std::string> servers = named_->Names();
  servers.insert(servers.end(), settings_.servers.Texts().begin(), settings_.servers.Texts().end());
  return ToLine({{"servers", servers}});
}

}  // namespace orbelcast
