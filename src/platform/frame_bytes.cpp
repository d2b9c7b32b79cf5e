#include "platform/frame_bytes.h"

#include <atomic>

namespace orbelcast {

FrameBytes::FrameBytes(std::shared_ptr<const Storage> bytes) : bytes_(std::move(bytes)) {
  // Process-wide, because decoders are: two hosts on two threads must never share a serial.
  static std::atomic<std::uint64_t> last_serial{0};
  if (bytes_ && !bytes_->empty()) serial_ = ++last_serial;
}

}  // namespace orbelcast
