// docs/control-server.md shows lines of these functions. examples/host.cpp is a whole host.
#include <cstdint>

#include "orbelcast/orbelcast.h"

using namespace orbelcast::server;

void SetFrameRate(IDispatch* viewer) {
  const char* name = "FrameRate";
  std::int32_t id;
  viewer->GetIDsOfNames(&name, 1, &id);

  Variant rate = MakeLong(40);
  Variant value = MakeReference(rate);
  Arguments arguments{&value, 1, 0, nullptr};
  viewer->Invoke(id, kPropertyPut, &arguments, nullptr, nullptr);
  // rate.i32 is 30: the control corrected it.
}

void ListenTo(const Held<IDispatch>& viewer, IEventSink& sink) {
  Held<IConnectionPoint> point;
  viewer.As<IConnectionPointContainer>()->FindConnectionPoint(&kVideoServerPushEvents, point.PutTyped());
  std::uint32_t cookie;
  point->Advise(&sink, &cookie);
}
