#include "viewer/design.h"

#include <array>
#include <cstddef>
#include <memory>
#include <span>

#include "imaging/layout.h"
#include "toolkit/built_in_picture.h"
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
  return std::make_shared<const Surface>(BuiltInPicture(pictures, resources::test_card_png));
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
