#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace orbelcast {

/// The file of a clip: bytes on a disk that may get full.
///
/// Room is reserved before it is written to, so that a frame is written whole or not at all, and there is always room
/// for the index at the end. Space that is reserved but not written does not count into the file's size: a process that
/// is killed leaves a file that ends with the last byte written.
class ClipFile {
 public:
  /// Makes the file, or empties the one that is there. Ordinary files only.
  explicit ClipFile(std::string path);
  /// Closes the file. One that nothing was written to is removed.
  virtual ~ClipFile();
  ClipFile(const ClipFile&) = delete;
  ClipFile& operator=(const ClipFile&) = delete;

  /// False where the file could not be made: then nothing else may be asked of it.
  bool IsOpen() const { return descriptor_ >= 0; }

  /// Whether a place that was written can be written once more.
  virtual bool IsSeekable() const { return true; }

  /// Whether the file may grow to `size` bytes: there is room on the disk, and the process may make files as large.
  virtual bool Reserve(std::int64_t size);

  /// Writes all of `bytes` at the place, and moves it. False, with errno, where only some could be written or none.
  virtual bool Write(std::span<const std::uint8_t> bytes);
  void Seek(std::int64_t place) { place_ = place; }
  std::int64_t Place() const { return place_; }
  std::int64_t Size() const { return size_; }
  /// Cuts the file off at `size` bytes.
  void CutOff(std::int64_t size);

 protected:
  /// Of what is open already; closes it.
  explicit ClipFile(int descriptor) : descriptor_(descriptor) {}
  int Descriptor() const { return descriptor_; }

 private:
  bool IsStillAtItsPath() const;

  const std::string path_;
  int descriptor_ = -1;
  std::int64_t place_ = 0;
  std::int64_t size_ = 0;
  std::int64_t reserved_ = 0;
};

}  // namespace orbelcast
