#pragma once

#include <utility>

#include "adapters/posix/headless_queue.h"
#include "adapters/posix/memory_clipboard.h"
#include "assembly/services.h"

namespace orbelcast {

/// The platform of a program without a screen: a loop on the real clock, a clipboard in memory, and a screen of
/// 1920 × 1080 pixels with 15 twips each. Everything happens on the thread that drives it.
class HeadlessPlatform {
 public:
  /// Nobody answers the controls' questions.
  HeadlessPlatform() : HeadlessPlatform(nobody_) {}
  /// `dialogs`, which outlives the platform, does.
  explicit HeadlessPlatform(Dialogs& dialogs) : services_(queue_, screen_, clipboard_, dialogs) {}

  ~HeadlessPlatform() {
    services_.EndHandlers();
    queue_.DropPosted();
  }
  HeadlessPlatform(const HeadlessPlatform&) = delete;
  HeadlessPlatform& operator=(const HeadlessPlatform&) = delete;

  Platform& Get() { return services_.Get(); }
  /// No other server is asked, from now on.
  void AskOnly(ServerRule rule) { services_.AskOnly(std::move(rule)); }
  const FiberLoop& Loop() const { return services_.Loop(); }

 private:
  HeadlessQueue queue_;
  Screen screen_;
  MemoryClipboard clipboard_;
  Dialogs nobody_;
  Services services_;
};

}  // namespace orbelcast
