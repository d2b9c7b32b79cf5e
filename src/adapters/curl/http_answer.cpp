#include "adapters/curl/http_answer.h"

#include <algorithm>
#include <atomic>
#include <charconv>

#include "platform/http_request.h"
#include "toolkit/ascii.h"
#include "toolkit/header_block.h"

namespace orbelcast {

namespace {

int StatusOf(std::string_view status_line) {
  const std::size_t blank = std::min(status_line.find(' '), status_line.size());
  const std::string_view rest = Trimmed(status_line.substr(blank));
  int status = 0;
  std::from_chars(rest.data(), rest.data() + rest.size(), status);
  return status;
}

bool IsKnownTransferCoding(std::string_view list) {
  while (!list.empty()) {
    const std::size_t end = std::min(list.find(','), list.size());
    const std::string_view coding = Trimmed(list.substr(0, end));
    if (!coding.empty() && !EqualIgnoringCase(coding, "chunked") && !EqualIgnoringCase(coding, "identity"))
      return false;
    list.remove_prefix(std::min(end + 1, list.size()));
  }
  return true;
}

}  // namespace

void HttpAnswer::Clear() {
  status_ = 0;
  headers_.clear();
  header_bytes_ = 0;
  in_headers_ = false;
  handed_out_ = {};
  body_.reset();
}

bool HttpAnswer::TakeHeaderLine(std::string_view line) {
  header_bytes_ += line.size();
  if (header_bytes_ > http_limits::kMaxHeaderBytes) return false;
  const auto [name, value] = SplitHeader(line);
  if (EqualIgnoringCase(name, "Transfer-Encoding") && !IsKnownTransferCoding(Trimmed(value, " \t\r\n"))) return false;
  line = line.substr(0, line.find_last_not_of("\r\n") + 1);
  // A later answer of the same exchange replaces the one before; lines after a body are no headers.
  if (!in_headers_ && line.starts_with("HTTP/")) {
    headers_.clear();
    body_.reset();
    status_ = StatusOf(line);
    in_headers_ = true;
  }
  if (line.empty()) in_headers_ = false;
  if (in_headers_) headers_.append(line).append("\r\n");
  return true;
}

bool HttpAnswer::TakeBody(std::string_view part, std::int64_t announced) {
  if (announced > static_cast<std::int64_t>(http_limits::kMaxBodyBytes)) return false;
  FrameBytes::Storage& body = Buffer(announced);
  if (part.size() > http_limits::kMaxBodyBytes - body.size()) return false;
  body.insert(body.end(), part.begin(), part.end());
  last_body_bytes_ = body.size();
  return true;
}

std::string_view HttpAnswer::Header(std::string_view name) const {
  return HeaderIn(headers_, name);
}

std::vector<std::string_view> HttpAnswer::AllHeaders(std::string_view name) const {
  std::vector<std::string_view> values;
  std::string_view rest = headers_;
  while (const auto value = NextHeader(rest, name)) values.push_back(*value);
  return values;
}

std::string_view HttpAnswer::BodyText() const {
  if (!body_) return {};
  return {reinterpret_cast<const char*>(body_->data()), body_->size()};
}

FrameBytes HttpAnswer::Body() {
  if (handed_out_.Empty() && body_) handed_out_ = FrameBytes(body_);
  return handed_out_;
}

FrameBytes::Storage& HttpAnswer::Buffer(std::int64_t announced) {
  if (body_) return *body_;
  const auto unused = std::ranges::find_if(buffers_, [](const auto& buffer) { return buffer.use_count() <= 1; });
  if (unused == buffers_.end()) {
    body_ = std::make_shared<FrameBytes::Storage>();  // Somebody keeps every one of them.
  } else {
    if (!*unused) *unused = std::make_shared<FrameBytes::Storage>();
    // Pairs with the release by its last holder, perhaps on another thread.
    std::atomic_thread_fence(std::memory_order_acquire);
    body_ = *unused;
    body_->clear();
  }
  const std::size_t expected = announced >= 0 ? static_cast<std::size_t>(announced) : last_body_bytes_;
  body_->reserve(std::min(expected, http_limits::kMaxBodyBytes));
  return *body_;
}

}  // namespace orbelcast
