#include "imaging/dib.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace orbelcast {
namespace {

using Bytes = std::vector<std::uint8_t>;

void Put(Bytes& bytes, std::size_t width, std::int64_t value) {
  for (std::size_t i = 0; i < width; ++i) bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
}

Bytes InfoHeader(int width, int height, int bits, std::int32_t image_size) {
  Bytes bytes;
  for (const std::int64_t value : {40, width, height}) Put(bytes, 4, value);
  Put(bytes, 2, 1);
  Put(bytes, 2, bits);
  for (const std::int64_t value : {0, image_size, 2835, 2836, 0, 0}) Put(bytes, 4, value);
  return bytes;
}

Bytes BmpFile(const Bytes& info, const Bytes& table, const Bytes& pixels) {
  const auto offset = static_cast<std::int64_t>(14 + info.size() + table.size());
  Bytes file{'B', 'M'};
  Put(file, 4, offset + static_cast<std::int64_t>(pixels.size()));
  Put(file, 4, 0);
  Put(file, 4, offset);
  for (const Bytes* part : {&info, &table, &pixels}) file.insert(file.end(), part->begin(), part->end());
  return file;
}

class DibTest : public testing::Test {
 protected:
  ~DibTest() override { std::filesystem::remove(name_); }

  bool Read(const Bytes& file) {
    Store(file);
    return dib.CreateFromFile(name_);
  }
  /// What writing the bitmap over a file of `before` leaves.
  Bytes Written(const Bytes& before) {
    Store(before);
    EXPECT_TRUE(dib.WriteToFile(name_));
    std::ifstream file(name_, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  cDIB dib;

 private:
  void Store(const Bytes& file) const {
    std::ofstream(name_, std::ios::binary)
        .write(reinterpret_cast<const char*>(file.data()), static_cast<std::streamsize>(file.size()));
  }
  const std::string name_ = testing::TempDir() + "orbelcast-dib-" + std::to_string(::getpid());
};

TEST_F(DibTest, AFileComesBackAsItWas) {
  Bytes pixels(2 * 8);
  for (std::size_t i = 0; i < pixels.size(); ++i) pixels[i] = static_cast<std::uint8_t>(i * 17);
  const Bytes file = BmpFile(InfoHeader(2, 2, 24, 16), {}, pixels);
  ASSERT_TRUE(Read(file));
  EXPECT_EQ(dib.Width(), 2);
  EXPECT_EQ(dib.BitCount(), 24);
  EXPECT_EQ(dib.XPPM(), 2835);
  EXPECT_EQ(dib.YPPM(), 2836);
  EXPECT_EQ(Written({}), file);
  // Over a longer file the tail stays.
  Bytes longer(100, 0xee);
  std::copy(file.begin(), file.end(), longer.begin());
  EXPECT_EQ(Written(Bytes(100, 0xee)), longer);

  // A colour table is part of the bitmap's information.
  ASSERT_TRUE(Read(BmpFile(InfoHeader(4, 1, 8, 4), Bytes(1024, 7), {1, 2, 3, 4})));
  EXPECT_EQ(dib.SizeBitmapInfo(), 1064);
  EXPECT_EQ(dib.BitOffset(), 1078);
}

TEST_F(DibTest, AForeignFileReplacesTheFileHeaderOnly) {
  ASSERT_TRUE(Read(BmpFile(InfoHeader(2, 1, 24, 8), {}, Bytes(8))));
  EXPECT_FALSE(Read(Bytes(60, 'A')));
  EXPECT_EQ(dib.FileType(), 0x4141);
  EXPECT_EQ(dib.Width(), 2);
  EXPECT_EQ(dib.PointerToBits().size(), 8u);
  EXPECT_FALSE(dib.CreateFromFile("/missing"));
  EXPECT_FALSE(dib.CreateFromFile(testing::TempDir()));
}

TEST_F(DibTest, HeadersThatPromiseTooMuchGiveWhatThereIs) {
  EXPECT_TRUE(Read(BmpFile(InfoHeader(30000, 30000, 24, 0x7fffffff), {}, Bytes(5, 9))));
  EXPECT_EQ(dib.SizeImage(), 0x7fffffff);
  EXPECT_EQ(dib.PointerToBits().size(), 5u);

  Bytes file = BmpFile(InfoHeader(1, 1, 24, -4), {}, Bytes(4));
  file[13] = 0x80;  // A negative offset.
  EXPECT_TRUE(Read(file));
  EXPECT_TRUE(dib.PointerToBits().empty());
  EXPECT_EQ(dib.SizeBitmapInfo(), 0);
  EXPECT_TRUE(Read({'B', 'M', 1, 2, 3, 4}));
}

TEST_F(DibTest, PackedDibsFollowTheirOwnRules) {
  Bytes packed = InfoHeader(100, 100, 24, 30000);
  packed.resize(40 + 30000, 5);
  ASSERT_TRUE(dib.CreateFromPackedDIBPointer(packed));
  EXPECT_EQ(dib.SizeFileHeader(), 30055);
  EXPECT_EQ(dib.BitOffset(), 54);
  EXPECT_EQ(dib.SizeBitmapInfo(), 40);
  EXPECT_EQ(dib.PointerToBits().size(), 30000u);

  EXPECT_FALSE(dib.CreateFromPackedDIBPointer(InfoHeader(7, 7, 8, 49)));
  EXPECT_EQ(dib.BitCount(), 8);
  EXPECT_EQ(dib.Width(), 7);
  EXPECT_EQ(dib.SizeFileHeader(), 30055);
  EXPECT_EQ(dib.PointerToBits().size(), 30000u);

  EXPECT_TRUE(dib.CreateFromPackedDIBPointer(InfoHeader(1, 1, 32, 0x7fffffff)));
  EXPECT_TRUE(dib.PointerToBits().empty());
}

}  // namespace
}  // namespace orbelcast
