#include "viewer/design.h"

#include <array>
#include <cstddef>
#include <memory>
#include <span>

#include "imaging/layout.h"
#include "viewer/pictures.h"
#include "viewer/video_server_push.h"

namespace orbelcast {

namespace {

/// The colour of the reference thumbnail and the overlay before the first scan.
constexpr Color kUnseen = Rgb(64, 64, 64);
constexpr Color kStripColor = Rgb(255, 255, 192);
/// The strip's height by design, in twips; it gets its 26 pixels when the control is made.
constexpr float kStripDesignHeight = 375;
/// The left edge of the strip's two lines of text, beside the icons, and their height, in twips.
constexpr float kStripTextLeft = 870;
constexpr float kStripLineHeight = 195;
constexpr int kDummyInterval = 500;
constexpr int kMultiCamInterval = 500;

void PlaceChildren(VideoServerPush& viewer, TwipsScale scale) {
  for (PictureBox* box : {&viewer.BuffPic, &viewer.IconNet, &viewer.DisconnectIcon, &viewer.ConnectIcon,
                          &viewer.StopIcon, &viewer.RecIcon, &viewer.MotionPicture[0], &viewer.MotionPicture[1],
                          &viewer.MotionPicture[2], &viewer.StatusDisplay, &viewer.VideoStream}) {
    box->SetScale(scale);
  }
  Place(viewer.BuffPic, 2400, 120, 1035, 915);
  Place(viewer.WarningFrame, 840, 1440, 4455, 495);
  Place(viewer.WarningMsg, 120, 120, 4215, 255);
  Place(viewer.StatusDisplay, 0, 0, VideoServerPush::kDesignWidth, kStripDesignHeight);
  Place(viewer.lStatus, kStripTextLeft, 0, 0, kStripLineHeight);
  Place(viewer.TimeRetrieve, kStripTextLeft, kStripLineHeight, 0, kStripLineHeight);
  Place(viewer.VideoStream, 120, 1080, 1035, 795);
  Place(viewer.Mira, 120, 120, 1035, 855);
  for (PictureBox& picture : viewer.MotionPicture) {
    Place(picture, 0, 0, scale.TwipsX(kMotionPictureWidth), scale.TwipsY(kMotionPictureHeight));
  }
}

void DressChildren(VideoServerPush& viewer) {
  viewer.WarningMsg.Font = "Verdana";
  viewer.WarningFrame.Visible = false;
  for (PictureBox* hidden :
       {&viewer.BuffPic, &viewer.IconNet, &viewer.DisconnectIcon, &viewer.ConnectIcon, &viewer.StopIcon,
        &viewer.RecIcon, &viewer.MotionPicture[0], &viewer.MotionPicture[1], &viewer.MotionPicture[2]}) {
    hidden->Visible = false;
  }
  viewer.StatusDisplay.BackColor = kStripColor;
  viewer.VideoStream.BackColor = Rgb(0, 0, 0);
  viewer.MotionPicture[0].BackColor = Rgb(0, 0, 0);
  viewer.MotionPicture[1].BackColor = kUnseen;
  viewer.MotionPicture[2].BackColor = kUnseen;
}

void LoadPictures(VideoServerPush& viewer, PictureCodec& pictures, TwipsScale scale) {
  const auto load = [&](PictureBox& box, std::span<const std::uint8_t> bytes) {
    const Surface picture = pictures.Decode(bytes);
    Place(box, 0, 0, scale.TwipsX(picture.Width()), scale.TwipsY(picture.Height()));
    box.SetPicture(picture);
  };
  load(viewer.IconNet, resources::no_answer_png);
  load(viewer.RecIcon, resources::recording_png);
  load(viewer.StopIcon, resources::stop_png);
  load(viewer.ConnectIcon, resources::connect_png);
  load(viewer.DisconnectIcon, resources::disconnect_png);
}

/// The test card, which is by far the largest of the built-in pictures, as it is when somebody looks.
class UnseenTestCard final : public UnseenPicture {
 public:
  explicit UnseenTestCard(PictureCodec& pictures) : pictures_(pictures) {}

  bool DrawOn(Surface& surface) override {
    surface.Draw(pictures_.Decode(resources::test_card_png), 0, 0);
    return true;
  }
  bool DrawInto(const PixelMemory&, const Surface&) override { return false; }
  std::span<const std::uint8_t> Png() const override { return resources::test_card_png; }

 private:
  PictureCodec& pictures_;
};

void FillMenu(VideoServerPush& viewer) {
  viewer.MainMenu.Caption = "Ghost";
  constexpr std::array<const char*, 5> kCaptions{"Time", "Server", "Status", "-", "Reconnect"};
  for (std::size_t i = 0; i < viewer.Menux.size(); ++i) {
    viewer.Menux[i].Caption = kCaptions[i];
    viewer.MainMenu.Items.push_back(&viewer.Menux[i]);
  }
}

}  // namespace

std::shared_ptr<const Surface> MakeTestCard(PictureCodec& pictures) {
  const auto card = std::make_shared<Surface>(resources::kTestCardSize.width, resources::kTestCardSize.height);
  card->DrawWhenSeen(std::make_shared<UnseenTestCard>(pictures), 0, 0, card->Width(), card->Height());
  return card;
}

void ApplyDesign(VideoServerPush& viewer, const Platform& platform) {
  const TwipsScale scale = TwipsScale::Of(platform.screen);
  PlaceChildren(viewer, scale);
  DressChildren(viewer);
  LoadPictures(viewer, platform.pictures, scale);
  FillMenu(viewer);
  viewer.Dummy.Interval = kDummyInterval;
  viewer.Dummy.Enabled = true;
  viewer.MultiCam.Interval = kMultiCamInterval;
}

}  // namespace orbelcast
