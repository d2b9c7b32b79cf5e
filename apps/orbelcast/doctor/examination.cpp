#include "orbelcast/doctor/examination.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <ostream>
#include <sstream>
#include <utility>

#include "common/http_status.h"
#include "common/shown_text.h"
#include "orbelcast/camera_address.h"
#include "orbelcast/doctor/time_code.h"
#include "protocol/relay.h"
#include "protocol/server_address.h"
#include "protocol/text.h"
#include "toolkit/ascii.h"
#include "toolkit/whole_number.h"

namespace orbelcast {

namespace {

/// The share of the pictures asked for below which the rate is worth a note.
constexpr double kGoodShare = 0.5;
/// Seconds by which two clocks may differ before a person wonders.
constexpr double kClockTolerance = 60;

/// A time as it was given: "0.3 s".
std::string SecondsText(double seconds) {
  std::ostringstream text;
  text << seconds << " s";
  return text.str();
}

std::string Rounded(double number, int decimals) {
  std::ostringstream text;
  text.setf(std::ios::fixed);
  text.precision(decimals);
  text << number;
  return text.str();
}

}  // namespace

Examination::Examination(const DoctorOptions& options, std::ostream& output)
    : options_(options),
      report_(options.server, options.json, output),
      http_(services_.Get().http, {.tells = options.messages.verbose}),
      platform_(services_.Get().With(http_)),
      server_(options.server) {}

ExitStatus Examination::Run() {
  struct NamedStep {
    const char* name;
    bool (Examination::*step)();
  };
  static constexpr std::array kWay{NamedStep{"relay", &Examination::Relay},
                                   NamedStep{"name", &Examination::Name},
                                   NamedStep{"connection", &Examination::Connection},
                                   NamedStep{"credentials", &Examination::Credentials},
                                   NamedStep{"information", &Examination::Information},
                                   NamedStep{"picture", &Examination::FirstPicture},
                                   NamedStep{"size", &Examination::Size},
                                   NamedStep{"rate", &Examination::Rate},
                                   NamedStep{"time code", &Examination::TimeCode}};
  bool goes_on = true;
  for (const auto& [name, step] : kWay) {
    if (goes_on) {
      goes_on = (this->*step)();
    } else {
      report_.Add({.name = name, .result = StepResult::kSkipped, .found = "not looked at"});
    }
  }
  report_.End();
  return report_.Works() ? kWorked : kNoPictures;
}

/// Of a relay account alone: where its server is.
bool Examination::Relay() {
  const std::string account(WithoutHttp(server_));
  if (!IsRelayAddress(platform_.configuration, account)) return true;
  const std::string answer =
      LookupRelayAddress(platform_.http, platform_.configuration, account, static_cast<std::int32_t>(Limit().count()));
  Step step{.name = "relay"};
  if (answer.empty()) {
    const std::string& lookup = platform_.configuration.relay_lookup_host;
    return Fail(step, "the relay service at " + lookup + " does not answer, or knows no server of this account",
                "check the account's name; the service's host is relay_lookup_host of the configuration");
  }
  server_ = ServerOfRelayAnswer(answer);
  step.found = "the account's server is " + server_;
  step.values["address"] = server_;
  return Pass(step);
}

bool Examination::Name() {
  const HostAndPort server = HostAndPortOf(server_);
  Step step{.name = "name", .values = {{"host", server.host}, {"addresses", Json::Array()}}};
  if (const auto port = WholeNumber<std::uint16_t>(server.port); !port || *port == 0) {
    return Fail(step, "there is no port " + server.port, "a port is a number from 1 to 65535; check it");
  }
  const NameLookup lookup = LookUpName(server);
  if (lookup.addresses.empty()) {
    return Fail(step, "there is no address for " + server.host + ": " + lookup.error,
                "check the spelling; try the server's numeric address, such as 192.168.1.20:8080");
  }
  std::string list;
  for (const NetworkAddress& address : lookup.addresses) {
    step.values["addresses"].Append(address.text);
    list += (list.empty() ? "" : ", ") + address.text;
  }
  step.found = lookup.was_numeric ? list + " is a numeric address" : server.host + " is " + list;
  addresses_ = lookup.addresses;
  return Pass(step);
}

bool Examination::Connection() {
  const std::string port = HostAndPortOf(server_).port;
  const ConnectionTry done = TryToConnect(addresses_, Limit());
  const std::string place = "port " + port + " of " + done.address;
  Step step{.name = "connection", .values = {{"address", done.address}, {"port", port}}};
  if (done.error == 0) {
    const double took = RoundedMilliseconds(done.took);
    step.values["milliseconds"] = took;
    step.found = place + " answers after " + Rounded(took, 1) + " ms";
    return Pass(step);
  }
  if (done.error == ECONNREFUSED) {
    return Fail(step, "nothing listens at " + place,
                "check the port (HOST:PORT; without one it is 80), and that the camera server runs");
  }
  if (done.error == ETIMEDOUT) {
    return Fail(step, place + " does not answer within " + SecondsText(options_.time_out),
                "check the address, that the server is on, and that no firewall is between");
  }
  return Fail(step, place + " cannot be reached: " + std::strerror(done.error),
              "check the address, and this machine's network");
}

bool Examination::Credentials() {
  const int status = AskForStatus();
  Step step{.name = "credentials", .values = {{"user", options_.access.user}}};
  if (status == 0) {
    step.result = StepResult::kSkipped;
    step.found = "no answer that could tell";
    report_.Add(step);
    return true;
  }
  const bool given = !options_.access.user.empty() || !options_.access.password.empty();
  const bool refused = status == kUnauthorized || status == kForbidden;
  step.values["asked_for"] = refused;
  if (refused && !given) {
    return Fail(step, "the server asks for a user name and a password, and none was given",
                "give --credentials FILE, or --user NAME and ORBELCAST_PASSWORD");
  }
  if (refused) {
    return Fail(step, "the server does not take user '" + options_.access.user + "' with this password",
                "check both, capital letters too; somebody at the server may have to add the user");
  }
  step.found = given ? "user '" + options_.access.user + "' is let in" : "none given, and none asked for";
  return Pass(step);
}

bool Examination::Information() {
  if (IsPicture()) {
    report_.Add({.name = "information",
                 .result = StepResult::kSkipped,
                 .found = "this is a picture's address, which has none"});
    return true;
  }
  Step step{.name = "information", .values = {{"status", info_->Status}}};
  if (info_->AllHeaders.empty()) {
    const bool late = http_.Newest().kind == FailureKind::kTimedOut;
    return Fail(step,
                late ? "no web server's answer within " + SecondsText(options_.time_out)
                     : "the connection ended without a web server's answer",
                "something else may listen at this port; check the port");
  }
  if (info_->Status != kHttpOk || !info_->ViewerMarker) {
    const std::string status = info_->Status == kHttpOk ? "" : " (status " + std::to_string(info_->Status) + ")";
    return Fail(step, "it answers, but not as a camera server does" + status,
                "check the port; of a camera without a camera server give the whole address of its picture, "
                "http://HOST/PATH");
  }
  const auto cameras = EntriesOf(*info_, "CAM:");
  step.values["name"] = info_->SystemName;
  step.values["software"] = info_->ServerHeader;
  step.values["cameras"] = cameras.size();
  step.found = (info_->SystemName.empty() ? "a camera server" : info_->SystemName) + ", " +
               std::to_string(cameras.size()) + (cameras.size() == 1 ? " camera" : " cameras");
  if (const std::string unread = WhatWasNotRead(*info_); !unread.empty()) unread_ = "; " + unread;
  step.found += unread_;
  if (cameras.empty()) {
    return Fail(step, step.found, "the server shows this user no camera: add one there, or use another user");
  }
  return ChooseCamera(step, cameras);
}

bool Examination::FirstPicture() {
  if (!picture_) picture_ = FetchPicture(platform_, picture_address_, options_.access, Limit());
  Step step{.name = "picture",
            .values = {{"address", MaskedAddress(picture_address_).Text()}, {"status", picture_->status}}};
  const FailureText told = TextOf(picture_->failure, {.limit = SecondsText(options_.time_out)});
  if (picture_->status != kHttpOk) return Fail(step, told.found, WhatToDo(told));
  step.values["milliseconds"] = picture_->milliseconds;
  step.values["bytes"] = picture_->bytes;
  step.values["kind"] = picture_->of_stream ? "stream" : "pictures";
  if (picture_->failure.kind != FailureKind::kNone) {
    const std::string type = picture_->content_type.empty() ? "" : " (" + picture_->content_type + ")";
    return Fail(step, told.found + type, told.advice);
  }
  step.found = (camera_name_.empty() ? "" : camera_name_ + ": ") +
               Rounded(static_cast<double>(picture_->bytes) / 1024, 1) + " KB after " +
               Rounded(picture_->milliseconds, 1) + " ms, " +
               (picture_->of_stream ? "from a stream of pictures" : "one picture for each request");
  return Pass(step);
}

bool Examination::Size() {
  return Pass({.name = "size",
               .found = std::to_string(picture_->width) + "x" + std::to_string(picture_->height) + " pixels",
               .values = {{"width", picture_->width}, {"height", picture_->height}}});
}

bool Examination::Rate() {
  const PictureRate rate = MeasureRate(picture_address_, options_.access, options_.seconds, options_.time_out);
  const double a_second = rate.PerSecond();
  Step step{.name = "rate", .values = {{"asked", kAskedRate}, {"pictures_a_second", std::round(a_second * 10) / 10}}};
  step.found = Rounded(a_second, 1) + " pictures a second, where " + std::to_string(kAskedRate) + " were asked for";
  if (rate.pictures < 2) {
    return Fail(step, "no second picture came within " + SecondsText(options_.seconds),
                "the camera may send one picture only, or be very slow: try --seconds 10");
  }
  if (a_second < kGoodShare * kAskedRate) {
    step.result = StepResult::kNote;
    step.advice = "the network or the camera is slow: ask for smaller pictures, or fewer a second";
  }
  return Pass(step);
}

bool Examination::TimeCode() {
  Step step{.name = "time code", .values = {{"time_code", picture_->time_code}}};
  const auto seconds = SecondsOf(picture_->time_code);
  if (!seconds) {
    step.result = StepResult::kNote;
    step.found = picture_->time_code.empty() ? "the pictures have none" : "it is none: " + picture_->time_code;
    step.advice = "viewers show this machine's clock instead; nothing has to be done";
    return Pass(step);
  }
  const double ahead = *seconds - SecondsOf(platform_.clock.Now());
  step.values["seconds_ahead"] = ahead;
  step.found = DateAndTime(picture_->time_code);
  if (std::abs(ahead) > kClockTolerance) {
    step.result = StepResult::kNote;
    step.found +=
        ", " + Rounded(std::abs(ahead), 0) + " s " + (ahead > 0 ? "ahead of" : "behind") + " this machine's clock";
    step.advice = "set the clock or the time zone of the one that is wrong; archive searches go by the server's";
  }
  return Pass(step);
}

bool Examination::Pass(const Step& step) {
  report_.Add(step);
  return true;
}
bool Examination::Fail(Step step, const std::string& found, const std::string& advice) {
  step.result = StepResult::kFailed;
  step.found = found;
  step.advice = advice;
  report_.Add(step);
  return false;
}

/// The address has a path: it is a picture's, not a server's.
bool Examination::IsPicture() const {
  const std::string_view place = WithoutHttp(server_);
  return place.find('/') < place.size() - 1;
}

/// The first request that needs the credentials; 0 where no answer came.
int Examination::AskForStatus() {
  if (IsPicture()) {
    picture_address_ = StartsWithIgnoringCase(server_, "http://") ? server_ : "http://" + server_;
    picture_ = FetchPicture(platform_, picture_address_, options_.access, Limit());
    return picture_->status;
  }
  info_ = QueryServerInfo(platform_.http, platform_.configuration, server_, options_.access.user,
                          options_.access.password, static_cast<std::int32_t>(Limit().count()), InfoMode::kAllLines);
  return info_->AllHeaders.empty() ? 0 : info_->Status;
}

bool Examination::ChooseCamera(Step& step, const std::vector<Entry>& cameras) {
  const Entry* const camera = FindCamera(cameras, options_.device);
  if (camera == nullptr) {
    return Fail(step, "there is no camera '" + options_.device + "'" + unread_,
                "give one of these to --device: " + DevicesOf(cameras));
  }
  camera_name_ = camera->Field(1) + " (" + camera->Field(0) + ")";
  live_base_ = camera->Field(2);
  if (!StartsWithIgnoringCase(live_base_, "http://")) {
    return Fail(step, "the address of " + camera_name_ + " does not begin with http://: '" + live_base_ + "'" + unread_,
                "set the camera's address at the server: its information must name one that clients reach");
  }
  picture_address_ = LiveStreamAddress(TileAddress(live_base_, options_.access), AskedPicture());
  return Pass(step);
}

std::string Examination::WhatToDo(const FailureText& told) const {
  if (live_base_.empty() || HostAndPortOf(live_base_).host == HostAndPortOf(server_).host) return told.advice;
  return "the server says that the camera is at " + MaskedAddress(live_base_).Text() +
         "; check that this machine can reach that address";
}

}  // namespace orbelcast
