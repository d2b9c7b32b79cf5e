#pragma once

#include <cstdint>

#include "orbelcast/orbelcast.h"
#include "server/control_class.h"
#include "server/object.h"

/// From a late-bound call to the table's entry and back: names to ids, arguments to their types, results to variants.
namespace orbelcast::server {

/// IDispatch::GetIDsOfNames of a control of that class.
Result GetIDsOfNames(const ControlClass& control_class, const char* const* names, std::uint32_t count,
                     std::int32_t* ids);

/// IDispatch::Invoke on `model`, whose class it is. What it returns is counted in `count`.
Result Invoke(ControlModel& model, const ControlClass& control_class, ObjectCount& count, std::int32_t id,
              std::uint16_t kind, const Arguments* arguments, Variant* result, std::uint32_t* wrong_argument);

/// Raises an event at one sink: `values` are the control's, which the sink may change where they are by reference.
void RaiseAt(IEventSink& sink, const EventEntry& event, std::span<const EventArgument> values, ObjectCount& count);

}  // namespace orbelcast::server
