// A page's session: lines of a peer that is not trusted, on services that a test steps.

#include <cstdint>
#include <sstream>
#include <string>

#include "fakes/fake_platform.h"
#include "gateway/page_session.h"

namespace {

/// A page that takes everything, and drops it.
class SilentPage final : public orbelcast::Page {
 public:
  void SendText(std::string /*line*/) override {}
  void SendBytes(std::string /*line*/, orbelcast::FrameBytes /*bytes*/) override {}
  bool IsIdle() const override { return true; }
  void Close(const std::string& /*why*/) override {}
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  orbelcast::fakes::FakePlatform fakes;
  const auto session = orbelcast::PageSession::Create(fakes.platform, std::make_shared<orbelcast::NamedServers>(),
                                                      std::make_shared<SilentPage>());
  std::istringstream lines(std::string(reinterpret_cast<const char*>(data), size));
  int count = 0;
  for (std::string line; count < 64 && std::getline(lines, line); ++count) {
    session->TakeLine(line);
    fakes.queue.HandleDue();
  }
  session->TellGone();
  for (int round = 0; round < 16; ++round) fakes.queue.HandleDue();
  return 0;
}
