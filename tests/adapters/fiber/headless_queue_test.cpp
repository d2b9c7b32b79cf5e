#include "adapters/posix/headless_queue.h"

#include <gtest/gtest.h>

#include "fakes/event_queue_contract.h"

namespace orbelcast::fakes {

INSTANTIATE_TEST_SUITE_P(Headless, EventQueueContract, testing::Values(MakerOf<HeadlessQueue>("HeadlessQueue")));

}  // namespace orbelcast::fakes
