#include "camera_server/faults.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <utility>

#include "camera_server/addresses.h"

namespace orbelcast::camera_server {

/// An answer on its way, for a fault to meddle with.
struct Exchange {
  Connection& connection;
  const Request& request;
  Response response;
  int value;

  bool Send() const { return response.delivery(connection, request, response); }
  bool Pause() const { return connection.Pause(std::chrono::milliseconds(value)); }
};

struct FaultKind {
  std::string_view name;
  std::string_view value_name;  ///< empty: the word takes none
  int least;
  int most;
  std::optional<int> fallback;  ///< of a value that may be left out
  std::string_view help;
  /// Sends what the fault makes of the answer; returns whether the connection may serve a further request.
  bool (*serve)(Exchange& exchange);
};

namespace {

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

constexpr int kHalf = -1;
std::string Shortened(const Exchange& exchange) {
  const std::string& body = *exchange.response.body;
  return body.substr(0, exchange.value == kHalf ? body.size() / 2 : static_cast<std::size_t>(exchange.value));
}

bool SendBody(Exchange& exchange, std::string body) {
  exchange.response.body = MakeBody(std::move(body));
  return exchange.Send();
}

bool AnswerStatus(Exchange& exchange) {
  exchange.response = TextResponse(exchange.value, StatusText(exchange.value));
  return exchange.Send();
}

bool AnswerNever(Exchange& exchange) {
  exchange.connection.WaitUntilGone();
  return false;
}

bool Cut(Exchange& exchange) {
  exchange.connection.Send(HeadBytes(exchange.response, true) + Shortened(exchange));
  return false;
}

bool Reset(Exchange& exchange) {
  exchange.connection.Reset();
  return false;
}

bool AnswerGarbage(Exchange& exchange) {
  exchange.connection.Send(Junk(512));
  return false;
}

bool SendWithoutEnd(Exchange& exchange, const std::string& header, const std::string& piece) {
  bool is_open = exchange.connection.Send(HeadLines(exchange.response) + header + "Connection: close\r\n\r\n");
  while (is_open) is_open = exchange.connection.Send(piece);
  return false;
}

constexpr std::size_t kPiece = 0x10000;
constexpr const char* kChunked = "Transfer-Encoding: chunked\r\n";

bool Trickle(Exchange& exchange) {
  bool is_open = exchange.connection.Send(HeadBytes(exchange.response, exchange.request.keep_alive));
  for (const char& byte : *exchange.response.body) {
    is_open = is_open && exchange.Pause() && exchange.connection.Send({&byte, 1});
  }
  return is_open && exchange.request.keep_alive;
}

bool AddHeaders(Exchange& exchange) {
  for (int i = 1; i <= exchange.value; ++i) {
    exchange.response.headers.emplace_back("X-Filler-" + std::to_string(i), "filler");
  }
  return exchange.Send();
}

/// Writes 65535 by 65535 into the frame header of a JPEG; leaves other bytes as they are.
bool PromiseHugeSize(Exchange& exchange) {
  std::string jpeg = *exchange.response.body;
  const auto at = [&](std::size_t index) { return static_cast<unsigned char>(jpeg[index]); };
  for (std::size_t marker = 2; marker + 9 <= jpeg.size() && at(marker) == 0xff;) {
    if (at(marker + 1) >= 0xc0 && at(marker + 1) <= 0xc2) {  // the frame header: length, precision, height, width
      std::fill_n(jpeg.begin() + static_cast<std::ptrdiff_t>(marker) + 5, 4, '\xff');
      break;
    }
    marker += 2 + at(marker + 2) * 256u + at(marker + 3);
  }
  return SendBody(exchange, std::move(jpeg));
}

constexpr int kLongest = 600'000;  // ten minutes
constexpr std::array<FaultKind, 14> kKinds{{
    {"none", "", 0, 0, {}, "answer as it should", [](Exchange& to) { return to.Send(); }},
    {"status", "CODE", 200, 599, {}, "that HTTP status, with a line of text", AnswerStatus},
    {"delay", "MS", 0, kLongest, std::nullopt, "the right answer, so many milliseconds late",
     [](Exchange& to) { return to.Pause() && to.Send(); }},
    {"never", "", 0, 0, {}, "no answer; the connection stays open", AnswerNever},
    {"cut", "BYTES", 0, INT_MAX, kHalf, "closed after so many bytes of the body (half of it)", Cut},
    {"jpegcut", "BYTES", 0, INT_MAX, kHalf, "complete HTTP; the picture ends early (after half)",
     [](Exchange& to) { return SendBody(to, Shortened(to)); }},
    {"reset", "", 0, 0, {}, "the connection is reset", Reset},
    {"garbage", "", 0, 0, {}, "bytes that are no HTTP, then closed", AnswerGarbage},
    {"junkbody", "", 0, 0, std::nullopt, "status 200 with bytes that are no JPEG",
     [](Exchange& to) { return SendBody(to, Junk(to.response.body->size())); }},
    {"endless", "", 0, 0, std::nullopt, "a body without length that does not end",
     [](Exchange& to) { return SendWithoutEnd(to, "", Junk(kPiece)); }},
    {"endless-chunked", "", 0, 0, std::nullopt, "a chunked body that does not end",
     [](Exchange& to) { return SendWithoutEnd(to, kChunked, "10000\r\n" + Junk(kPiece) + "\r\n"); }},
    {"trickle", "MS", 0, kLongest, 1000, "the body at a byte each so many milliseconds (1000)", Trickle},
    {"headers", "COUNT", 0, 1'000'000, {}, "so many header lines more", AddHeaders},
    {"huge", "", 0, 0, {}, "a picture whose header promises 65535x65535 pixels", PromiseHugeSize},
}};
constexpr const FaultKind* kNone = kKinds.data();

int ParseCount(std::string_view text, int least, int most, const std::string& what) {
  const int count = WholeNumber(text).value_or(least - 1);
  if (count >= least && count <= most) return count;
  throw std::invalid_argument(what + " a number from " + std::to_string(least) + " to " + std::to_string(most));
}

const FaultKind& FindKind(std::string_view name) {
  const auto* const kind = std::ranges::find(kKinds, name, &FaultKind::name);
  if (kind != kKinds.end()) return *kind;
  std::string names;
  for (const FaultKind& each : kKinds) names += (names.empty() ? "" : ", ") + std::string(each.name);
  throw std::invalid_argument("there is no fault '" + std::string(name) + "'; there are " + names);
}

Fault ParseFault(std::string_view text) {
  Fault fault{.kind = kNone};
  if (const std::size_t mark = text.find_first_of("@*"); mark != std::string_view::npos) {
    const int count = ParseCount(text.substr(mark + 1), 1, INT_MAX, "what follows @ or * in a fault is");
    if (text[mark] == '@') fault.every = count;
    if (text[mark] == '*') fault.times = count;
    text = text.substr(0, mark);
  }
  const std::size_t colon = text.find(':');
  fault.kind = &FindKind(text.substr(0, colon));
  const std::string what = "the fault '" + std::string(fault.kind->name) + "'";
  if (colon != std::string_view::npos) {
    if (fault.kind->value_name.empty()) throw std::invalid_argument(what + " takes no value");
    fault.value =
        ParseCount(text.substr(colon + 1), fault.kind->least, fault.kind->most, "the value of " + what + " is");
  } else if (!fault.kind->value_name.empty() && !fault.kind->fallback) {
    throw std::invalid_argument(what + " needs a value, as in " + std::string(fault.kind->name) + ":" +
                                std::string(fault.kind->value_name));
  }
  return fault;
}

std::string FaultText(const Fault& fault) {
  std::string text(fault.kind->name);
  if (fault.value) text += ":" + std::to_string(*fault.value);
  if (fault.every > 1) text += "@" + std::to_string(fault.every);
  if (fault.times) text += "*" + std::to_string(*fault.times);
  return text;
}

}  // namespace

std::string FaultHelp() {
  constexpr std::size_t kColumn = 18;
  std::string help;
  for (const FaultKind& kind : kKinds) {
    const std::string value = kind.value_name.empty() ? "" : ":" + std::string(kind.value_name);
    std::string form = std::string(kind.name) + (kind.fallback ? "[" + value + "]" : value);
    form.resize(std::max(kColumn, form.size() + 1), ' ');
    help += "  " + form + std::string(kind.help) + "\n";
  }
  return help;
}

FaultPlan::FaultPlan(int cameras) {
  for (int camera = 1; camera <= cameras; ++camera) places_.push_back({std::to_string(camera), {.kind = kNone}});
  for (const auto name : {kInfoPlace, kCommandPlace, kRelayPlace})
    places_.push_back({std::string(name), {.kind = kNone}});
}

void FaultPlan::Set(std::string_view place, std::string_view fault) {
  const Fault parsed = ParseFault(fault);
  const std::lock_guard lock(mutex_);
  bool is_there = false;
  for (Place& each : places_) {
    if (each.name != place && !(place == "all" && each.name.front() <= '9')) continue;  // of cameras it is a number
    each.fault = parsed;
    each.requests = 0;
    is_there = true;
  }
  if (!is_there) throw std::invalid_argument("a fault is for a camera's number, 'all', 'info', 'command' or 'relay'");
}

Response FaultPlan::Apply(std::string_view place, Response response) {
  std::unique_lock lock(mutex_);
  Place& planned = *std::ranges::find(places_, place, &Place::name);
  planned.requests = (planned.requests + 1) % planned.fault.every;
  if (planned.requests != 0) return response;
  const Fault now = planned.fault;
  if (planned.fault.times && --*planned.fault.times == 0) planned.fault = {.kind = kNone};
  lock.unlock();
  response.delivery = [now, right = std::move(response.delivery)](Connection& connection, const Request& request,
                                                                  const Response& answer) {
    Exchange exchange{connection, request, answer, now.value.value_or(now.kind->fallback.value_or(0))};
    exchange.response.delivery = right;
    return now.kind->serve(exchange);
  };
  return response;
}

std::string FaultPlan::Lines() const {
  const std::lock_guard lock(mutex_);
  std::string lines;
  for (const Place& each : places_) lines += (lines.empty() ? "" : "\r\n") + each.name + "=" + FaultText(each.fault);
  return lines;
}

}  // namespace orbelcast::camera_server
