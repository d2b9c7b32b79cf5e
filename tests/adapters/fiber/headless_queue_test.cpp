#include "adapters/posix/headless_queue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <string>
#include <vector>

#include "adapters/posix/posix_files.h"

namespace orbelcast {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using testing::ElementsAre;

class HeadlessQueueTest : public testing::Test {
 protected:
  HeadlessQueueTest() { EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()), 0); }
  ~HeadlessQueueTest() override {
    for (int end : ends) close(end);
  }
  void Note(const std::string& what) { log.push_back(what); }
  void Feed() { EXPECT_EQ(write(ends[1], "x", 1), 1); }
  void Drain() {
    char byte = 0;
    EXPECT_EQ(read(ends[0], &byte, 1), 1);
  }

  HeadlessQueue queue;
  std::array<int, 2> ends{-1, -1};
  std::vector<std::string> log;
};

TEST_F(HeadlessQueueTest, TimersComeInOrderNotEarlyAndNotOnceCancelled) {
  const auto begin = queue.Now();
  queue.ArmTimer(milliseconds(20), [&] { Note("late"); });
  queue.ArmTimer(milliseconds(-5), [&] { Note("at once"); });
  EventQueue::TimerId cancelled = 0;
  queue.ArmTimer(milliseconds(0), [&] {
    Note("cancels");
    queue.CancelTimer(cancelled);
    queue.ArmTimer(milliseconds(0), [&] { Note("next look"); });
  });
  cancelled = queue.ArmTimer(milliseconds(0), [&] { Note("cancelled"); });
  queue.ArmTimer(EventQueue::Nanoseconds::max(), [&] { Note("never"); });
  queue.HandleDue();
  EXPECT_THAT(log, ElementsAre("at once", "cancels"));
  queue.HandleNext();
  queue.HandleNext();
  EXPECT_THAT(log, ElementsAre("at once", "cancels", "next look", "late"));
  EXPECT_GE(queue.Now() - begin, milliseconds(20));
}

TEST_F(HeadlessQueueTest, PostedCallsKeepTheirOrderAndNewOnesWait) {
  queue.Post([&] {
    Note("1");
    queue.Post([&] { Note("3"); });
  });
  queue.Post([&] { Note("2"); });
  queue.HandleNext();
  EXPECT_THAT(log, ElementsAre("1", "2"));
  queue.HandleNext();
  EXPECT_THAT(log, ElementsAre("1", "2", "3"));
}

// A dialog inside a callback must be able to wait for what was due behind that callback.
TEST_F(HeadlessQueueTest, ALookInsideACallbackHandlesWhatTheOuterOneHasLeft) {
  queue.Post([&] {
    queue.HandleDue();
    Note("outer");
  });
  queue.Post([&] { Note("inner"); });
  queue.HandleDue();
  EXPECT_THAT(log, ElementsAre("inner", "outer"));
}

TEST_F(HeadlessQueueTest, SocketsCallWhenReadyUntilTheyAreUnwatched) {
  queue.WatchSocket(ends[0], {.readable = true}, [&](EventQueue::SocketEvents events) {
    Note(events.readable && !events.writable ? "readable" : "?");
    Drain();
  });
  queue.HandleDue();
  Feed();
  queue.HandleNext();
  EXPECT_THAT(log, ElementsAre("readable"));

  queue.WatchSocket(ends[0], {.writable = true}, [&](EventQueue::SocketEvents events) {
    Note(events.writable && !events.readable ? "writable" : "?");
    queue.UnwatchSocket(ends[0]);
    Note("still there");  // its own callback outlives the watch
  });
  queue.HandleNext();
  Feed();
  queue.HandleDue();
  EXPECT_THAT(log, ElementsAre("readable", "writable", "still there"));
}

TEST_F(HeadlessQueueTest, ASocketThatWasUnwatchedMeanwhileDoesNotCall) {
  for (int end : {0, 1}) {
    queue.WatchSocket(ends[static_cast<std::size_t>(end)], {.writable = true}, [&](EventQueue::SocketEvents) {
      Note("once");
      for (int each : ends) queue.UnwatchSocket(each);
      // The same number, watched anew: an event of the old watch is not its.
      queue.WatchSocket(ends[1], {.readable = true}, [&](EventQueue::SocketEvents) { Note("new"); });
    });
  }
  queue.HandleDue();
  EXPECT_THAT(log, ElementsAre("once"));
}

TEST_F(HeadlessQueueTest, AReadySocketIsToldOnceHoweverDeepTheLooks) {
  queue.WatchSocket(ends[1], {.writable = true}, [&](EventQueue::SocketEvents) {
    queue.UnwatchSocket(ends[1]);
    queue.HandleDue();
  });
  queue.WatchSocket(ends[0], {.readable = true}, [&](EventQueue::SocketEvents) {
    Note("readable");
    Drain();  // would fail the second time
  });
  Feed();
  queue.HandleDue();
  EXPECT_THAT(log, ElementsAre("readable"));
}

TEST_F(HeadlessQueueTest, TheOtherEndsCloseCountsAsBoth) {
  close(std::exchange(ends[1], -1));
  queue.WatchSocket(ends[0], {.writable = true},
                    [&](EventQueue::SocketEvents events) { Note(events.readable && events.writable ? "both" : "?"); });
  queue.HandleNext();
  EXPECT_THAT(log, ElementsAre("both"));
}

TEST(PosixFiles, TheTemporaryDirectoryComesFromTheEnvironment) {
  const PosixFiles files;
  unsetenv("temp");
  unsetenv("TMPDIR");
  EXPECT_EQ(files.TemporaryDirectory(), "/tmp/");
  setenv("TMPDIR", "/var/tmp", 1);
  EXPECT_EQ(files.TemporaryDirectory(), "/var/tmp/");
  setenv("temp", "/somewhere/", 1);
  EXPECT_EQ(files.TemporaryDirectory(), "/somewhere/");
}

}  // namespace
}  // namespace orbelcast
