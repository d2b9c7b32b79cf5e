#pragma once

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "fakes/fake_platform.h"
#include "player/user_control1.h"

namespace orbelcast {

/// A picture in one colour, 640 × 480.
inline fakes::Answer PictureAnswer() {
  return {.headers = {{"Server", "Cam/1"}, {"Date", "Wed"}}, .body = {10, 20, 30, 64, 48}};
}

inline fakes::Answer TextAnswer(const std::string& text, int status = 200) {
  return {.status = status, .headers = {}, .body = {text.begin(), text.end()}};
}

/// A player of its own on a server that knows three cameras, with every request answered by a picture but those that
/// `texts` names by a part of their address.
class PlayerWorld : public testing::Test {
 protected:
  static constexpr auto kLive = "?live-special0320x0240020";

  PlayerWorld() {
    world.http.route = [this](const std::string& url) -> std::optional<fakes::Answer> {
      for (const auto& [part, answer] : texts) {
        if (url.find(part) != std::string::npos) return answer;
      }
      return PictureAnswer();
    };
  }

  /// Makes the player; what the making itself did is not in the logs any more.
  void Create() {
    player = UserControl1::Create(world.platform);
    world.http.log.clear();
  }
  void Load(const PropertyBag& bag) { player->ReadProperties(bag); }
  void LoadServer(PropertyBag more = {}) {
    more.merge(PropertyBag{{"Server", "srv"}, {"Port", "81"}, {"Username", "u"}, {"Password", "secret"}});
    Load(more);
    world.http.log.clear();
  }
  void Click(std::size_t tool) {
    world.loop.RunToEnd([&] { player->Player[tool].OnClick(); });
  }
  /// The addresses that were asked for since the last call.
  std::vector<std::string> Asked() {
    auto urls = world.http.Opened();
    world.http.log.clear();
    return urls;
  }

  fakes::FakePlatform world;
  std::vector<std::pair<std::string, fakes::Answer>> texts{
      {"$rdxviewer", TextAnswer("RDXVIEWER\r\nSNM:House\r\nCAM:d1\tDoor\thttp://cam/1\r\nCAM:D2\tYard\thttp://cam/2\r\n"
                                "CAM:d3\tRoof\thttp://cam/3\r\n\r\n")}};
  std::shared_ptr<UserControl1> player;
};

}  // namespace orbelcast
