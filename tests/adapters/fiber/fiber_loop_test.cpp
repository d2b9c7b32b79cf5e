#include "adapters/fiber/fiber_loop.h"

#include <gmock/gmock.h>

#include <array>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "adapters/posix/headless_queue.h"
#include "fakes/manual_queue.h"

namespace orbelcast {
namespace {

using fakes::ManualQueue;
using std::chrono::milliseconds;
using testing::ElementsAre;

class FiberLoopTest : public testing::Test {
 protected:
  void Note(const std::string& what) { log.push_back(what); }

  ManualQueue queue;
  FiberLoop loop{queue};
  std::vector<std::string> log;
};

TEST_F(FiberLoopTest, WhatACallSetsGoingCanBeWaitedFor) {
  Completion gate;
  Completion other;
  const auto click = [&](const std::string& name, Completion& until) {
    loop.RunHandler([&, name] {
      loop.Wait(until);
      Note(name + " ends");
    });
  };
  loop.RunHandler([&] {
    loop.RunToEnd([&] {
      click("a", gate);
      // Others that come while the action itself waits are none of its business.
      loop.Yield();
      click("b", gate);
    });
    Note("through");
  });
  loop.RunHandler([&] { loop.RunToEnd([&] { click("c", other); }); });
  queue.HandleDue();
  EXPECT_TRUE(log.empty());
  gate.Complete();
  queue.HandleDue();
  queue.HandleDue();
  EXPECT_THAT(log, ElementsAre("a ends", "b ends", "through"));
  other.Complete();
  queue.HandleDue();
  queue.HandleDue();
  EXPECT_EQ(loop.Handlers(), 0u);

  // On the host's own stack, and with nothing to wait for.
  queue.ArmTimer(milliseconds(5), [&] { gate.Complete(); });
  gate.Reset();
  loop.RunToEnd([&] { click("d", gate); });
  EXPECT_EQ(log.back(), "d ends");
  loop.RunToEnd([&] { loop.RunHandler([] { throw std::runtime_error("not the loop's business"); }); });
}

TEST_F(FiberLoopTest, AWaitForWhatIsDoneOrGoneReturns) {
  Completion done;
  done.Complete();
  loop.RunHandler([&] {
    loop.Wait(done);
    Note("was done");
    auto gone = std::make_unique<Completion>();
    queue.Post([&] { gone.reset(); });
    loop.Wait(*gone);
    Note("is gone");
  });
  queue.HandleDue();
  queue.HandleDue();
  EXPECT_THAT(log, ElementsAre("was done", "is gone"));
}

// A dialog that a handler opens runs a loop of its own on the handler's stack. What it resumes comes back to it.
TEST_F(FiberLoopTest, ANestedLoopInAHandlerResumesTheOthers) {
  Completion waited;
  loop.RunHandler([&] {
    loop.Wait(waited);
    Note("other goes on");
    loop.Yield();
    Note("other ends");
  });
  loop.RunHandler([&] {
    waited.Complete();
    while (log.size() < 2) queue.HandleNext();
    Note("dialog closes");
    loop.Yield();
    Note("dialog's handler ends");
  });
  queue.HandleDue();
  EXPECT_THAT(log, ElementsAre("other goes on", "other ends", "dialog closes", "dialog's handler ends"));
}

// The exceptions being handled are the thread's; each handler must find its own again.
TEST_F(FiberLoopTest, HandlersMayWaitWhileTheyHandleExceptions) {
  std::array<Completion, 2> done;
  for (int i : {0, 1}) {
    loop.RunHandler([this, &done, i] {
      try {
        throw i;
      } catch (...) {
        loop.Wait(done[static_cast<std::size_t>(i)]);
        try {
          throw;
        } catch (int caught) {
          Note(std::to_string(caught));
        }
        throw;  // what a handler throws stays in it
      }
    });
  }
  EXPECT_EQ(std::current_exception(), nullptr);
  done[0].Complete();
  done[1].Complete();
  queue.HandleDue();
  EXPECT_THAT(log, ElementsAre("0", "1"));
  EXPECT_EQ(loop.Handlers(), 0u);
}

TEST_F(FiberLoopTest, DestroyingTheLoopLetsEveryHandlerEnd) {
  auto owned = std::make_unique<FiberLoop>(queue);
  FiberLoop& closing = *owned;
  Completion never;
  Completion woken;
  for (const char* name : {"a", "b"}) {
    closing.RunHandler([this, name, &closing, &never, held = std::make_shared<int>(1)] {
      closing.Wait(never);
      closing.Yield();
      closing.Wait(never);
      closing.RunHandler([&] { closing.Yield(); });
      Note(name);
    });
  }
  closing.RunHandler([&] {
    closing.Wait(woken);
    Note("c");
  });
  woken.Complete();  // its resumption is still posted when the loop ends
  owned.reset();
  EXPECT_THAT(log, ElementsAre("a", "b", "c"));
  queue.HandleDue();
}

TEST_F(FiberLoopTest, ManyHandlersWaitAtOnceAndStacksAreUsedAgain) {
  for (int round = 0; round < 3; ++round) {
    Completion done;
    int ended = 0;
    for (int i = 0; i < 100; ++i) {
      loop.RunHandler([&] {
        volatile char used[32 * 1024];
        used[0] = 1;
        loop.Wait(done);
        ended += used[0];
      });
    }
    done.Complete();
    queue.HandleDue();
    EXPECT_EQ(ended, 100);
  }
}

TEST(FiberLoopOnTheClock, AYieldThatComesSoonLooksAtNothing) {
  ManualQueue queue(milliseconds(1));
  FiberLoop loop(queue);
  int handled = 0;
  for (int i = 0; i < 10; ++i) {
    queue.Post([&] { ++handled; });
    loop.Yield();
  }
  EXPECT_EQ(handled, 1);
  queue.Block(milliseconds(2));
  int yields = 0;
  loop.RunHandler([&] {
    for (; yields < 10; ++yields) loop.Yield();
  });
  EXPECT_EQ(yields, 0);
  queue.HandleDue();
  EXPECT_EQ(yields, 10);
  // In a loop of short turns it may come a few turns late.
  queue.Block(milliseconds(2));
  queue.Post([&] { ++handled; });
  for (unsigned turn = 1; turn <= FiberLoop::kTurnsALook; ++turn) loop.YieldInTurn(turn);
  EXPECT_EQ(handled, 11);
}

}  // namespace
}  // namespace orbelcast
