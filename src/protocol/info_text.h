#pragma once

#include <string_view>

#include "protocol/server_info.h"

namespace orbelcast {

/// Scans an info text, lines of a key and its value separated by CR LF, into `record`, up to and including its first
/// empty line. A later line replaces what an earlier one of the same key said; cameras and alerts add up in `Lines`, in
/// the mode that asks for them; flags stay set. Keys are matched letter by letter, values are bytes of any kind and
/// length. Takes time linear in the text.
///
/// Of a text that is longer than protocol/limits.h says the beginning is scanned, whole lines as long as there are any;
/// `ServerInfo::UnreadBytes` says how much was not.
void ParseInfoText(std::string_view text, InfoMode mode, ServerInfo& record);

}  // namespace orbelcast
