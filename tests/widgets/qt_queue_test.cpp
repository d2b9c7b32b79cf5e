#include "qt_common/qt_queue.h"

#include <gtest/gtest.h>

#include <QDialog>

#include "adapters/fiber/fiber_loop.h"
#include "fakes/event_queue_contract.h"

namespace orbelcast {
namespace fakes {

INSTANTIATE_TEST_SUITE_P(Qt, EventQueueContract, testing::Values(MakerOf<QtQueue>("QtQueue")));

}  // namespace fakes

namespace {

using std::chrono::milliseconds;

// The dialog's handler was resumed by a posted call: its loop runs inside Qt's delivery of that call.
TEST(QtQueueTest, AHandlerThatWasResumedMayShowADialogWhileOthersComeAndGo) {
  QtQueue queue;
  FiberLoop loop(queue);
  Completion ready;
  int rounds = 0;
  bool accepted = false;
  loop.RunHandler([&] {
    loop.Wait(ready);
    QDialog dialog;
    queue.ArmTimer(milliseconds(5), [&] {
      loop.RunHandler([&] {
        for (; rounds < 3; ++rounds) {
          Completion pause;
          queue.ArmTimer(milliseconds(2), [&] { pause.Complete(); });
          loop.Wait(pause);
        }
        dialog.accept();
      });
    });
    accepted = dialog.exec() == QDialog::Accepted;
  });
  ready.Complete();
  while (!accepted) queue.HandleNext();
  EXPECT_EQ(rounds, 3);
  EXPECT_EQ(loop.Handlers(), 0u);
}

}  // namespace
}  // namespace orbelcast
