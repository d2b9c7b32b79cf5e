#include "imaging/dib.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace orbelcast {

namespace {

constexpr std::int16_t kBitmapMark = 19778;  ///< "BM" as a little-endian number.
constexpr std::size_t kFileHeaderBytes = 14;
constexpr std::size_t kInfoHeaderBytes = 40;
/// Added to the pixels' size as a packed DIB's recorded file size: one byte more than the headers have.
constexpr std::int32_t kPackedOverhead = 55;

/// Reads little-endian numbers one after another; past the end they keep what they had.
class Reader {
 public:
  explicit Reader(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

  template <typename Number>
  void Read(Number& number) {
    if (bytes_.size() < sizeof number) {
      bytes_ = {};
      return;
    }
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < sizeof number; ++i) value |= std::uint32_t{bytes_[i]} << (8 * i);
    number = static_cast<Number>(value);
    bytes_ = bytes_.subspan(sizeof number);
  }

 private:
  std::span<const std::uint8_t> bytes_;
};

template <typename Number>
void Append(std::vector<std::uint8_t>& bytes, Number number) {
  for (std::size_t i = 0; i < sizeof number; ++i) {
    bytes.push_back(static_cast<std::uint8_t>(static_cast<std::uint32_t>(number) >> (8 * i)));
  }
}

/// As many of `count` bytes from `offset` as the file has; a count or an offset that cannot be gives none.
std::vector<std::uint8_t> ReadUpTo(std::ifstream& file, std::uint64_t file_size, std::int64_t offset,
                                   std::int64_t count) {
  if (offset < 0 || count <= 0 || static_cast<std::uint64_t>(offset) >= file_size) return {};
  const std::uint64_t there =
      std::min(static_cast<std::uint64_t>(count), file_size - static_cast<std::uint64_t>(offset));
  std::vector<std::uint8_t> bytes(there);
  file.clear();
  file.seekg(offset);
  file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(there));
  bytes.resize(static_cast<std::size_t>(std::max<std::streamsize>(file.gcount(), 0)));
  return bytes;
}

void Write(std::ofstream& file, std::span<const std::uint8_t> bytes) {
  file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

}  // namespace

bool cDIB::CreateFromFile(const std::string& Filename) {
  if (!FileExists(Filename)) return false;
  std::ifstream file(Filename, std::ios::binary);
  if (!file) return false;
  std::error_code error;
  const std::uint64_t size = std::filesystem::file_size(Filename, error);
  if (error) return false;

  ReadFileHeader(ReadUpTo(file, size, 0, kFileHeaderBytes));
  if (FileHeader.bfType != kBitmapMark) return false;
  ReadInfoHeader(ReadUpTo(file, size, kFileHeaderBytes, kInfoHeaderBytes));
  Bits = ReadUpTo(file, size, FileHeader.bfOffBits, InfoHeader.biSizeImage);
  BitmapInfo = ReadUpTo(file, size, kFileHeaderBytes,
                        static_cast<std::int64_t>(FileHeader.bfOffBits) - static_cast<std::int64_t>(kFileHeaderBytes));
  return true;
}

bool cDIB::CreateFromPackedDIBPointer(std::span<const std::uint8_t> packed) {
  const auto header = packed.first(std::min(packed.size(), kInfoHeaderBytes));
  ReadInfoHeader(header);
  if (InfoHeader.biBitCount < 16 || InfoHeader.biSizeImage < 1) return false;
  const auto pixels = packed.subspan(header.size());
  const auto there = pixels.first(std::min(pixels.size(), static_cast<std::size_t>(InfoHeader.biSizeImage)));
  Bits.assign(there.begin(), there.end());
  BitmapInfo.assign(header.begin(), header.end());
  FileHeader = {kBitmapMark,
                static_cast<std::int32_t>(static_cast<std::uint32_t>(InfoHeader.biSizeImage) + kPackedOverhead), 0, 0,
                static_cast<std::int32_t>(kFileHeaderBytes + kInfoHeaderBytes)};
  return true;
}

bool cDIB::WriteToFile(const std::string& Filename) const {
  // Opened for reading as well, so that an existing file is not emptied first; a new one must be made.
  std::ofstream file(Filename, std::ios::binary | std::ios::in | std::ios::out);
  if (!file) file.open(Filename, std::ios::binary | std::ios::out);
  if (!file) return false;
  std::vector<std::uint8_t> header;
  Append(header, FileHeader.bfType);
  Append(header, FileHeader.bfSize);
  Append(header, FileHeader.bfReserved1);
  Append(header, FileHeader.bfReserved2);
  Append(header, FileHeader.bfOffBits);
  Write(file, header);
  Write(file, BitmapInfo);
  Write(file, Bits);
  return true;
}

bool cDIB::FileExists(const std::string& Filename) {
  std::error_code error;
  static_cast<void>(std::filesystem::file_size(Filename, error));
  return !error;
}

void cDIB::ReadFileHeader(std::span<const std::uint8_t> bytes) {
  Reader reader(bytes);
  reader.Read(FileHeader.bfType);
  reader.Read(FileHeader.bfSize);
  reader.Read(FileHeader.bfReserved1);
  reader.Read(FileHeader.bfReserved2);
  reader.Read(FileHeader.bfOffBits);
}

void cDIB::ReadInfoHeader(std::span<const std::uint8_t> bytes) {
  Reader reader(bytes);
  reader.Read(InfoHeader.biSize);
  reader.Read(InfoHeader.biWidth);
  reader.Read(InfoHeader.biHeight);
  reader.Read(InfoHeader.biPlanes);
  reader.Read(InfoHeader.biBitCount);
  reader.Read(InfoHeader.biCompression);
  reader.Read(InfoHeader.biSizeImage);
  reader.Read(InfoHeader.biXPelsPerMeter);
  reader.Read(InfoHeader.biYPelsPerMeter);
  reader.Read(InfoHeader.biClrUsed);
  reader.Read(InfoHeader.biClrImportant);
}

}  // namespace orbelcast
