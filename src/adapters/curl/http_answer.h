#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/frame_bytes.h"

namespace orbelcast {

/// The answer of one transfer: the status, the header block and the body of the last answer in it (it has several
/// where a server says first that it goes on), within http_limits.
class HttpAnswer {
 public:
  /// Forgets everything; bodies that were handed out stay as they are.
  void Clear();

  /// Takes a line of a header block, the empty one at its end included. False when there are too many, and for a
  /// transfer coding but "chunked": libcurl would decompress an answer for which no compression was asked.
  bool TakeHeaderLine(std::string_view line);
  /// Takes a part of the body. `announced`: its whole length, −1 where the server did not say. False when it is too
  /// long.
  bool TakeBody(std::string_view part, std::int64_t announced);

  /// 0 before the first status line.
  int Status() const { return status_; }
  bool IsRedirect() const { return status_ / 100 == 3; }
  /// Status line and headers, each line ended by CR LF, without the empty one.
  const std::string& Headers() const { return headers_; }
  /// The first header of this name (in any letter case) without the blanks around its value.
  std::string_view Header(std::string_view name) const;
  /// The values of all headers of this name.
  std::vector<std::string_view> AllHeaders(std::string_view name) const;
  std::string_view BodyText() const;
  /// The body, shared with each caller. Each answer's body has one serial.
  FrameBytes Body();

 private:
  FrameBytes::Storage& Buffer(std::int64_t announced);

  int status_ = 0;
  std::string headers_;
  std::size_t header_bytes_ = 0;
  bool in_headers_ = false;

  // Frames are received into a few buffers in turn: one is being shown, one is being recorded, one is received into.
  std::array<std::shared_ptr<FrameBytes::Storage>, 3> buffers_;
  std::shared_ptr<FrameBytes::Storage> body_;
  std::size_t last_body_bytes_ = 0;
  FrameBytes handed_out_;
};

}  // namespace orbelcast
