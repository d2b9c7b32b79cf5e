#include "faults.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <utility>

namespace orbelcast::camera_server {

namespace {

struct Word {
  std::string_view name;
  FaultKind kind;
  std::string_view value_name;  ///< empty: the word takes none
  int least;
  int most;
  std::optional<int> fallback;  ///< of a value that may be left out; a negative one is told from the picture
  std::string_view help;
};

constexpr std::array<std::pair<std::string_view, FaultPlace>, 3> kPlaces{
    {{"info", kInfoPlace}, {"command", kCommandPlace}, {"relay", kRelayPlace}}};

constexpr int kTenMinutes = 600'000;
constexpr int kHalf = -1;

constexpr std::array<Word, 14> kWords{{
    {"none", FaultKind::kNone, "", 0, 0, {}, "answer as it should"},
    {"status", FaultKind::kStatus, "CODE", 200, 599, {}, "that HTTP status, with a line of text"},
    {"delay", FaultKind::kDelay, "MS", 0, kTenMinutes, {}, "the right answer, so many milliseconds late"},
    {"never", FaultKind::kNever, "", 0, 0, {}, "no answer; the connection stays open"},
    {"cut", FaultKind::kCut, "BYTES", 0, INT_MAX, kHalf, "closed after so many bytes of the body (half of it)"},
    {"jpegcut", FaultKind::kJpegCut, "BYTES", 0, INT_MAX, kHalf, "complete HTTP; the picture ends early (after half)"},
    {"reset", FaultKind::kReset, "", 0, 0, {}, "the connection is reset"},
    {"garbage", FaultKind::kGarbage, "", 0, 0, {}, "bytes that are no HTTP, then closed"},
    {"junkbody", FaultKind::kJunkBody, "", 0, 0, {}, "status 200 with bytes that are no JPEG"},
    {"endless", FaultKind::kEndless, "", 0, 0, {}, "a body without length that does not end"},
    {"endless-chunked", FaultKind::kEndlessChunked, "", 0, 0, {}, "a chunked body that does not end"},
    {"trickle", FaultKind::kTrickle, "MS", 0, kTenMinutes, 1000, "the body at a byte each so many milliseconds (1000)"},
    {"headers", FaultKind::kHeaders, "COUNT", 0, 1'000'000, {}, "so many header lines more"},
    {"huge", FaultKind::kHuge, "", 0, 0, {}, "a picture whose header promises 65535x65535 pixels"},
}};

const Word& WordOf(FaultKind kind) {
  return *std::find_if(kWords.begin(), kWords.end(), [&](const Word& word) { return word.kind == kind; });
}

int ValueOf(const Fault& fault) {
  return fault.value.value_or(WordOf(fault.kind).fallback.value_or(0));
}

int ParseCount(std::string_view text, int least, int most, const std::string& what) {
  int count = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), count);
  if (error != std::errc() || end != text.data() + text.size() || count < least || count > most) {
    throw std::invalid_argument(what + " a number from " + std::to_string(least) + " to " + std::to_string(most));
  }
  return count;
}

const Word& FindWord(std::string_view name) {
  const auto word = std::find_if(kWords.begin(), kWords.end(), [&](const Word& each) { return each.name == name; });
  if (word != kWords.end()) return *word;
  std::string names;
  for (const Word& each : kWords) names += (names.empty() ? "" : ", ") + std::string(each.name);
  throw std::invalid_argument("there is no fault '" + std::string(name) + "'; there are " + names);
}

/// The same bytes each time; no two neighbours make an HTTP line or a JPEG marker.
std::string Junk(std::size_t count) {
  std::string bytes(count, '\0');
  std::uint32_t state = 12345;
  for (char& byte : bytes) {
    state = state * 1664525u + 1013904223u;
    byte = static_cast<char>(0x80 | ((state >> 24) & 0x3f));
  }
  return bytes;
}

void ReplaceBody(Response& response, std::string body) {
  response.body = std::make_shared<const std::string>(std::move(body));
}

std::size_t ShortLength(const Fault& fault, std::size_t whole) {
  const int value = ValueOf(fault);
  return value == kHalf ? whole / 2 : std::min(whole, static_cast<std::size_t>(value));
}

/// Writes 65535 by 65535 into the frame header of a JPEG; leaves other bytes as they are.
std::string PromiseHugeSize(std::string jpeg) {
  const auto at = [&](std::size_t index) { return static_cast<unsigned char>(jpeg[index]); };
  for (std::size_t marker = 2; marker + 9 <= jpeg.size() && at(marker) == 0xff;) {
    const unsigned code = at(marker + 1);
    if (code >= 0xc0 && code <= 0xc2) {  // the frame header: length, precision, height, width
      std::fill_n(jpeg.begin() + static_cast<std::ptrdiff_t>(marker) + 5, 4, '\xff');
      break;
    }
    marker += 2 + at(marker + 2) * 256u + at(marker + 3);
  }
  return jpeg;
}

bool SendLate(Connection& connection, const Request& request, const Response& response,
              std::chrono::milliseconds time) {
  return connection.Pause(time) && SendResponse(connection, request, response);
}

bool SendNothing(Connection& connection) {
  connection.WaitUntilGone();
  return false;
}

bool SendCut(Connection& connection, const Response& response, std::size_t count) {
  connection.Send(HeadBytes(response, true) + response.body->substr(0, count));
  return false;
}

bool SendReset(Connection& connection) {
  connection.Reset();
  return false;
}

bool SendGarbage(Connection& connection) {
  constexpr std::size_t kBytes = 512;
  connection.Send(Junk(kBytes));
  return false;
}

bool SendEndless(Connection& connection, const Response& response, bool is_chunked) {
  constexpr std::size_t kPiece = 64 * 1024;  // 0x10000
  const std::string piece = is_chunked ? "10000\r\n" + Junk(kPiece) + "\r\n" : Junk(kPiece);
  bool is_open = connection.Send(HeadLines(response) + (is_chunked ? "Transfer-Encoding: chunked\r\n" : "") +
                                 "Connection: close\r\n\r\n");
  while (is_open) is_open = connection.Send(piece);
  return false;
}

bool SendTrickle(Connection& connection, const Request& request, const Response& response,
                 std::chrono::milliseconds pause) {
  bool is_open = connection.Send(HeadBytes(response, request.keep_alive));
  for (std::size_t i = 0; is_open && i < response.body->size(); ++i) {
    is_open = connection.Pause(pause) && connection.Send(std::string_view(*response.body).substr(i, 1));
  }
  return is_open && request.keep_alive;
}

}  // namespace

Fault ParseFault(std::string_view text) {
  Fault fault;
  if (const std::size_t mark = text.find_first_of("@*"); mark != std::string_view::npos) {
    const int count = ParseCount(text.substr(mark + 1), 1, INT_MAX, "what follows @ or * in a fault is");
    if (text[mark] == '@') {
      fault.every = count;
    } else {
      fault.times = count;
    }
    text = text.substr(0, mark);
  }
  const std::size_t colon = text.find(':');
  const Word& word = FindWord(text.substr(0, colon));
  const std::string name(word.name);
  fault.kind = word.kind;
  if (colon != std::string_view::npos) {
    if (word.value_name.empty()) throw std::invalid_argument("the fault '" + name + "' takes no value");
    fault.value = ParseCount(text.substr(colon + 1), word.least, word.most, "the value of the fault '" + name + "' is");
  } else if (!word.value_name.empty() && !word.fallback) {
    throw std::invalid_argument("the fault '" + name + "' needs a value: " + name + ":" + std::string(word.value_name));
  }
  return fault;
}

std::string FaultText(const Fault& fault) {
  std::string text(WordOf(fault.kind).name);
  if (fault.value) text += ":" + std::to_string(*fault.value);
  if (fault.every > 1) text += "@" + std::to_string(fault.every);
  if (fault.times) text += "*" + std::to_string(*fault.times);
  return text;
}

std::string FaultHelp() {
  constexpr std::size_t kColumn = 18;
  std::string help;
  for (const Word& word : kWords) {
    std::string form(word.name);
    if (!word.value_name.empty()) {
      const std::string value = ":" + std::string(word.value_name);
      form += word.fallback ? "[" + value + "]" : value;
    }
    form.resize(std::max(kColumn, form.size() + 1), ' ');
    help += "  " + form + std::string(word.help) + "\n";
  }
  return help;
}

void FaultPlan::Set(int place, const Fault& fault) {
  const std::lock_guard lock(mutex_);
  planned_[place] = {.fault = fault};
}

Fault FaultPlan::Next(int place) {
  const std::lock_guard lock(mutex_);
  const auto found = planned_.find(place);
  if (found == planned_.end()) return {};
  auto& [fault, requests] = found->second;
  requests = (requests + 1) % fault.every;
  if (requests != 0) return {};
  const Fault now = fault;
  if (fault.times && --*fault.times == 0) planned_.erase(found);
  return now;
}

Fault FaultPlan::Current(int place) const {
  const std::lock_guard lock(mutex_);
  const auto found = planned_.find(place);
  return found == planned_.end() ? Fault{} : found->second.fault;
}

void PlanFault(const Settings& settings, std::string_view place, std::string_view fault, FaultPlan& plan) {
  const Fault parsed = ParseFault(fault);
  const auto named =
      std::find_if(kPlaces.begin(), kPlaces.end(), [&](const auto& each) { return each.first == place; });
  if (named != kPlaces.end()) return plan.Set(named->second, parsed);
  const int count = static_cast<int>(settings.camera_names.size());
  const bool is_all = place == "all";
  const int first = is_all ? 1 : ParseCount(place, 1, count, "a fault is for 'all', 'info', 'command', 'relay' or");
  for (int each = first; each <= (is_all ? count : first); ++each) plan.Set(each, parsed);
}

std::string FaultLines(const Settings& settings, const FaultPlan& plan) {
  std::string lines;
  for (int each = 1; settings.HasCamera(each); ++each) {
    lines += std::to_string(each) + "=" + FaultText(plan.Current(each)) + "\r\n";
  }
  for (const auto& [name, place] : kPlaces) lines.append(name).append("=" + FaultText(plan.Current(place)) + "\r\n");
  return lines.substr(0, lines.size() - 2);
}

Reply Misbehave(const Fault& fault, Reply reply) {
  Response& response = reply.response;
  const int value = ValueOf(fault);
  const std::chrono::milliseconds time(value);
  switch (fault.kind) {
    case FaultKind::kNone:
      break;
    case FaultKind::kStatus:
      response = TextResponse(value, StatusText(value));
      break;
    case FaultKind::kJunkBody:
      ReplaceBody(response, Junk(response.body->size()));
      break;
    case FaultKind::kJpegCut:
      ReplaceBody(response, response.body->substr(0, ShortLength(fault, response.body->size())));
      break;
    case FaultKind::kHuge:
      ReplaceBody(response, PromiseHugeSize(*response.body));
      break;
    case FaultKind::kHeaders:
      for (int i = 1; i <= value; ++i) response.headers.emplace_back("X-Filler-" + std::to_string(i), "filler");
      break;
    case FaultKind::kDelay:
      reply.delivery = [time](Connection& connection, const Request& request, const Response& answer) {
        return SendLate(connection, request, answer, time);
      };
      break;
    case FaultKind::kNever:
      reply.delivery = [](Connection& connection, const Request&, const Response&) { return SendNothing(connection); };
      break;
    case FaultKind::kCut:
      reply.delivery = [count = ShortLength(fault, response.body->size())](Connection& connection, const Request&,
                                                                           const Response& answer) {
        return SendCut(connection, answer, count);
      };
      break;
    case FaultKind::kReset:
      reply.delivery = [](Connection& connection, const Request&, const Response&) { return SendReset(connection); };
      break;
    case FaultKind::kGarbage:
      reply.delivery = [](Connection& connection, const Request&, const Response&) { return SendGarbage(connection); };
      break;
    case FaultKind::kEndless:
    case FaultKind::kEndlessChunked:
      reply.delivery = [is_chunked = fault.kind == FaultKind::kEndlessChunked](Connection& connection, const Request&,
                                                                               const Response& answer) {
        return SendEndless(connection, answer, is_chunked);
      };
      break;
    case FaultKind::kTrickle:
      reply.delivery = [time](Connection& connection, const Request& request, const Response& answer) {
        return SendTrickle(connection, request, answer, time);
      };
      break;
  }
  return reply;
}

}  // namespace orbelcast::camera_server
