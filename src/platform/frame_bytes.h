#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace orbelcast {

/// A received body: bytes that are never copied and never change once they are handed out.
///
/// Copying a FrameBytes shares the bytes. Two of them with the same non-zero serial hold the same bytes, so a
/// decoder can tell that it has decoded these already. An empty one has serial 0.
class FrameBytes {
 public:
  using Storage = std::vector<std::uint8_t>;

  FrameBytes() = default;
  /// Takes over `bytes`, which the caller no longer changes while anybody else shares it, under a new serial.
  explicit FrameBytes(std::shared_ptr<const Storage> bytes);
  /// Takes `bytes` in.
  explicit FrameBytes(Storage bytes) : FrameBytes(std::make_shared<const Storage>(std::move(bytes))) {}

  std::span<const std::uint8_t> Bytes() const {
    return bytes_ ? std::span<const std::uint8_t>(*bytes_) : std::span<const std::uint8_t>();
  }
  std::size_t Size() const { return bytes_ ? bytes_->size() : 0; }
  bool Empty() const { return Size() == 0; }
  std::uint64_t Serial() const { return serial_; }

 private:
  std::shared_ptr<const Storage> bytes_;
  std::uint64_t serial_ = 0;
};

}  // namespace orbelcast
