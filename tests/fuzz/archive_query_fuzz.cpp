// Any bytes as the query of an archive picture: its picture is one that the archive has.

#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "camera_server/addresses.h"

using namespace orbelcast::camera_server;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const auto query = ParseArchiveQuery(bytes, PictureForm{});
  if (!query) return 0;
  Settings settings;
  settings.archive_hours = 1 + static_cast<int>(size % 48);
  settings.archive_step = 1 + static_cast<int>(size % 100);
  Archive archive(settings);
  const auto now = WallClock::time_point(std::chrono::seconds(1'700'000'000));
  for (int i = 0; i < 2; ++i) {
    const auto time = archive.Move("visitor", *query, now);
    const std::chrono::seconds since_epoch = std::chrono::floor<std::chrono::seconds>(time.time_since_epoch());
    const bool is_there = time <= now && now - time < std::chrono::hours(settings.archive_hours + 1);
    if (!is_there || since_epoch.count() % settings.archive_step != 0) std::abort();
  }
  const PictureForm bounded = query->form.Bounded();
  if (bounded.width != query->form.width || bounded.quality != query->form.quality) std::abort();
  return 0;
}
