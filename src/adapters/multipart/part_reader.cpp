#include "adapters/multipart/part_reader.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "platform/http_request.h"
#include "toolkit/ascii.h"
#include "toolkit/header_block.h"

namespace orbelcast {

namespace {

constexpr std::string_view kType = "multipart/x-mixed-replace";
constexpr std::string_view kJpegBegin = "\xff\xd8";
constexpr std::string_view kJpegEnd = "\xff\xd9";
constexpr std::string_view kDashes = "--";
/// The standard's longest boundary is 70 letters; a search takes time by its length.
constexpr std::size_t kMaxDelimiter = 200;
/// Blanks behind a delimiter, as mail gateways add them.
constexpr std::size_t kMaxBlanks = 64;
/// From this length on no picture holds a delimiter by chance, so it may stand anywhere.
constexpr std::size_t kSureDelimiter = 8;

std::string_view WithoutDashes(std::string_view text) {
  return text.substr(std::min(text.find_first_not_of('-'), text.size()));
}

std::string_view WithoutLineEnd(std::string_view text) {
  if (text.ends_with('\n')) text.remove_suffix(1);
  if (text.ends_with('\r')) text.remove_suffix(1);
  return text;
}

/// The parameter of a Content-Type; one that is not quoted may hold blanks.
std::string_view BoundaryOf(std::string_view content_type) {
  constexpr std::string_view kName = "boundary=";
  while (!content_type.empty()) {
    content_type.remove_prefix(std::min(content_type.find(';'), content_type.size() - 1) + 1);
    std::string_view value = Trimmed(content_type);
    if (!StartsWithIgnoringCase(value, kName) || value.size() == kName.size()) continue;
    value = Trimmed(value.substr(kName.size()));
    if (value.starts_with('"')) return value.substr(1, value.find('"', 1) - 1);
    return Trimmed(value.substr(0, value.find(';')));
  }
  return {};
}

std::optional<std::size_t> LengthIn(std::string_view headers) {
  const std::string_view text = HeaderIn(headers, "Content-Length");
  std::size_t length = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), length);
  if (error != std::errc() || length == 0) return std::nullopt;
  return length;
}

}  // namespace

bool PartReader::Reads(std::string_view content_type) {
  return EqualIgnoringCase(Trimmed(content_type.substr(0, content_type.find(';'))), kType);
}

PartReader::PartReader(std::string_view content_type) : boundary_(WithoutDashes(BoundaryOf(content_type))) {}

bool PartReader::Take(std::string_view bytes) {
  buffer_.append(bytes);
  while (Step()) {
  }
  const std::size_t most = state_ == State::kBody ? http_limits::kMaxBodyBytes : http_limits::kMaxHeaderBytes;
  return buffer_.size() <= most && text_bytes_ <= http_limits::kMaxHeaderBytes;
}

PartReader::Part PartReader::TakeNewest() {
  Part part = newest_ ? std::move(*newest_) : Part();
  newest_.reset();
  return part;
}

bool PartReader::Step() {
  switch (state_) {
    case State::kPreamble:
      return ReadPreamble();
    case State::kHeaders:
      return ReadHeaders();
    case State::kBody:
      return ReadBody();
    case State::kRest:
      break;
  }
  return SkipRest();
}

bool PartReader::ReadPreamble() {
  const auto line = TakeLine();
  if (!line) return false;
  const std::string_view text = Trimmed(*line);
  if (text.size() <= kDashes.size() || text.size() > kMaxDelimiter) return true;
  if (!text.starts_with(kDashes) && (boundary_.empty() || WithoutDashes(text) != boundary_)) return true;
  delimiter_ = text;
  text_bytes_ = 0;
  state_ = State::kHeaders;
  return true;
}

bool PartReader::ReadHeaders() {
  bool ended = buffer_.starts_with(kJpegBegin);
  if (!ended) {
    const auto line = TakeLine();
    if (!line) return false;
    ended = line->empty();
    if (!ended) headers_.append(*line).append("\r\n");
  }
  if (!ended) return true;
  length_ = LengthIn(headers_);
  text_bytes_ = 0;
  state_ = State::kBody;
  return true;
}

bool PartReader::ReadBody() {
  if (const auto delimiter = FindDelimiter()) {
    Complete(WithoutLineEnd(std::string_view(buffer_).substr(0, delimiter->begin)).size());
    Drop(delimiter->end);
    state_ = delimiter->closes ? State::kRest : State::kHeaders;
    return true;
  }
  const auto end = EndOfPicture();
  if (!end) return false;
  Complete(*end);
  Drop(*end);
  state_ = State::kRest;
  return true;
}

// The bytes after a picture that was complete before its delimiter, or after the last delimiter.
bool PartReader::SkipRest() {
  const auto delimiter = FindDelimiter();
  Drop(delimiter ? delimiter->end : searched_);
  if (delimiter && !delimiter->closes) state_ = State::kHeaders;
  return delimiter.has_value();
}

std::optional<std::string> PartReader::TakeLine() {
  const std::size_t end = buffer_.find('\n', searched_);
  if (end == std::string::npos) {
    searched_ = buffer_.size();
    return std::nullopt;
  }
  std::string line(WithoutLineEnd(std::string_view(buffer_).substr(0, end + 1)));
  text_bytes_ += end + 1;
  Drop(end + 1);
  return line;
}

std::optional<PartReader::Delimiter> PartReader::FindDelimiter() {
  const std::string_view bytes = buffer_;
  for (std::size_t at = bytes.find(delimiter_, searched_); at != std::string_view::npos;
       at = bytes.find(delimiter_, at + 1)) {
    const std::string_view before = bytes.substr(0, at);
    const bool fits = before.empty() || before.ends_with('\n') || before.ends_with(kJpegEnd);
    if (!fits && delimiter_.size() < kSureDelimiter) continue;
    const std::size_t behind = at + delimiter_.size();
    const std::string_view rest = bytes.substr(behind, kMaxBlanks);
    if (rest.starts_with(kDashes)) return Delimiter{at, behind + kDashes.size(), true};
    const std::size_t end = std::min(rest.find_first_not_of(" \t\r"), rest.size());
    if (end < rest.size() && rest[end] == '\n') return Delimiter{at, behind + end + 1, false};
    if (rest == "-" || (end == rest.size() && end < kMaxBlanks)) {
      searched_ = at;  // It may become one.
      return std::nullopt;
    }
  }
  searched_ = std::max(searched_, bytes.size() - std::min(bytes.size(), delimiter_.size()));
  return std::nullopt;
}

std::optional<std::size_t> PartReader::EndOfPicture() const {
  const std::string_view body = buffer_;
  if (!body.starts_with(kJpegBegin)) return std::nullopt;
  if (length_ && body.size() < *length_) return std::nullopt;
  if (length_ && body.substr(0, *length_).ends_with(kJpegEnd)) return length_;
  const std::string_view come = WithoutLineEnd(body);
  return come.ends_with(kJpegEnd) ? std::optional(come.size()) : std::nullopt;
}

void PartReader::Complete(std::size_t size) {
  if (size != 0) {
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(buffer_.data());
    newest_ = {std::move(headers_), FrameBytes(FrameBytes::Storage(bytes, bytes + size))};
  }
  headers_.clear();
}

void PartReader::Drop(std::size_t count) {
  buffer_.erase(0, count);
  searched_ = 0;
}

}  // namespace orbelcast
