#include "interface/events.h"

#include <memory>
#include <utility>

#include "interface/video_server_push_interface.h"

namespace orbelcast {

void ListenToAll(VideoServerPushEvents& events, EventListener listener) {
  const auto shared = std::make_shared<EventListener>(std::move(listener));
  for (const EventEntry& event : interface::kVideoServerPush.events) event.listen(events, event, shared);
}

}  // namespace orbelcast
