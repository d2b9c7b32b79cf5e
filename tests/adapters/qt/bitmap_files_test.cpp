// Bitmap files across programs: those of others load here, and those that are written here open there, pixel for pixel.

#include <gtest/gtest.h>

#include <QImage>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include "assembly_qt/qt_platform.h"
#include "imaging/dib.h"
#include "viewer/video_server_push.h"

namespace orbelcast {
namespace {

/// An odd width, so that rows are padded, and no two pixels alike.
QImage Drawing() {
  QImage image(7, 5, QImage::Format_RGB32);
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) image.setPixel(x, y, qRgb(30 * x, 40 * y, 255 - 7 * x - 30 * y));
  }
  return image;
}

/// The pixel that the bitmap's bytes hold: 8 bits through its colour table, 24 and 32 as they are; rows from the
/// bottom.
QRgb PixelOf(const cDIB& bitmap, int x, int y) {
  const int pixel_bytes = bitmap.BitCount() / 8;
  const int row_bytes = (bitmap.Width() * pixel_bytes + 3) / 4 * 4;
  const std::uint8_t* bytes = bitmap.PointerToBits().data() + (bitmap.Height() - 1 - y) * row_bytes + x * pixel_bytes;
  if (pixel_bytes == 1) bytes = bitmap.PointerToBitmapInfo().data() + bitmap.SizeInfoHeader() + 4 * *bytes;
  return qRgb(bytes[2], bytes[1], bytes[0]);
}

class BitmapFilesTest : public testing::Test {
 protected:
  QString Name(const QString& name) const { return folder_.filePath(name); }

  /// Runs one of ImageMagick's programs; what it printed. Fails where it does.
  static QString Run(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    EXPECT_TRUE(process.waitForFinished()) << program.toStdString() << ": " << process.errorString().toStdString();
    QString printed = process.readAll();
    EXPECT_EQ(process.exitCode(), 0) << printed.toStdString();
    return printed;
  }

  /// The file loads, shows what others see in it, and comes back byte for byte.
  void ExpectLoads(const QString& name, int bits) {
    SCOPED_TRACE(name.toStdString());
    cDIB bitmap;
    ASSERT_TRUE(bitmap.CreateFromFile(Name(name).toStdString()));
    const QImage seen(Name(name));
    ASSERT_EQ(bitmap.BitCount(), bits);
    ASSERT_EQ(QSize(bitmap.Width(), bitmap.Height()), seen.size());
    ASSERT_EQ(bitmap.PointerToBits().size(), static_cast<std::size_t>(bitmap.SizeImage()));
    for (int y = 0; y < seen.height(); ++y) {
      for (int x = 0; x < seen.width(); ++x) EXPECT_EQ(PixelOf(bitmap, x, y), seen.pixel(x, y) | 0xff000000U);
    }
    const QString copy = Name("copy.bmp");
    QFile::remove(copy);
    ASSERT_TRUE(bitmap.WriteToFile(copy.toStdString()));
    ExpectSameFor(name, "copy.bmp");
    QFile one(Name(name));
    QFile other(copy);
    ASSERT_TRUE(one.open(QFile::ReadOnly) && other.open(QFile::ReadOnly));
    EXPECT_EQ(one.readAll(), other.readAll());
  }

  /// ImageMagick finds no pixel that differs.
  void ExpectSameFor(const QString& one, const QString& other) {
    EXPECT_EQ(Run("compare", {"-metric", "AE", Name(one), Name(other), "null:"}).trimmed(), "0");
  }

  QTemporaryDir folder_;
};

TEST_F(BitmapFilesTest, ThoseOfOthersLoad) {
  ASSERT_TRUE(Drawing().save(Name("qt24.bmp")));
  ASSERT_TRUE(Drawing().convertToFormat(QImage::Format_Indexed8).save(Name("qt8.bmp")));
  ExpectLoads("qt24.bmp", 24);
  ExpectLoads("qt8.bmp", 8);

  ASSERT_TRUE(Drawing().save(Name("drawing.png")));
  Run("convert", {Name("drawing.png"), "-type", "Palette", "-compress", "none", "BMP3:" + Name("magick8.bmp")});
  Run("convert", {Name("drawing.png"), "-type", "TrueColor", "BMP3:" + Name("magick24.bmp")});
  Run("convert", {Name("drawing.png"), "-alpha", "set", "-channel", "A", "-evaluate", "set", "50%",
                  "BMP:" + Name("magick32.bmp")});
  Run("convert", {Name("drawing.png"), "-type", "TrueColor", "BMP:" + Name("long_header.bmp")});
  ExpectLoads("magick8.bmp", 8);
  ExpectLoads("magick24.bmp", 24);
  ExpectLoads("magick32.bmp", 32);
  ExpectLoads("long_header.bmp", 24);
}

TEST_F(BitmapFilesTest, ASavedPictureOpensElsewhere) {
  QtPlatform platform;
  const auto viewer = VideoServerPush::Create(platform.Get());
  const Surface& card = viewer->Mira.Picture();
  viewer->SaveImage(Name("card.bmp").toStdString());
  const QImage seen(Name("card.bmp"));
  ASSERT_EQ(seen.size(), QSize(card.Width(), card.Height()));
  for (int y = 0; y < card.Height(); ++y) {
    for (int x = 0; x < card.Width(); ++x) {
      const QRgb pixel = seen.pixel(x, y);
      ASSERT_EQ(Rgb(qRed(pixel), qGreen(pixel), qBlue(pixel)), card.Point(x, y)) << x << "," << y;
    }
  }
  ASSERT_TRUE(seen.save(Name("card.png")));
  ExpectSameFor("card.bmp", "card.png");
  EXPECT_EQ(Run("identify", {"-format", "%m %wx%h %[bit-depth]", Name("card.bmp")}),
            QString("BMP3 %1x%2 8").arg(card.Width()).arg(card.Height()));
}

}  // namespace
}  // namespace orbelcast
