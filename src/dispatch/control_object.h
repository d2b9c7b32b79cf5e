#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "dispatch/host_object.h"

namespace orbelcast::server {

/// A control as hosts reach it, of any class.
///
/// Its last Release ends the control at once; the object itself stays until the calls and events that are in progress
/// have returned.
class ControlObject final : public HostObject<IDispatch, IConnectionPointContainer, IControl, IStarter> {
 public:
  /// `control` is of that class.
  ControlObject(ControlServer& server, const ControlClass& control_class, std::shared_ptr<void> control,
                Raises raises = Raises::kEvents);

  Result GetIDsOfNames(const char* const* names, std::uint32_t count, std::int32_t* ids) override;
  Result Invoke(std::int32_t id, std::uint16_t kind, Arguments* arguments, Variant* result,
                std::uint32_t* wrong_argument) override;

  Result FindConnectionPoint(const Guid* id, IConnectionPoint** point) override;

  Result Place(float width, float height) override;
  Result Hide() override;
  Result Load(const PersistedProperty* properties, std::uint32_t count) override;

  Result Start(std::int32_t id, std::uint16_t kind, Arguments* arguments, Variant* result,
               std::uint32_t* wrong_argument) override;
  Result StartLoad(const PersistedProperty* properties, std::uint32_t count) override;

 protected:
  void Ended() override;

 private:
  /// The connection point of its sinks: an object of its own to hosts, whose references are the control's.
  class EventPoint final : public IConnectionPoint {
   public:
    explicit EventPoint(ControlObject& control) : control_(control) {}

    Result QueryInterface(const Guid* id, void** object) override;
    std::uint32_t AddRef() override { return control_.AddRef(); }
    std::uint32_t Release() override { return control_.Release(); }
    Result Advise(IEventSink* sink, std::uint32_t* cookie) override;
    Result Unadvise(std::uint32_t cookie) override;

   private:
    ControlObject& control_;
  };
  struct Sink {
    std::uint32_t cookie;
    Held<IEventSink> sink;
  };

  /// Runs `work` on the control, unless that has ended.
  template <typename Work>
  Result OnControl(Work work);
  /// Runs `work` on the control and a stack of its own: its result, S_FALSE while it waits. This object may be gone
  /// when it goes on: `work` keeps what it uses.
  Result OnOwnStack(std::function<Result(void* control)> work);
  void Raise(const EventEntry& event, std::span<const EventArgument> arguments);

  EventPoint point_{*this};
  std::vector<Sink> sinks_;
  std::uint32_t last_cookie_ = 0;
  std::shared_ptr<void> control_;  // null once the control has ended
};

}  // namespace orbelcast::server
