#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "platform/frame_bytes.h"

namespace orbelcast {

/// The parts of a body of the type multipart/x-mixed-replace, while it comes. Only the newest complete one is kept.
///
/// Cameras differ from the standard and from each other, so little is taken for granted:
/// - The delimiter is the first line that is the boundary, with any dashes before it, or that begins with two dashes.
///   All others are written as that one is. Before it anything may stand.
/// - Lines may end in LF alone, a delimiter may follow a part without a line end, headers may be missing, an empty line
///   before a JPEG's first bytes too.
/// - A part ends at the next delimiter, whatever length it announces. Cameras send that delimiter with the next
///   picture, so a JPEG is complete earlier: where its last marker stands at the announced end, or, when at least the
///   announced length has come, is the last that has come.
class PartReader {
 public:
  struct Part {
    std::string headers;  ///< Each line ended by CR LF.
    FrameBytes body;      ///< Not empty.
  };

  /// Whether a Content-Type names such a body.
  static bool Reads(std::string_view content_type);

  /// For a body of that Content-Type.
  explicit PartReader(std::string_view content_type);

  /// Takes bytes as they come. False where they are no such body, within http_limits for the text before the first
  /// delimiter, for a part's headers and for its body.
  bool Take(std::string_view bytes);

  bool HasNewest() const { return newest_.has_value(); }
  /// The newest complete part, which is given once; empty where there is none.
  Part TakeNewest();

 private:
  enum class State { kPreamble, kHeaders, kBody, kRest };

  struct Delimiter {
    std::size_t begin;
    std::size_t end;  ///< Behind its line, or its two closing dashes.
    bool closes;      ///< It is said to be the last one.
  };

  // Each takes a step of its state, and answers whether another one may follow with the bytes that there are.
  bool Step();
  bool ReadPreamble();
  bool ReadHeaders();
  bool ReadBody();
  bool SkipRest();

  std::optional<std::string> TakeLine();
  std::optional<Delimiter> FindDelimiter();
  std::optional<std::size_t> EndOfPicture() const;
  void Complete(std::size_t size);
  void Drop(std::size_t count);

  const std::string boundary_;  // as declared, without dashes before it; may be empty
  State state_ = State::kPreamble;
  std::string buffer_;          // what was not used up yet; of a body all of it
  std::size_t searched_ = 0;    // bytes of the buffer without the line end, or delimiter, that is sought
  std::size_t text_bytes_ = 0;  // of the preamble or of a part's headers
  std::string delimiter_;
  std::string headers_;
  std::optional<std::size_t> length_;  // as the part announces it
  std::optional<Part> newest_;
};

}  // namespace orbelcast
