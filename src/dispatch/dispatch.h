#pragma once

#include <cstdint>

#include "dispatch/object.h"
#include "interface/member.h"
#include "orbelcast/orbelcast.h"

namespace orbelcast::server {

/// IDispatch::GetIDsOfNames of a control with that interface.
Result GetIDsOfNames(const ControlInterface& described, const char* const* names, std::uint32_t count,
                     std::int32_t* ids);

/// Whether the counts and pointers of a call's arguments agree.
bool WellFormed(const Arguments& arguments);

/// IDispatch::Invoke on `control`, an object of the class with that interface. Objects in the result are counted in
/// `count`.
Result Invoke(void* control, const ControlInterface& described, ObjectCount& count, std::int32_t id, std::uint16_t kind,
              const Arguments* arguments, Variant* result, std::uint32_t* wrong_argument);

/// Raises an event at one sink: `values` are the control's, which the sink may change where they are by reference.
void RaiseAt(IEventSink& sink, const EventEntry& event, std::span<const EventArgument> values, ObjectCount& count);

}  // namespace orbelcast::server
