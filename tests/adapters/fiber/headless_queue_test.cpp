#include "adapters/posix/headless_queue.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "adapters/posix/posix_files.h"
#include "fakes/event_queue_contract.h"

namespace orbelcast {
namespace fakes {

INSTANTIATE_TEST_SUITE_P(Headless, EventQueueContract, testing::Values(MakerOf<HeadlessQueue>("HeadlessQueue")));

}  // namespace fakes

namespace {

TEST(PosixFiles, TheTemporaryDirectoryComesFromTheEnvironment) {
  const PosixFiles files;
  unsetenv("temp");
  unsetenv("TMPDIR");
  EXPECT_EQ(files.TemporaryDirectory(), "/tmp/");
  setenv("TMPDIR", "/var/tmp", 1);
  EXPECT_EQ(files.TemporaryDirectory(), "/var/tmp/");
  setenv("temp", "/somewhere/", 1);
  EXPECT_EQ(files.TemporaryDirectory(), "/somewhere/");
}

}  // namespace
}  // namespace orbelcast
