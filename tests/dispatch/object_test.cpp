#include "dispatch/object.h"

#include <gtest/gtest.h>

#include <latch>
#include <thread>

namespace orbelcast::server {
namespace {

/// An owner that another thread's last release reaches before, and leaves after, a call on the own thread has returned.
class SlowCount final : public ObjectCount {
 public:
  bool OnOwnThread() const override {
    if (std::this_thread::get_id() == owner_) return true;
    released.count_down();
    returned.wait();
    return false;
  }
  void EndLater(std::function<void()> end) override { later = std::move(end); }
  void ObjectMade() override { ++objects; }
  void ObjectGone() override { --objects; }

  mutable std::latch released{1};
  mutable std::latch returned{1};
  std::function<void()> later;
  int objects = 0;

 private:
  const std::thread::id owner_ = std::this_thread::get_id();
};

class Plain final : public Object<IUnknown> {
 public:
  using Object::Object;
};

TEST(ObjectTest, StaysUntilItHasEndedWhereItIsReleasedElsewhereDuringACall) {
  SlowCount count;
  auto* const object = new Plain(count);
  std::thread other;
  {
    const Plain::Call call(*object);
    other = std::thread([object] { object->Release(); });
    count.released.wait();
  }
  EXPECT_EQ(count.objects, 1);
  count.returned.count_down();
  other.join();
  ASSERT_TRUE(count.later);
  count.later();
  EXPECT_EQ(count.objects, 0);
}

}  // namespace
}  // namespace orbelcast::server
