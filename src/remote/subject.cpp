#include "remote/subject.h"

#include <variant>

#include "player/user_control1.h"
#include "remote/children.h"
#include "viewer/children.h"
#include "viewer/video_server_push.h"

namespace orbelcast {

std::vector<NamedChild> Subject::Children() const {
  if (viewer != nullptr) return orbelcast::Children(*viewer);
  if (player != nullptr) return player->Children();
  if (window != nullptr) return window->Children();
  return {};
}

void Subject::Describe(Json& line) const {
  if (window != nullptr) {
    line["kind"] = KindOf(window);
    DescribeFields(FieldsOf(window), line);
  } else if (viewer != nullptr) {
    line["kind"] = "VideoServerPush";
    line["Width"] = NumberToJson(viewer->Width());
    line["Height"] = NumberToJson(viewer->Height());
  } else if (player != nullptr) {
    line["kind"] = "UserControl1";
    line["Width"] = NumberToJson(player->Width());
    line["Height"] = NumberToJson(player->Height());
    line["MousePointer"] = player->MousePointer.Get();
  }
}

bool Subject::Watch(std::string_view field, const std::function<void(Json value)>& changed) const {
  if (window != nullptr) return WatchField(FieldsOf(window), field, changed);
  if (player == nullptr || field != "MousePointer") return false;
  player->MousePointer.Changed.Listen([changed](int pointer) { changed(pointer); });
  return true;
}

VideoServerPush* Subject::Inner(std::string_view name) const {
  if (player != nullptr && name == "VS") return player->VS.get();
  if (const auto* const full_screen = dynamic_cast<FullScreenWindow*>(window); full_screen != nullptr && name == "vs") {
    return full_screen->vs.get();
  }
  return nullptr;
}

void Subject::ListenToViewers(const std::function<void(const std::string&, VideoServerPush&)>& made) const {
  auto* const full_screen = dynamic_cast<FullScreenWindow*>(window);
  if (full_screen != nullptr) full_screen->ViewerMade.Listen([made](VideoServerPush& inner) { made("vs", inner); });
}

ChildControl* Subject::PlaceOf(std::string_view name) const {
  return player != nullptr && name == "VS" ? &player->VSPlace : nullptr;
}

std::vector<std::pair<std::string, Window*>> Subject::Windows() const {
  std::vector<std::pair<std::string, Window*>> windows;
  if (player == nullptr) return windows;
  for (const NamedChild& child : player->Windows()) {
    windows.emplace_back(child.name, std::get<Window*>(child.control));
  }
  return windows;
}

}  // namespace orbelcast
