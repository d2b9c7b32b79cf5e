#pragma once

#include <cstddef>
#include <string>

#include "platform/frame_bytes.h"

namespace orbelcast {

/// The page on the other end of a session's connection.
class Page {
 public:
  /// Bytes that may wait for a page that reads slowly, beside the one message that is on its way; more end it.
  static constexpr std::size_t kMaxWaitingBytes = 16UL * 1024 * 1024;

  virtual ~Page() = default;
  /// Sends JSON lines, with a line feed between two.
  virtual void SendText(std::string lines) = 0;
  /// Sends bytes, with lines of which the last says what they are. They are shared, not copied.
  virtual void SendBytes(std::string lines, FrameBytes bytes) = 0;
  /// Whether all that was sent has gone out.
  virtual bool IsIdle() const = 0;
  /// Ends the connection, telling the page why in a few words.
  virtual void Close(const std::string& why) = 0;
};

/// The object that a page's connection serves.
class PageUser {
 public:
  virtual ~PageUser() = default;
  /// A line came from the page.
  virtual void TakeLine(const std::string& line) = 0;
  /// All that was sent has gone out.
  virtual void TellIdle() = 0;
  /// The page has gone, or was closed; called once, as the last thing.
  virtual void TellGone() = 0;
};

}  // namespace orbelcast
