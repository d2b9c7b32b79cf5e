#pragma once

#include <optional>
#include <type_traits>

#include "player/busy_pointer.h"
#include "toolkit/generation.h"

namespace orbelcast {

/// The player's own requests to its server, of which it makes one at a time: the camera list, and the requests of the
/// toolbar's and the alerts window's buttons.
///
/// A question lasts from the press that begins it until its answer was taken, a relay look-up before it and a text that
/// is typed for it included. While one is under way, a press that would begin another is dropped. A player that turns
/// to another server voids the earlier question: its answer is not looked at, and the next one may begin.
///
/// Requests that block the thread allow no press meanwhile; for those that let the loop run, this class keeps two
/// handlers from taking each other's answers.
class ServerQuestions {
 public:
  using Server = GenerationCounter::Generation;

  explicit ServerQuestions(BusyPointer& pointer) : pointer_(pointer) {}

  /// The player turns to a server, or ends: every question so far is void. The result is current until the
  /// next call.
  Server TurnToServer() {
    under_way_ = 0;
    Wait(-waiting_);
    return servers_.Begin();
  }

  /// Whether a press that would begin a question is to be dropped.
  bool UnderWay() const { return under_way_ > 0; }
  /// Whether a question waits for the server at this moment.
  bool Waiting() const { return waiting_ > 0; }

  /// One question, from its making to its end.
  class Question {
   public:
    explicit Question(ServerQuestions& questions) : questions_(questions), server_(questions.servers_.Current()) {
      ++questions_.under_way_;
    }
    ~Question() {
      if (Holds()) --questions_.under_way_;
    }
    Question(const Question&) = delete;
    Question& operator=(const Question&) = delete;

    /// False once the player has turned to another server or ended: the question ends without another step.
    bool Holds() const { return server_.IsCurrent(); }

    /// Calls `ask`, which returns when the server has answered or will not, and returns its result. The pointer shows
    /// that it is waited for.
    template <typename Ask>
    std::invoke_result_t<Ask> WaitFor(Ask ask) const {
      questions_.Wait(1);
      auto answer = ask();
      if (Holds()) questions_.Wait(-1);
      return answer;
    }

   private:
    ServerQuestions& questions_;
    const Server server_;
  };

 private:
  void Wait(int more) {
    waiting_ += more;
    if (waiting_ > 0) {
      if (!busy_) busy_.emplace(pointer_);
    } else {
      busy_.reset();
    }
  }

  BusyPointer& pointer_;
  GenerationCounter servers_;
  int under_way_ = 0;  // of the server that was turned to last, as waiting_
  int waiting_ = 0;
  std::optional<BusyPointer::Scope> busy_;
};

}  // namespace orbelcast
