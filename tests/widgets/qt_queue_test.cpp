#include "widgets/qt_queue.h"

#include <gmock/gmock.h>

#include <QApplication>
#include <QDialog>
#include <QTimer>
#include <string>
#include <vector>

#include "adapters/fiber/fiber_loop.h"
#include "fakes/event_queue_contract.h"

namespace orbelcast {
namespace fakes {

INSTANTIATE_TEST_SUITE_P(Qt, EventQueueContract, testing::Values(MakerOf<QtQueue>("QtQueue")));

}  // namespace fakes

namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;

TEST(QtQueueTest, HandlesWhatComesUnderQtsOwnLoopToo) {
  QtQueue queue;
  std::vector<std::string> log;
  queue.Post([&] { log.emplace_back("posted"); });
  queue.ArmTimer(milliseconds(5), [&] {
    log.emplace_back("timer");
    QTimer::singleShot(0, [] { QApplication::quit(); });
  });
  QApplication::exec();
  EXPECT_THAT(log, ElementsAre("posted", "timer"));
}

TEST(QtQueueTest, NothingCallsOnceTheQueueIsGone) {
  bool called = false;
  {
    QtQueue queue;
    queue.Post([&] { called = true; });
    queue.ArmTimer(milliseconds(0), [&] { called = true; });
  }
  for (int i = 0; i < 3; ++i) QApplication::processEvents();
  EXPECT_FALSE(called);
}

// The dialog's handler was resumed by a posted call: its loop runs inside Qt's delivery of that call.
TEST(QtQueueTest, AHandlerThatWasResumedMayShowADialogWhileOthersComeAndGo) {
  QtQueue queue;
  FiberLoop loop(queue);
  Completion ready;
  Completion never;
  std::vector<std::string> log;
  loop.RunHandler([&] { loop.Wait(never); });
  loop.RunHandler([&] {
    loop.Wait(ready);
    QDialog dialog;
    int rounds = 0;
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
    log.emplace_back(dialog.exec() == QDialog::Accepted ? "accepted" : "rejected");
    EXPECT_EQ(rounds, 3);
  });
  ready.Complete();
  while (log.empty()) queue.HandleNext();
  EXPECT_THAT(log, ElementsAre("accepted"));
  EXPECT_EQ(loop.Handlers(), 1u);
}

}  // namespace
}  // namespace orbelcast
