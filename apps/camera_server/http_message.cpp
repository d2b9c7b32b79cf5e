#include "camera_server/http_message.h"

#include <algorithm>
#include <charconv>
#include <map>

#include "camera_server/bounds.h"
#include "common/http_status.h"
#include "toolkit/ascii.h"

namespace orbelcast::camera_server {

namespace {

constexpr int kTooLarge = 413;
constexpr int kHeadTooLarge = 431;
constexpr int kNotImplemented = 501;
constexpr int kVersionNotSupported = 505;

bool IsToken(std::string_view text) {
  static constexpr std::string_view kMarks = "!#$%&'*+-.^_`|~";
  return !text.empty() && std::all_of(text.begin(), text.end(), [](char letter) {
    const char lower = LowerCase(letter);
    return (lower >= 'a' && lower <= 'z') || (letter >= '0' && letter <= '9') ||
           kMarks.find(letter) != std::string_view::npos;
  });
}

std::string_view WithoutAuthority(std::string_view target) {
  constexpr std::string_view kScheme = "http://";
  if (!EqualIgnoringCase(target.substr(0, kScheme.size()), kScheme)) return target;
  const std::size_t slash = target.find('/', kScheme.size());
  return slash == std::string_view::npos ? "/" : target.substr(slash);
}

/// 0, or the status to refuse the line with.
int ParseRequestLine(std::string_view line, Request& request) {
  const std::size_t first = line.find(' ');
  const std::size_t last = line.rfind(' ');
  if (first == std::string_view::npos || first == last) return kBadRequest;
  const std::string_view version = line.substr(last + 1);
  const std::string_view target = WithoutAuthority(line.substr(first + 1, last - first - 1));
  if (!IsToken(line.substr(0, first)) || !version.starts_with("HTTP/")) return kBadRequest;
  if (!target.starts_with('/') || HasControlCharacter(target)) return kBadRequest;
  if (version != "HTTP/1.1" && version != "HTTP/1.0") return kVersionNotSupported;
  request.method = line.substr(0, first);
  request.target = target;
  request.is_http_1_1 = version == "HTTP/1.1";
  return 0;
}

int ParseHeaderLine(std::string_view line, Request& request) {
  const std::size_t colon = line.find(':');
  if (colon == std::string_view::npos || !IsToken(line.substr(0, colon))) return kBadRequest;
  if (request.headers.size() >= kMaxHeaderLines) return kHeadTooLarge;
  request.headers.emplace_back(line.substr(0, colon), Trimmed(line.substr(colon + 1)));
  return 0;
}

int ReadBodySize(Request& request) {
  if (!request.Header("Transfer-Encoding").empty()) return kNotImplemented;
  const std::string_view text = request.Header("Content-Length");
  if (text.empty()) return 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), request.body_bytes);
  if (error == std::errc::result_out_of_range) return kTooLarge;
  if (error != std::errc() || end != text.data() + text.size()) return kBadRequest;
  return request.body_bytes > kMaxRequestBytes ? kTooLarge : 0;
}

}  // namespace

std::string_view TakeLine(std::string_view& text) {
  const std::size_t end = std::min(text.find('\n'), text.size());
  std::string_view line = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

std::string_view Request::Header(std::string_view name) const {
  const auto found = std::find_if(headers.begin(), headers.end(),
                                  [&](const auto& line) { return EqualIgnoringCase(line.first, name); });
  return found == headers.end() ? std::string_view() : std::string_view(found->second);
}

std::string_view Request::Path() const {
  return std::string_view(target).substr(0, target.find('?'));
}

std::variant<Request, int> ParseRequest(std::string_view head) {
  Request request;
  if (const int refused = ParseRequestLine(TakeLine(head), request)) return refused;
  for (std::string_view line = TakeLine(head); !line.empty(); line = TakeLine(head)) {
    if (const int refused = ParseHeaderLine(line, request)) return refused;
  }
  if (const int refused = ReadBodySize(request)) return refused;
  const std::string_view connection = request.Header("Connection");
  request.keep_alive =
      request.is_http_1_1 ? !EqualIgnoringCase(connection, "close") : EqualIgnoringCase(connection, "keep-alive");
  return request;
}

std::optional<std::size_t> FindEndOfHead(std::string_view bytes) {
  // A line may end in a bare line feed, so that somebody can type a request by hand.
  for (std::size_t at = bytes.find('\n'); at != std::string_view::npos; at = bytes.find('\n', at + 1)) {
    const std::string_view rest = bytes.substr(at + 1);
    if (rest.starts_with('\n')) return at + 2;
    if (rest.starts_with("\r\n")) return at + 3;
  }
  return std::nullopt;
}

Response TextResponse(int status, const std::string& text) {
  return {.status = status,
          .headers = {{"Content-Type", "text/plain; charset=utf-8"}},
          .body = std::make_shared<const std::string>(text + "\r\n")};
}

Response FreshResponse(const std::string& type, std::shared_ptr<const std::string> body) {
  return {.headers = {{"Content-Type", type}, {"Cache-Control", "no-store"}}, .body = std::move(body)};
}

std::string StatusText(int status) {
  static const std::map<int, const char*> phrases{{200, "OK"},
                                                  {kBadRequest, "Bad Request"},
                                                  {kUnauthorized, "Unauthorized"},
                                                  {kForbidden, "Forbidden"},
                                                  {kNotFound, "Not Found"},
                                                  {405, "Method Not Allowed"},
                                                  {408, "Request Timeout"},
                                                  {kTooLarge, "Content Too Large"},
                                                  {kHeadTooLarge, "Request Header Fields Too Large"},
                                                  {500, "Internal Server Error"},
                                                  {kNotImplemented, "Not Implemented"},
                                                  {503, "Service Unavailable"},
                                                  {kVersionNotSupported, "HTTP Version Not Supported"},
                                                  {kVideoNotFound, "Video Not Found"}};
  const auto found = phrases.find(status);
  return std::to_string(status) + " " + (found == phrases.end() ? "Status" : found->second);
}

std::string HeadLines(const Response& response) {
  std::string lines = "HTTP/1.1 " + StatusText(response.status) + "\r\n";
  for (const auto& [name, value] : response.headers) {
    lines.append(name).append(": ").append(value).append("\r\n");
  }
  return lines;
}

std::string HeadBytes(const Response& response, bool keep_alive) {
  return HeadLines(response) + "Content-Length: " + std::to_string(response.body->size()) +
         "\r\nConnection: " + (keep_alive ? "keep-alive" : "close") + "\r\n\r\n";
}

bool HasBody(const Request& request, const Response& response) {
  return request.method != "HEAD" && response.status != 204 && response.status != 304;
}

}  // namespace orbelcast::camera_server
