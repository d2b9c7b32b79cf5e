#include "toolkit/signal.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>

namespace orbelcast {
namespace {

TEST(SignalTest, AListenerMayEndItselfEndAnotherAddOneAndThrow) {
  Signal<int> signal;
  std::string log;
  Connection third;
  Connection first = signal.Connect([&](int) {
    log += "1";
    first.Disconnect();
  });
  signal.Listen([&](int) {
    log += "2";
    third.Disconnect();
    signal.Listen([&](int number) { log += "new" + std::to_string(number); });
    throw std::runtime_error("ends this listener alone");
  });
  third = signal.Connect([&](int) { log += "3"; });
  auto fourth = std::make_unique<Connection>(signal.Connect([&](int) { log += "4"; }));
  signal(7);
  EXPECT_EQ(log, "124");  // one that is added is called from the next time on
  fourth.reset();
  signal(8);
  EXPECT_EQ(log, "1242new8");
}

TEST(SignalTest, AListenerMayDestroyTheSignalOrTellItAgain) {
  auto signal = std::make_unique<Signal<>>();
  std::string log;
  signal->Listen([&] {
    log += "1";
    if (log.size() == 1) (*signal)();
  });
  const Connection outlives = signal->Connect([&] {
    log += "2";
    signal.reset();
  });
  signal->Listen([&] { log += "3"; });
  (*signal)();
  EXPECT_EQ(log, "112323");  // both tellings go on to their end
}

}  // namespace
}  // namespace orbelcast
