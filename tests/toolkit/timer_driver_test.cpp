#include "toolkit/timer_driver.h"

#include <gtest/gtest.h>

#include <chrono>
#include <optional>

#include "adapters/fiber/fiber_loop.h"
#include "fakes/manual_queue.h"

namespace orbelcast {
namespace {

using std::chrono::milliseconds;

class TimerDriverTest : public testing::Test {
 protected:
  TimerDriverTest() { timer.Interval = 100; }
  int TicksIn(milliseconds time) {
    const int before = ticks;
    queue.Advance(time);
    return ticks - before;
  }

  fakes::ManualQueue queue;
  FiberLoop loop{queue};
  Timer timer;
  int ticks = 0;
  bool ends = false;  ///< The driver ends in its own tick.
};

TEST_F(TimerDriverTest, ATickHoldsUpThoseOfItsOwnSeriesAlone) {
  milliseconds takes(30);
  std::optional<TimerDriver> driver;
  driver.emplace(loop, timer, [&] {
    ++ticks;
    Completion done;
    queue.ArmTimer(takes, [&] { done.Complete(); });
    if (ends) driver.reset();
    loop.Wait(done);
  });
  EXPECT_EQ(TicksIn(milliseconds(1000)), 0);
  timer.Enabled = true;
  EXPECT_EQ(TicksIn(milliseconds(1000)), 10);  // in the period's rhythm
  takes = milliseconds(10'000);
  EXPECT_EQ(TicksIn(milliseconds(9000)), 1);
  timer.Interval = -5;
  EXPECT_EQ(TicksIn(milliseconds(1000)), 0);
  timer.Interval = 50;  // a new series, one period from the change on
  takes = milliseconds(0);
  EXPECT_EQ(TicksIn(milliseconds(49)), 0);
  EXPECT_EQ(TicksIn(milliseconds(151)), 4);
  ends = true;
  EXPECT_EQ(TicksIn(milliseconds(20'000)), 1);
  EXPECT_EQ(loop.Handlers(), 0u);
}

}  // namespace
}  // namespace orbelcast
