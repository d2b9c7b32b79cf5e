#pragma once

#include <span>

#include "viewer/interface.h"

/// The one table of UserControl1's interface: every member with its dispatch id, in the interface's own order. It has
/// no events.
namespace orbelcast::user_control1_interface {

std::span<const PropertyEntry> Properties();
std::span<const MethodEntry> Methods();

}  // namespace orbelcast::user_control1_interface
