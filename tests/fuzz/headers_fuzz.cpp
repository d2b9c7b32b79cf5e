// Any texts as the response headers that the viewer reads, and any bytes as its picture.

#include <array>
#include <cstdint>
#include <string>

#include "fakes/fake_platform.h"
#include "viewer/video_server_push.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::array kNames{"VigilboxInfo", "PlugIns", "Server", "RC_TCR", "Recording", "Date", "HolmvaneStatus"};
  orbelcast::fakes::Answer answer;
  // The first byte is the status, lines up to as many as there are names are their values, the rest is the body.
  std::string text(reinterpret_cast<const char*>(data), size);
  if (!text.empty()) answer.status = text[0] % 4 == 0 ? 200 : 100 + static_cast<unsigned char>(text[0]) * 2;
  for (const char* name : kNames) {
    const std::size_t end = text.find('\n');
    answer.headers[name] = text.substr(0, end);
    text.erase(0, end == std::string::npos ? end : end + 1);
  }
  answer.body.assign(text.begin(), text.end());

  orbelcast::fakes::FakePlatform world;
  world.http.answers = {answer};
  const auto viewer = orbelcast::VideoServerPush::Create(world.platform);
  viewer->Resize(1600, 1200);
  viewer->Connect("http://camera/");
  world.queue.Advance(std::chrono::milliseconds(2500));
  viewer->RequestEnd();
  return 0;
}
