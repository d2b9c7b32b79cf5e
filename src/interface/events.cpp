#include "interface/events.h"

#include <memory>
#include <utility>

#include "interface/video_server_push_interface.h"

namespace orbelcast {

std::span<const EventEntry> ViewerEvents() {
  return interface::kEntries<interface::EventOf, interface::video_server_push::kEvents>;
}

void ListenToAll(VideoServerPushEvents& events, EventListener listener) {
  const auto shared = std::make_shared<EventListener>(std::move(listener));
  for (const EventEntry& event : ViewerEvents()) event.listen(events, event, shared);
}

}  // namespace orbelcast
