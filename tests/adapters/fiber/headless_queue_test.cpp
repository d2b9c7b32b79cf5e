#include "adapters/posix/headless_queue.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <vector>

#include "fakes/event_queue_contract.h"

namespace orbelcast::fakes {

INSTANTIATE_TEST_SUITE_P(Headless, EventQueueContract, testing::Values(MakerOf<HeadlessQueue>("HeadlessQueue")));

// Among many sockets, those that are watched on and on.
TEST(HeadlessQueue, TellsOfSocketsThatStandWhateverBecomesOfTheirWatches) {
  constexpr int kMany = 16;
  HeadlessQueue queue;
  std::array<std::array<int, 2>, kMany> pairs{};
  std::vector<int> told;
  const auto watch = [&](int i, EventQueue::SocketEvents events) {
    queue.WatchSocket(pairs[i][0], events, [&told, i](EventQueue::SocketEvents) { told.push_back(i); });
  };
  const auto told_at_a_look = [&] {
    told.clear();
    queue.HandleDue();
    return told;
  };
  for (int i = 0; i < kMany; ++i) {
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, pairs[i].data()), 0);
    watch(i, {.readable = true});
  }
  for (int look = 0; look < 200; ++look) ASSERT_TRUE(told_at_a_look().empty());
  EXPECT_EQ(queue.WaitsFor()->sockets.size(), std::size_t{kMany});

  ASSERT_EQ(write(pairs[3][1], "x", 1), 1);
  EXPECT_EQ(told_at_a_look(), std::vector{3});
  EXPECT_EQ(told_at_a_look(), std::vector{3}) << "it is still readable";
  queue.UnwatchSocket(pairs[3][0]);
  EXPECT_TRUE(told_at_a_look().empty());
  watch(3, {.readable = true});
  EXPECT_EQ(told_at_a_look(), std::vector{3});
  queue.UnwatchSocket(pairs[3][0]);

  watch(5, {.readable = true, .writable = true});
  EXPECT_EQ(told_at_a_look(), std::vector{5});
  watch(5, {.readable = true});
  EXPECT_TRUE(told_at_a_look().empty());

  // The next socket has the number of one that was closed.
  const int number = pairs[7][0];
  queue.UnwatchSocket(number);
  close(number);
  ASSERT_EQ(dup(pairs[7][1]), number);
  ASSERT_EQ(write(pairs[8][1], "x", 1), 1);
  queue.WatchSocket(number, {.readable = true}, [&](EventQueue::SocketEvents) { told.push_back(7); });
  EXPECT_EQ(told_at_a_look(), (std::vector{7, 8})) << "its other end is closed";

  for (const auto& pair : pairs) {
    queue.UnwatchSocket(pair[0]);
    for (const int end : pair) close(end);
  }
}

}  // namespace orbelcast::fakes
