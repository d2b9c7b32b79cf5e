#pragma once

#include <cstdint>

namespace orbelcast {

/// The tiles' turns: which one is fetched next, going round. A tick asks for its tile and says when it has painted
/// it; ticks that run inside one another share the round, and nothing keeps them apart.
class MosaicRound {
 public:
  /// Brings the next tile into range. True when a round of `cameras` cameras is complete, and always where there are
  /// none.
  bool Begin(std::int32_t cameras) {
    const bool complete = next_ >= cameras;
    if (complete || next_ < 0) next_ = 0;
    return complete;
  }
  std::int32_t Next() const { return next_; }
  void Painted() { ++next_; }

 private:
  std::int32_t next_ = 0;
};

}  // namespace orbelcast
