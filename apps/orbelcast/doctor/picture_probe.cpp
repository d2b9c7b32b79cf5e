#include "orbelcast/doctor/picture_probe.h"

#include <cmath>
#include <sstream>

#include "orbelcast/watcher.h"
#include "stream/seconds.h"
#include "toolkit/ascii.h"

namespace orbelcast {

namespace {

using Steady = std::chrono::steady_clock;

/// The size of a picture that can be decoded to its end; nothing for another.
std::optional<Size> DecodedSize(JpegDecoder& decoder, const FrameBytes& jpeg) {
  std::uint32_t pixel = 0;
  const bool decoded = decoder.DrawInto({.first = &pixel, .width = 1, .height = 1, .rows = 1, .stride = 1}, jpeg, {});
  return decoded ? decoder.SizeOf(jpeg) : std::nullopt;
}

}  // namespace

double RoundedMilliseconds(std::chrono::nanoseconds time) {
  return std::round(std::chrono::duration<double, std::milli>(time).count() * 10) / 10;
}

PictureAnswer FetchPicture(Platform& platform, const std::string& address, const Access& access,
                           std::chrono::milliseconds limit) {
  PictureAnswer picture;
  const auto request = platform.http.Create();
  const auto start = Steady::now();
  bool worked = request->Open("GET", address);
  if (!access.user.empty() || !access.password.empty()) {
    worked &= request->SetCredentials(access.user, access.password, 0);
  }
  const auto milliseconds = static_cast<std::int32_t>(limit.count());
  worked &= request->SetTimeouts(milliseconds, milliseconds, milliseconds, milliseconds);
  worked &= request->Send();
  picture.failure = FailureOf(*request, worked);
  if (!worked) return picture;
  picture.status = request->Status();
  picture.milliseconds = RoundedMilliseconds(Steady::now() - start);
  picture.content_type = request->GetResponseHeader("Content-Type");
  picture.time_code = request->GetResponseHeader("RC_TCR");
  const std::string headers = LowerCase(request->GetAllResponseHeaders());
  picture.of_stream = headers.find("multipart/x-mixed-replace") != std::string::npos;
  const FrameBytes body = request->ResponseBody();
  picture.bytes = body.Size();
  const auto size = DecodedSize(platform.jpeg_decoder, body);
  if (!size) {
    if (picture.failure.kind == FailureKind::kNone) picture.failure.kind = FailureKind::kNoPicture;
    return picture;
  }
  picture.width = size->width;
  picture.height = size->height;
  return picture;
}

PictureRate MeasureRate(const std::string& address, const Access& access, double seconds, double first_within) {
  WatchOptions watch;
  watch.stream = {.url = address, .access = access, .frame_rate = kAskedRate};
  watch.events.emplace();
  watch.seconds = first_within + seconds;
  std::ostringstream unread;
  Watcher watcher(watch, unread, unread);
  PictureRate rate;
  Steady::time_point first;
  watcher.on_picture = [&] {
    const auto now = Steady::now();
    if (rate.pictures++ == 0) {
      first = now;
      watcher.Host().EndAfter(seconds);
    }
    rate.seconds = std::chrono::duration<double>(now - first).count();
  };
  watcher.Run();
  return rate;
}

}  // namespace orbelcast
