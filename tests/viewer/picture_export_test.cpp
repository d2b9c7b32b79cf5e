// The picture that is shown, as files, on the clipboard, as bytes and drawn on a host's surface.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "fakes/fake_platform.h"
#include "imaging/dib.h"
#include "viewer/video_server_push.h"

namespace orbelcast {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes Load(const std::string& name) {
  std::ifstream file(name, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

class PictureExportTest : public testing::Test {
 protected:
  PictureExportTest() {
    viewer->Resize(9600, 7200);
    world.http.answers = {{.headers = {}, .body = body}};
  }
  ~PictureExportTest() override { std::filesystem::remove(name); }

  const Bytes body{10, 20, 30, 64, 48, 1, 2, 3};
  const std::string name =
      testing::TempDir() + "/export_" + testing::UnitTest::GetInstance()->current_test_info()->name() + ".jpg";
  fakes::FakePlatform world;
  std::shared_ptr<VideoServerPush> viewer = VideoServerPush::Create(world.platform);
};

TEST_F(PictureExportTest, ASnapshotIsTheServersFileAndNothingElse) {
  std::ofstream(name) << std::string(1000, 'x');
  viewer->Connect("http://camera/", true);
  viewer->SaveImage(name);
  EXPECT_EQ(Load(name), body);
  EXPECT_EQ(viewer->GetPictureArray(), body);

  viewer->SaveImage("/nowhere/at/all.jpg");
  EXPECT_FALSE(std::filesystem::exists("/nowhere/at/all.jpg"));
}

TEST_F(PictureExportTest, TheTestCardAndAMosaicAreBitmaps) {
  cDIB dib;
  viewer->SaveImage(name);
  ASSERT_TRUE(dib.CreateFromFile(name));
  EXPECT_EQ(dib.Width(), viewer->Mira.Picture().Width());
  EXPECT_EQ(dib.PointerToBits()[0], 3);  // Blue first.

  viewer->Connect("http://camera/", true);
  viewer->MultiCam.Enabled = true;
  viewer->SaveImage(name);
  ASSERT_TRUE(dib.CreateFromFile(name));
  EXPECT_EQ(dib.Width(), 640);
  EXPECT_EQ(dib.Height(), 480);
  EXPECT_EQ(dib.SizeImage(), 640 * 480 * 3);
  EXPECT_EQ(Load(name).size(), static_cast<std::size_t>(dib.SizeFileHeader()));
}

TEST_F(PictureExportTest, TheClipboardGetsWhatIsShown) {
  viewer->ImageOnClipboard();
  EXPECT_EQ(world.clipboard.Picture().Width(), 16);
  viewer->Connect("http://camera/", true);
  viewer->ImageOnClipboard();
  EXPECT_EQ(world.clipboard.Picture().Point(639, 479), Rgb(10, 20, 30));
}

TEST_F(PictureExportTest, PicturesAreDrawnAtTheirOwnSizeOrAsAsked) {
  EXPECT_FALSE(viewer->GetPicture());
  viewer->Connect("http://camera/", true);
  const auto picture = viewer->GetPicture();
  ASSERT_TRUE(picture);
  EXPECT_EQ(picture->Width(), 640);
  EXPECT_EQ(picture->Point(0, 0), Rgb(10, 20, 30));

  Surface own(800, 600, Rgb(1, 1, 1));
  const std::int32_t device_context = world.device_contexts.Add(own);
  viewer->RenderPicture(device_context);
  EXPECT_EQ(own.Point(639, 479), Rgb(10, 20, 30));
  EXPECT_EQ(own.Point(640, 479), Rgb(1, 1, 1));
  viewer->RenderPicture(device_context, 700, 500);
  EXPECT_EQ(own.Point(699, 499), Rgb(10, 20, 30));
  world.device_contexts.Remove(device_context);
  viewer->RenderPicture(device_context, 10, 10);
}

}  // namespace
}  // namespace orbelcast
