#include "imaging/dib.h"

#include <gtest/gtest.h>

#include <cstdio>
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
  ~DibTest() override { std::filesystem::remove_all(folder_); }

  std::string Name(const std::string& name) const { return (folder_ / name).string(); }
  std::string Store(const std::string& name, const Bytes& bytes) const {
    std::ofstream(Name(name), std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return Name(name);
  }
  static Bytes Load(const std::string& name) {
    std::ifstream file(name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  const std::filesystem::path folder_ = [] {
    auto folder = std::filesystem::path(testing::TempDir()) /
                  ("dib" + std::to_string(reinterpret_cast<std::uintptr_t>(&InfoHeader)) + "_" +
                   testing::UnitTest::GetInstance()->current_test_info()->name());
    std::filesystem::create_directories(folder);
    return folder;
  }();
};

TEST_F(DibTest, AFileComesBackAsItWas) {
  Bytes pixels(2 * 8);
  for (std::size_t i = 0; i < pixels.size(); ++i) pixels[i] = static_cast<std::uint8_t>(i * 17);
  const Bytes file = BmpFile(InfoHeader(2, 2, 24, 16), {}, pixels);
  cDIB dib;
  ASSERT_TRUE(dib.CreateFromFile(Store("a.bmp", file)));
  EXPECT_EQ(dib.Width(), 2);
  EXPECT_EQ(dib.BitCount(), 24);
  EXPECT_EQ(dib.XPPM(), 2835);
  EXPECT_EQ(dib.YPPM(), 2836);
  EXPECT_TRUE(dib.WriteToFile(Name("b.bmp")));
  EXPECT_EQ(Load(Name("b.bmp")), file);

  // Over a longer file the tail stays.
  Store("long.bmp", Bytes(100, 0xee));
  EXPECT_TRUE(dib.WriteToFile(Name("long.bmp")));
  const Bytes after = Load(Name("long.bmp"));
  EXPECT_EQ(after.size(), 100u);
  EXPECT_TRUE(std::equal(file.begin(), file.end(), after.begin()));
  EXPECT_EQ(after.back(), 0xee);

  // A colour table is part of the bitmap's information.
  ASSERT_TRUE(dib.CreateFromFile(Store("8.bmp", BmpFile(InfoHeader(4, 1, 8, 4), Bytes(1024, 7), {1, 2, 3, 4}))));
  EXPECT_EQ(dib.SizeBitmapInfo(), 1064);
  EXPECT_EQ(dib.BitOffset(), 1078);
}

TEST_F(DibTest, AForeignFileReplacesTheFileHeaderOnly) {
  cDIB dib;
  ASSERT_TRUE(dib.CreateFromFile(Store("a.bmp", BmpFile(InfoHeader(2, 1, 24, 8), {}, Bytes(8)))));
  EXPECT_FALSE(dib.CreateFromFile(Store("text", Bytes(60, 'A'))));
  EXPECT_EQ(dib.FileType(), 0x4141);
  EXPECT_EQ(dib.Width(), 2);
  EXPECT_EQ(dib.PointerToBits().size(), 8u);
  EXPECT_FALSE(dib.CreateFromFile(Name("missing")));
  EXPECT_FALSE(dib.CreateFromFile(folder_.string()));
}

TEST_F(DibTest, HeadersThatPromiseTooMuchGiveWhatThereIs) {
  cDIB dib;
  Bytes file = BmpFile(InfoHeader(30000, 30000, 24, 0x7fffffff), {}, Bytes(5, 9));
  EXPECT_TRUE(dib.CreateFromFile(Store("big", file)));
  EXPECT_EQ(dib.SizeImage(), 0x7fffffff);
  EXPECT_EQ(dib.PointerToBits().size(), 5u);

  file = BmpFile(InfoHeader(1, 1, 24, -4), {}, Bytes(4));
  file[13] = 0x80;  // A negative offset.
  EXPECT_TRUE(dib.CreateFromFile(Store("negative", file)));
  EXPECT_TRUE(dib.PointerToBits().empty());
  EXPECT_EQ(dib.SizeBitmapInfo(), 0);

  EXPECT_TRUE(dib.CreateFromFile(Store("short", {'B', 'M', 1, 2, 3, 4})));
}

TEST_F(DibTest, PackedDibsFollowTheirOwnRules) {
  cDIB dib;
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
