#include "toolkit/timer_driver.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <optional>

#include "adapters/fiber/fiber_loop.h"
#include "fakes/manual_queue.h"

namespace orbelcast {
namespace {

using std::chrono::milliseconds;

class TimerDriverTest : public testing::Test {
 protected:
  TimerDriverTest() { timer.Interval = 100; }
  /// Waits inside of a tick.
  void Pause(milliseconds time) {
    Completion done;
    queue.ArmTimer(time, [&] { done.Complete(); });
    loop.Wait(done);
  }
  int TicksIn(milliseconds time) {
    const int before = ticks;
    queue.Advance(time);
    return ticks - before;
  }

  fakes::ManualQueue queue;
  FiberLoop loop{queue};
  Timer timer;
  int ticks = 0;
};

TEST_F(TimerDriverTest, TicksWhileItIsOnOnePeriodFromEachChange) {
  const TimerDriver driver(loop, timer, [this] { ++ticks; });
  EXPECT_EQ(TicksIn(milliseconds(1000)), 0);
  timer.Enabled = true;
  EXPECT_EQ(TicksIn(milliseconds(350)), 3);
  timer.Interval = 60;
  EXPECT_EQ(TicksIn(milliseconds(59)), 0);
  EXPECT_EQ(TicksIn(milliseconds(1)), 1);
  timer.Interval = -5;
  EXPECT_EQ(TicksIn(milliseconds(1000)), 0);
}

TEST_F(TimerDriverTest, ATickHoldsUpThoseOfItsOwnSeriesAlone) {
  milliseconds takes(30);
  const TimerDriver driver(loop, timer, [&] {
    ++ticks;
    Pause(takes);
  });
  timer.Enabled = true;
  EXPECT_EQ(TicksIn(milliseconds(1000)), 10);  // in the period's rhythm
  takes = milliseconds(450);
  EXPECT_EQ(TicksIn(milliseconds(100)), 1);
  EXPECT_EQ(TicksIn(milliseconds(449)), 0);
  takes = milliseconds(10'000);
  EXPECT_EQ(TicksIn(milliseconds(1)), 1);  // one for all periods that ended meanwhile
  timer.Interval = 50;
  takes = milliseconds(0);
  EXPECT_EQ(TicksIn(milliseconds(200)), 4);
}

TEST_F(TimerDriverTest, MayBeDestroyedInItsOwnTick) {
  std::optional<TimerDriver> driver;
  driver.emplace(loop, timer, [&] {
    ++ticks;
    driver.reset();
    Pause(milliseconds(10));
  });
  timer.Enabled = true;
  EXPECT_EQ(TicksIn(milliseconds(1000)), 1);
  EXPECT_EQ(loop.Handlers(), 0u);
}

}  // namespace
}  // namespace orbelcast
