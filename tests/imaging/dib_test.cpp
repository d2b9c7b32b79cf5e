#include "imaging/dib.h"

#include <gtest/gtest.h>

#include "fakes/temporary_folder.h"

namespace orbelcast {
namespace {

using Bytes = std::vector<std::uint8_t>;

/// A file with a colour table and pixels of so many bytes.
Bytes BmpFile(int width, int height, int bits, int image_size, int table, int pixels) {
  const int offset = 54 + table;
  Bytes bytes{'B', 'M'};
  for (const int value :
       {offset + pixels, 0, offset, 40, width, height, 1 | bits << 16, 0, image_size, 2835, 2836, 0, 0})
    for (const int shift : {0, 8, 16, 24}) bytes.push_back(static_cast<std::uint8_t>(value >> shift));
  for (int i = 0; i < table + pixels; ++i) bytes.push_back(static_cast<std::uint8_t>(i * 17));
  return bytes;
}

class DibTest : public testing::Test {
 protected:
  bool Read(const Bytes& file) {
    return dib.CreateFromFile(folder.Write("a.bmp", std::string(file.begin(), file.end())));
  }
  /// The bytes that writing the bitmap over the file that was read leaves.
  Bytes Written() const {
    EXPECT_TRUE(dib.WriteToFile(folder.File("a.bmp")));
    const std::string bytes = fakes::ReadFile(folder.File("a.bmp"));
    return {bytes.begin(), bytes.end()};
  }

  /// Takes the file without its file header.
  bool ReadPacked(const Bytes& file) { return dib.CreateFromPackedDIBPointer(std::span(file).subspan(14)); }

  const fakes::TemporaryFolder folder;
  cDIB dib;
};

TEST_F(DibTest, AFileComesBackAsItWas) {
  Bytes file = BmpFile(2, 2, 24, 16, 0, 16);
  ASSERT_TRUE(Read(file));
  EXPECT_EQ(dib.XPPM(), 2835);
  EXPECT_EQ(dib.YPPM(), 2836);
  // Over a longer file the tail stays; a foreign file replaces the file header only.
  file.resize(100, 'A');
  EXPECT_FALSE(Read(Bytes(100, 'A')));
  EXPECT_EQ(dib.FileType(), 0x4141);
  EXPECT_EQ(dib.Width(), 2);
  ASSERT_TRUE(Read(file));
  EXPECT_EQ(Written(), file);
  // A colour table is part of the bitmap's information.
  ASSERT_TRUE(Read(BmpFile(4, 1, 8, 4, 1024, 4)));
  EXPECT_EQ(dib.SizeBitmapInfo(), 1064);
  EXPECT_EQ(dib.BitOffset(), 1078);
  // A header that promises too much gives what there is.
  EXPECT_TRUE(Read(BmpFile(30000, 30000, 24, 0x7fffffff, 0, 5)));
  EXPECT_EQ(dib.SizeImage(), 0x7fffffff);
  EXPECT_EQ(dib.PointerToBits().size(), 5u);
  EXPECT_FALSE(dib.CreateFromFile(folder.Path()));
}

TEST_F(DibTest, PackedDibsFollowTheirOwnRules) {
  ASSERT_TRUE(ReadPacked(BmpFile(100, 100, 24, 30000, 0, 30000)));
  EXPECT_EQ(dib.SizeFileHeader(), 30055);
  EXPECT_EQ(dib.BitOffset(), 54);
  EXPECT_EQ(dib.SizeBitmapInfo(), 40);
  EXPECT_FALSE(ReadPacked(BmpFile(7, 7, 8, 49, 0, 0)));
  EXPECT_EQ(dib.Width(), 7);
  EXPECT_EQ(dib.SizeFileHeader(), 30055);
  EXPECT_EQ(dib.PointerToBits().size(), 30000u);
}

}  // namespace
}  // namespace orbelcast
