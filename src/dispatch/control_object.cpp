#include "dispatch/control_object.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "dispatch/dispatch.h"
#include "dispatch/kept_call.h"
#include "interface/events.h"

namespace orbelcast::server {

namespace {

/// A text that a host gave with its size; a null pointer is an empty one.
std::string TextOf(const char* text, std::uint32_t size) {
  return text != nullptr ? std::string(text, size) : std::string();
}

PropertyBag BagOf(const PersistedProperty* properties, std::uint32_t count) {
  PropertyBag bag;
  for (std::uint32_t i = 0; i < count; ++i) {
    const PersistedProperty& each = properties[i];
    bag.insert_or_assign(TextOf(each.key, each.key_size), TextOf(each.text, each.text_size));
  }
  return bag;
}

}  // namespace

ControlObject::ControlObject(ControlServer& server, const ControlClass& control_class, std::shared_ptr<void> control,
                             Raises raises)
    : HostObject(server, control_class), control_(std::move(control)) {
  VideoServerPushEvents* const events = control_class.events(control_.get());
  if (events == nullptr || raises == Raises::kNothing) return;
  ListenToAll(*events,
              [this](const EventEntry& event, std::span<const EventArgument> arguments) { Raise(event, arguments); });
}

void ControlObject::Ended() {
  // Out of the object first: letting go may call back in.
  const std::shared_ptr<void> ending = std::move(control_);
  const std::vector<Sink> letting_go = std::move(sinks_);
  sinks_.clear();
}

template <typename Work>
Result ControlObject::OnControl(Work work) {
  return Entered([&] { return control_ ? work(control_.get()) : E_UNEXPECTED; });
}

Result ControlObject::GetIDsOfNames(const char* const* names, std::uint32_t count, std::int32_t* ids) {
  return Entered([&] { return server::GetIDsOfNames(Class().interface, names, count, ids); });
}

Result ControlObject::Invoke(std::int32_t id, std::uint16_t kind, Arguments* arguments, Variant* result,
                             std::uint32_t* wrong_argument) {
  return OnControl([&](void* control) {
    return server::Invoke(control, Class().interface, Server(), id, kind, arguments, result, wrong_argument);
  });
}

Result ControlObject::FindConnectionPoint(const Guid* id, IConnectionPoint** point) {
  if (point == nullptr) return E_POINTER;
  *point = nullptr;
  if (id == nullptr) return E_POINTER;
  return Entered([&] {
    if (Class().interface.events.empty() || *id != Class().events_id) return CONNECT_E_NOCONNECTION;
    *point = &point_;
    AddRef();
    return S_OK;
  });
}

Result ControlObject::Place(float width, float height) {
  return OnControl([&](void* control) {
    if (!(width >= 0 && height >= 0)) return E_INVALIDARG;
    Class().place(control, width, height);
    return S_OK;
  });
}

Result ControlObject::Hide() {
  return OnControl([&](void* control) {
    Class().hide(control);
    return S_OK;
  });
}

Result ControlObject::Load(const PersistedProperty* properties, std::uint32_t count) {
  if (properties == nullptr && count > 0) return E_POINTER;
  return OnControl([&](void* control) {
    Class().load(control, BagOf(properties, count));
    return S_OK;
  });
}

Result ControlObject::OnOwnStack(std::function<Result(void* control)> work) {
  return OnControl([&](void* control) {
    const auto outcome = std::make_shared<std::optional<Result>>();
    Server().GetPlatform().loop.RunHandler(
        [control, outcome, work = std::move(work)] { *outcome = Guarded([&] { return work(control); }); });
    return outcome->value_or(S_FALSE);
  });
}

Result ControlObject::Start(std::int32_t id, std::uint16_t kind, Arguments* arguments, Variant* result,
                            std::uint32_t* wrong_argument) {
  if (result != nullptr) *result = Variant{};
  const Arguments given = arguments != nullptr ? *arguments : Arguments{};
  if (!WellFormed(given)) return E_INVALIDARG;
  const auto kept = std::make_shared<KeptCall>(given);
  const Result outcome =
      OnOwnStack([&server = Server(), &described = Class().interface, kept, id, kind](void* control) {
        return server::Invoke(control, described, server, id, kind, kept->Get(), &kept->result, &kept->wrong_argument);
      });
  if (outcome == S_FALSE) return S_FALSE;
  kept->HandOver(given, result);
  if (!Succeeded(outcome) && wrong_argument != nullptr) *wrong_argument = kept->wrong_argument;
  return outcome;
}

Result ControlObject::StartLoad(const PersistedProperty* properties, std::uint32_t count) {
  if (properties == nullptr && count > 0) return E_POINTER;
  return OnOwnStack([&control_class = Class(), bag = BagOf(properties, count)](void* control) {
    control_class.load(control, bag);
    return S_OK;
  });
}

void ControlObject::Raise(const EventEntry& event, std::span<const EventArgument> arguments) {
  const Call call(*this);
  // A sink may add and remove sinks, its own too: those that were there are told, unless they were removed meanwhile.
  const std::vector<Sink> told = sinks_;
  for (const Sink& each : told) {
    const bool removed =
        std::none_of(sinks_.begin(), sinks_.end(), [&](const Sink& still) { return still.cookie == each.cookie; });
    if (removed) continue;
    Guarded([&] {
      RaiseAt(*each.sink.Get(), event, arguments, Server());
      return S_OK;
    });
  }
}

Result ControlObject::EventPoint::QueryInterface(const Guid* id, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (id == nullptr) return E_POINTER;
  if (*id != IUnknown::kId && *id != IConnectionPoint::kId) return E_NOINTERFACE;
  *object = static_cast<IConnectionPoint*>(this);
  AddRef();
  return S_OK;
}

Result ControlObject::EventPoint::Advise(IEventSink* sink, std::uint32_t* cookie) {
  if (sink == nullptr || cookie == nullptr) return E_POINTER;
  return control_.Entered([&] {
    Sink added{++control_.last_cookie_, Held<IEventSink>(sink)};
    sink->AddRef();
    *cookie = added.cookie;
    control_.sinks_.push_back(std::move(added));
    return S_OK;
  });
}

Result ControlObject::EventPoint::Unadvise(std::uint32_t cookie) {
  return control_.Entered([&] {
    const auto found = std::find_if(control_.sinks_.begin(), control_.sinks_.end(),
                                    [&](const Sink& each) { return each.cookie == cookie; });
    if (found == control_.sinks_.end()) return CONNECT_E_NOCONNECTION;
    const Sink letting_go = std::move(*found);  // its end may call back in
    control_.sinks_.erase(found);
    return S_OK;
  });
}

}  // namespace orbelcast::server
