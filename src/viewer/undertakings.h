#pragma once

#include "platform/message_loop.h"
#include "toolkit/generation.h"

namespace orbelcast {

/// A viewer's undertakings, of which only the newest is valid.
///
/// Handlers of one viewer overlap wherever one of them yields, waits or raises an event. `Connect` and `MultiCamView`
/// each begin an undertaking, which voids the `Connect`, ticks and `Disconnect` that are under way; each of these asks
/// after every yield, wait and event whether its own is still current, and returns where it is not. The control's end
/// voids all of them.
class Undertakings {
 public:
  using Generation = GenerationCounter::Generation;

  explicit Undertakings(MessageLoop& loop) : loop_(loop) {}

  /// Begins one; every earlier one is void.
  Generation Begin() { return generations_.Begin(); }
  /// The newest one's, for a step that belongs to it.
  Generation Current() const { return generations_.Current(); }
  /// Lets other handlers run. False where `mine` is void afterwards: the caller then just returns.
  bool Yield(const Generation& mine) const {
    loop_.Yield();
    return mine.IsCurrent();
  }
  /// The same in a loop of many short turns, counted from 0.
  bool YieldInTurn(unsigned turn, const Generation& mine) const {
    loop_.YieldInTurn(turn);
    return mine.IsCurrent();
  }

 private:
  MessageLoop& loop_;
  GenerationCounter generations_;
};

/// Sets a mark for the time of an undertaking: until it goes out of scope, or End, it has one value, afterwards
/// another. Where the undertaking is void by then, the mark is its successor's and stays as it is.
template <typename T>
class Until {
 public:
  Until(T& mark, T value, T afterwards, const Undertakings::Generation& mine)
      : mark_(mark), afterwards_(afterwards), mine_(mine) {
    mark_ = value;
  }
  ~Until() { End(); }
  Until(const Until&) = delete;
  Until& operator=(const Until&) = delete;

  void End() {
    if (!ended_ && mine_.IsCurrent()) mark_ = afterwards_;
    ended_ = true;
  }

 private:
  T& mark_;
  const T afterwards_;
  const Undertakings::Generation mine_;
  bool ended_ = false;
};

}  // namespace orbelcast
