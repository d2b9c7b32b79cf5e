#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace orbelcast {

/// One device-independent bitmap in the layout of a BMP file: file header, information header and colour table, pixels.
///
/// A plain value holder: nothing is drawn or converted. It is filled from a BMP file or from a packed DIB in memory (an
/// information header with the pixels right after it) and writes itself back as a BMP file. A method answers true when
/// it reached its end; bytes that could not be read (a file that ends early, a header that promises more than there is)
/// are missing from the arrays, so callers check the sizes that they need. Nothing throws.
class cDIB {
 public:
  /// Loads a BMP file. False where there is none or it does not begin with "BM". No more bytes are allocated than the
  /// file holds, whatever its headers say.
  bool CreateFromFile(const std::string& Filename);

  /// Loads a packed DIB. False for fewer than 16 bits a pixel or no pixel bytes; the information header is replaced
  /// even then. Bytes that `packed` does not hold are missing from the pixels.
  bool CreateFromPackedDIBPointer(std::span<const std::uint8_t> packed);

  /// Writes the three parts unchanged, over an existing file in place: the tail of a longer one remains.
  bool WriteToFile(const std::string& Filename) const;

  std::int32_t BitCount() const { return InfoHeader.biBitCount; }
  std::int32_t Height() const { return InfoHeader.biHeight; }
  std::int32_t Width() const { return InfoHeader.biWidth; }
  std::int32_t Compression() const { return InfoHeader.biCompression; }
  std::int32_t SizeInfoHeader() const { return InfoHeader.biSize; }
  std::int32_t SizeImage() const { return InfoHeader.biSizeImage; }
  std::int32_t Planes() const { return InfoHeader.biPlanes; }
  std::int32_t ClrImportant() const { return InfoHeader.biClrImportant; }
  std::int32_t ClrUsed() const { return InfoHeader.biClrUsed; }
  std::int32_t XPPM() const { return InfoHeader.biXPelsPerMeter; }
  std::int32_t YPPM() const { return InfoHeader.biYPelsPerMeter; }
  std::int32_t FileType() const { return FileHeader.bfType; }
  /// The whole file's size as recorded, in spite of the name.
  std::int32_t SizeFileHeader() const { return FileHeader.bfSize; }
  std::int32_t BitOffset() const { return FileHeader.bfOffBits; }

  /// The pixel bytes, and the bytes between the file header and them; valid until the next load or the holder's end.
  std::span<const std::uint8_t> PointerToBits() const { return Bits; }
  std::span<const std::uint8_t> PointerToBitmapInfo() const { return BitmapInfo; }
  std::int32_t SizeBitmapInfo() const { return static_cast<std::int32_t>(BitmapInfo.size()); }

 private:
  struct FileHeaderRecord {
    std::int16_t bfType = 0;
    std::int32_t bfSize = 0;
    std::int16_t bfReserved1 = 0;
    std::int16_t bfReserved2 = 0;
    std::int32_t bfOffBits = 0;
  };
  struct InfoHeaderRecord {
    std::int32_t biSize = 0;
    std::int32_t biWidth = 0;
    std::int32_t biHeight = 0;
    std::int16_t biPlanes = 0;
    std::int16_t biBitCount = 0;
    std::int32_t biCompression = 0;
    std::int32_t biSizeImage = 0;
    std::int32_t biXPelsPerMeter = 0;
    std::int32_t biYPelsPerMeter = 0;
    std::int32_t biClrUsed = 0;
    std::int32_t biClrImportant = 0;
  };

  static bool FileExists(const std::string& Filename);
  void ReadFileHeader(std::span<const std::uint8_t> bytes);
  void ReadInfoHeader(std::span<const std::uint8_t> bytes);

  std::vector<std::uint8_t> Bits;
  std::vector<std::uint8_t> BitmapInfo;
  InfoHeaderRecord InfoHeader;
  FileHeaderRecord FileHeader;
};

}  // namespace orbelcast
