#include "adapters/qt/qt_queue.h"

#include <gmock/gmock.h>
#include <sys/socket.h>
#include <unistd.h>

#include <QApplication>
#include <QDialog>
#include <QTimer>
#include <array>
#include <string>
#include <vector>

#include "adapters/fiber/fiber_loop.h"

namespace orbelcast {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;

class QtQueueTest : public testing::Test {
 protected:
  void RunUntil(const std::function<bool()>& done) {
    const auto limit = queue.ArmTimer(std::chrono::seconds(5), [] { FAIL() << "nothing came"; });
    while (!done() && !HasFailure()) queue.HandleNext();
    queue.CancelTimer(limit);
  }

  QtQueue queue;
  std::vector<std::string> log;
};

TEST_F(QtQueueTest, TimersComeInOrderAndACancelledOneNever) {
  queue.ArmTimer(milliseconds(20), [&] { log.emplace_back("late"); });
  EventQueue::TimerId victim = 0;
  queue.ArmTimer(milliseconds(5), [&] {
    log.emplace_back("early");
    queue.CancelTimer(victim);
  });
  victim = queue.ArmTimer(milliseconds(10), [&] { log.emplace_back("cancelled"); });
  queue.ArmTimer(milliseconds(-3), [&] { log.emplace_back("at once"); });
  RunUntil([&] { return log.size() >= 3; });
  EXPECT_THAT(log, ElementsAre("at once", "early", "late"));
}

TEST_F(QtQueueTest, PostedCallsKeepTheirOrderAlsoWhenOneHandlesTheQueueItself) {
  queue.Post([&] {
    log.emplace_back("first");
    queue.Post([&] { log.emplace_back("next round"); });
    queue.HandleDue();
  });
  queue.Post([&] { log.emplace_back("second"); });
  RunUntil([&] { return log.size() == 3; });
  EXPECT_THAT(log, ElementsAre("first", "second", "next round"));
}

TEST_F(QtQueueTest, SocketsAreWatchedUntilTheyAreNot) {
  std::array<int, 2> pair{};
  ASSERT_EQ(::socketpair(AF_UNIX, SOCK_STREAM, 0, pair.data()), 0);
  queue.WatchSocket(pair[0], {true, false}, [&](EventQueue::SocketEvents events) {
    EXPECT_TRUE(events.readable);
    log.emplace_back("readable");
    queue.UnwatchSocket(pair[0]);  // From inside its own callback.
  });
  queue.WatchSocket(pair[1], {false, true}, [&](EventQueue::SocketEvents events) {
    EXPECT_TRUE(events.writable);
    log.emplace_back("writable");
    queue.UnwatchSocket(pair[1]);
    ASSERT_EQ(::write(pair[1], "x", 1), 1);
  });
  RunUntil([&] { return log.size() == 2; });
  for (int i = 0; i < 5; ++i) queue.HandleDue();
  EXPECT_THAT(log, ElementsAre("writable", "readable"));
  ::close(pair[0]);
  ::close(pair[1]);
}

TEST_F(QtQueueTest, AHandlerMayShowADialogThatRunsALoopOfItsOwn) {
  FiberLoop loop(queue);
  Completion answered;
  loop.RunHandler([&] {
    QDialog dialog;
    QTimer::singleShot(30, &dialog, [&] {
      // Inside the dialog's loop another handler starts, waits, and is woken.
      loop.RunHandler([&] {
        log.emplace_back("inner waits");
        loop.Wait(answered);
        log.emplace_back("inner goes on");
        dialog.accept();
      });
      queue.ArmTimer(milliseconds(10), [&] { answered.Complete(); });
    });
    log.emplace_back(dialog.exec() == QDialog::Accepted ? "accepted" : "rejected");
  });
  RunUntil([&] { return log.size() == 3; });
  EXPECT_THAT(log, ElementsAre("inner waits", "inner goes on", "accepted"));
}

}  // namespace
}  // namespace orbelcast
