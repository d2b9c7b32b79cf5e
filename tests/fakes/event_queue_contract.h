#pragma once

#include <gmock/gmock.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <memory>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "platform/event_queue.h"

/// The contract of every event queue on the real clock, as tests: instantiate EventQueueContract for a new one.
namespace orbelcast::fakes {

struct QueueUnderTest {
  const char* name;
  std::unique_ptr<EventQueue> (*make)();
  friend void PrintTo(const QueueUnderTest& queue, std::ostream* out) { *out << queue.name; }
};

template <typename Queue>
QueueUnderTest MakerOf(const char* name) {
  return {name, []() -> std::unique_ptr<EventQueue> { return std::make_unique<Queue>(); }};
}

class EventQueueContract : public testing::TestWithParam<QueueUnderTest> {
 protected:
  using SocketEvents = EventQueue::SocketEvents;
  using milliseconds = std::chrono::milliseconds;  // NOLINT(readability-identifier-naming): the library's name

  EventQueueContract() { EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()), 0); }
  ~EventQueueContract() override {
    for (int end : ends) {
      queue->UnwatchSocket(end);
      if (end >= 0) close(end);
    }
  }

  void Note(const std::string& what) { log.push_back(what); }
  void Feed() { EXPECT_EQ(write(ends[1], "x", 1), 1); }
  void Drain() {
    char byte = 0;
    EXPECT_EQ(read(ends[0], &byte, 1), 1);
  }
  /// Handles what comes until that many things were noted.
  void RunUntilNoted(std::size_t count) {
    const auto limit = queue->ArmTimer(std::chrono::seconds(10), [] { ADD_FAILURE() << "nothing came"; });
    while (log.size() < count && !HasFailure()) queue->HandleNext();
    queue->CancelTimer(limit);
  }
  void LookAFewTimes() {
    for (int i = 0; i < 5; ++i) queue->HandleDue();
  }

  std::unique_ptr<EventQueue> queue = GetParam().make();
  std::array<int, 2> ends{-1, -1};
  std::vector<std::string> log;
};

TEST_P(EventQueueContract, TimersComeInOrderNotEarlyAndNotOnceCancelled) {
  const auto begin = queue->Now();
  queue->ArmTimer(milliseconds(20), [&] { Note("late"); });
  queue->ArmTimer(milliseconds(-5), [&] { Note("at once"); });
  EventQueue::TimerId cancelled = 0;
  queue->ArmTimer(milliseconds(0), [&] {
    Note("cancels");
    queue->CancelTimer(cancelled);
    queue->ArmTimer(milliseconds(0), [&] { Note("next look"); });
  });
  cancelled = queue->ArmTimer(milliseconds(0), [&] { Note("cancelled"); });
  queue->ArmTimer(EventQueue::Nanoseconds::max(), [&] { Note("never"); });
  RunUntilNoted(4);
  EXPECT_THAT(log, testing::ElementsAre("at once", "cancels", "next look", "late"));
  EXPECT_GE(queue->Now() - begin, milliseconds(20));
}

// A handler that yields again and again posts a call each time: what else is due must have its turn.
TEST_P(EventQueueContract, CallsThatPostThemselvesHoldUpNobody) {
  std::function<void()> again = [&] { queue->Post(again); };
  again();
  queue->ArmTimer(milliseconds(2), [&] { Note("timer"); });
  queue->WatchSocket(ends[0], {.readable = true}, [&](SocketEvents) {
    Drain();
    Note("socket");
  });
  Feed();
  RunUntilNoted(2);
  EXPECT_THAT(log, testing::UnorderedElementsAre("timer", "socket"));
  again = [] {};
  LookAFewTimes();
}

// A dialog inside a callback must be able to wait for what was due behind that callback.
TEST_P(EventQueueContract, ALookInsideACallbackHandlesWhatTheOuterOneHasLeft) {
  queue->Post([&] {
    queue->HandleDue();
    Note("outer");
  });
  queue->Post([&] { Note("inner"); });
  RunUntilNoted(2);
  EXPECT_THAT(log, testing::ElementsAre("inner", "outer"));
  queue->ArmTimer(milliseconds(0), [&] {
    RunUntilNoted(3);
    Note("outer timer");
  });
  queue->ArmTimer(milliseconds(0), [&] { Note("inner timer"); });
  RunUntilNoted(4);
  EXPECT_THAT(log, testing::ElementsAre("inner", "outer", "inner timer", "outer timer"));
}

TEST_P(EventQueueContract, SocketsCallWhenReadyUntilTheyAreUnwatched) {
  queue->WatchSocket(ends[0], {.readable = true}, [&](SocketEvents events) {
    Note(events.readable && !events.writable ? "readable" : "?");
    Drain();
  });
  LookAFewTimes();
  EXPECT_TRUE(log.empty());
  Feed();
  RunUntilNoted(1);
  queue->WatchSocket(ends[0], {.writable = true}, [&](SocketEvents events) {
    Note(events.writable && !events.readable ? "writable" : "?");
    queue->UnwatchSocket(ends[0]);
    Note("still there");  // its own callback outlives the watch
  });
  RunUntilNoted(3);
  Feed();
  LookAFewTimes();
  EXPECT_THAT(log, testing::ElementsAre("readable", "writable", "still there"));
  // The other end's close counts as both.
  close(std::exchange(ends[1], -1));
  queue->WatchSocket(ends[0], {.writable = true},
                     [&](SocketEvents events) { Note(events.readable && events.writable ? "both" : "?"); });
  RunUntilNoted(4);
  EXPECT_EQ(log.back(), "both");
}

TEST_P(EventQueueContract, ASocketThatWasUnwatchedMeanwhileDoesNotCall) {
  for (int end : {0, 1}) {
    queue->WatchSocket(ends[static_cast<std::size_t>(end)], {.writable = true}, [&](SocketEvents) {
      Note("once");
      for (int each : ends) queue->UnwatchSocket(each);
      // The same number, watched anew: an event of the old watch is not its.
      queue->WatchSocket(ends[1], {.readable = true}, [&](SocketEvents) { Note("new"); });
    });
  }
  RunUntilNoted(1);
  LookAFewTimes();
  EXPECT_THAT(log, testing::ElementsAre("once"));
}

TEST_P(EventQueueContract, AReadySocketIsToldOnceHoweverDeepTheLooks) {
  queue->WatchSocket(ends[1], {.writable = true}, [&](SocketEvents) {
    queue->UnwatchSocket(ends[1]);
    queue->HandleDue();
  });
  queue->WatchSocket(ends[0], {.readable = true}, [&](SocketEvents) {
    Note("readable");
    Drain();  // would fail the second time
  });
  Feed();
  RunUntilNoted(1);
  LookAFewTimes();
  EXPECT_THAT(log, testing::ElementsAre("readable"));
}

}  // namespace orbelcast::fakes
