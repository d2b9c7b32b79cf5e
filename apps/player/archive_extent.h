#pragma once

#include <QDateTime>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "platform/http_request.h"

namespace orbelcast {

/// The times of an archive's first and last picture, by the server's clock (as Qt::UTC, for want of its zone). Nothing
/// where the server did not tell. Between them there may be gaps: a server does not tell of those.
struct ArchiveExtent {
  std::optional<QDateTime> first;
  std::optional<QDateTime> last;

  bool Known() const { return first && last && *first <= *last; }
};

/// The time of a picture, as its 14 digits tell it; nothing where they are no time.
std::optional<QDateTime> TimeOfCode(std::string_view time_code);

/// Asks for the first and the last picture, as small as they come, and reads their times. The server keeps a position
/// in its archive for each client, which this moves: where `position` has a time at the end, it is set back to that.
///
/// `archive_address` is what steps are added to. Waits for the answers, ten seconds at most for each step of each.
ArchiveExtent AskForExtent(HttpRequestFactory& http, const std::string& archive_address,
                           const std::function<std::optional<QDateTime>()>& position);

}  // namespace orbelcast
