// What the toolbar's buttons and the windows behind them do.

#include <filesystem>
#include <fstream>
#include <sstream>

#include "player_fixture.h"

namespace orbelcast {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto kStep =
    "http://srv:81/$openlogin/u/secret/srv_vigilbox$img?Device=d1&Day=0&Month=0&Year=0&Hour=0"
    "&Minute=0&Second=0&";

class ToolbarTest : public PlayerWorld {
 protected:
  ToolbarTest() {
    Create();
    LoadServer({{"Device", "d1"}, {"ExtendedControls", "Yes"}});
    world.http.log.clear();
    for (const NamedChild& child : player->Windows()) {
      auto* window = std::get<Window*>(child.control);
      window->Opened.Listen([this, window, name = child.name] {
        opened.push_back(name + " " + window->Caption.Get());
        if (on_open) on_open();
        window->Close();
      });
    }
  }

  std::string Step(char letter) { return kStep + std::string(1, letter) + "=0&Quality=" + kLive; }

  std::vector<std::string> opened;
  /// What a person does in the window that has just opened; then it is closed.
  std::function<void()> on_open;
};

// ---- Streams and the archive --------------------------------------------------------------------------------------

TEST_F(ToolbarTest, ArchiveStepsAskForOnePictureOrForAStream) {
  player->VS->StopGettingFrames();
  Click(0);
  EXPECT_THAT(Asked(), ElementsAre(Step('T')));
  Click(4);
  EXPECT_THAT(Asked(), ElementsAre(Step('B')));
  // "Manual": a picture a press.
  Click(1);
  Click(3);
  EXPECT_THAT(Asked(), ElementsAre(Step('R'), Step('F')));
  EXPECT_FALSE(player->VS->MasterTimer.Enabled);
  Choose(player->FrameRate, 5);
  Click(3);
  EXPECT_THAT(Asked(), ElementsAre(Step('F'), Step('F')));
  EXPECT_TRUE(player->VS->MasterTimer.Enabled);
  Click(2);
  world.queue.Advance(std::chrono::seconds(2));
  EXPECT_FALSE(player->VS->MasterTimer.Enabled);
}

TEST_F(ToolbarTest, TheBandwidthIsShownWhileAnEndOfTheArchiveComes) {
  std::vector<bool> shown;
  player->VS->Events.Status.Listen([&](std::string&) { shown.push_back(player->VS->ShowBandwidth()); });
  Click(0);
  EXPECT_THAT(shown, testing::Each(true));
  EXPECT_FALSE(player->VS->ShowBandwidth());
  Click(6);
  EXPECT_TRUE(player->VS->ShowBandwidth());
  Click(4);
  EXPECT_TRUE(player->VS->ShowBandwidth());
  Click(6);
  EXPECT_FALSE(player->VS->ShowBandwidth());
}

TEST_F(ToolbarTest, ASearchSendsTheBoxesAsTheyStandAndEnablesPlaying) {
  std::vector<std::string> messages;
  player->VS->WarningMsg.Caption.Changed.Listen([&](const std::string& text) { messages.push_back(text); });
  EXPECT_FALSE(player->Player[1].Enabled);
  for (TextBox& box : player->TCR) box.Type("--");
  player->TCR[0].Type("20245");
  player->TCR[1].Type("7");
  player->TCR[4].Type("5x");
  player->TCR[1].OnLostFocus();
  player->TCR[4].OnLostFocus();
  Click(7);
  EXPECT_THAT(Asked(), ElementsAre("http://srv:81/$openlogin/u/secret/srv_vigilbox$img?Device=d1&Day=--&Month=07"
                                   "&Year=2024&Hour=--&Minute=05&Second=--&P=0&Quality=" +
                                   std::string(kLive)));
  EXPECT_THAT(messages, ElementsAre("Wait..."));
  EXPECT_TRUE(player->Player[1].Enabled);
  EXPECT_TRUE(player->Player[3].Enabled);
  Choose(player->CamList, 0);
  EXPECT_FALSE(player->Player[1].Enabled);
  EXPECT_FALSE(player->Player[3].Enabled);
}

TEST_F(ToolbarTest, TheBoxesFollowTheStreamsTime) {
  auto answer = PictureAnswer();
  answer.headers["RC_TCR"] = "20050317090544";
  texts.emplace_back("&T=0", answer);
  Click(0);
  std::vector<std::string> boxes;
  for (const TextBox& box : player->TCR) boxes.push_back(box.Text);
  EXPECT_THAT(boxes, ElementsAre("2005", "03", "17", "09", "05", "44"));
}

TEST_F(ToolbarTest, AButtonWithoutACommandIsOnlyRemembered) {
  player->VS->DisableTestScreen(false);
  Click(12);
  EXPECT_THAT(Asked(), IsEmpty());
  EXPECT_TRUE(player->VS->DisableTestScreen());
  EXPECT_THAT(opened, IsEmpty());
  EXPECT_THAT(world.dialogs.log, IsEmpty());
}

// ---- Snapshots ----------------------------------------------------------------------------------------------------

class SnapshotTest : public ToolbarTest {
 protected:
  SnapshotTest() {
    char name[] = "/tmp/player_test_XXXXXX";
    folder = std::string(mkdtemp(name)) + "/";
    world.files.module_folder = folder;
  }
  ~SnapshotTest() override { fs::remove_all(folder); }
  static std::string Read(const std::string& file) {
    std::ifstream in(file, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
  }
  static void Write(const std::string& file, const std::string& text) { std::ofstream(file, std::ios::binary) << text; }

  std::string folder;
  std::string picture{"\x0a\x14\x1e\x40\x30"};
  const std::string ask = "ask This file already exists, do you want to overwrite ? | AVI Maker";
  const std::string save = "save Choose the filename... | JPEG Image (*.jpg)|*.jpg";
};

TEST_F(SnapshotTest, CancellingLeavesTheTemporaryFile) {
  Click(10);
  EXPECT_THAT(world.dialogs.log, ElementsAre(save));
  EXPECT_EQ(Read(folder + "tempf.jpg"), picture);
}

TEST_F(SnapshotTest, ANewNameIsAskedAboutToo) {
  world.dialogs.names = {folder + "new.jpg", folder + "new.jpg"};
  world.dialogs.answers = {Dialogs::Answer::kNo, Dialogs::Answer::kYes};
  Click(10);
  EXPECT_THAT(world.dialogs.log, ElementsAre(save, ask));
  EXPECT_FALSE(fs::exists(folder + "new.jpg"));
  EXPECT_EQ(Read(folder + "tempf.jpg"), picture);
  Click(10);
  EXPECT_EQ(Read(folder + "new.jpg"), picture);
  EXPECT_FALSE(fs::exists(folder + "tempf.jpg"));
}

TEST_F(SnapshotTest, AnOldFileIsReplacedOnlyWithYes) {
  const std::string name = folder + "old.jpg";
  Write(name, "old");
  world.dialogs.names = {name, name};
  world.dialogs.answers = {Dialogs::Answer::kNo, Dialogs::Answer::kYes};
  Click(10);
  EXPECT_EQ(Read(name), "old");
  Click(10);
  EXPECT_EQ(Read(name), picture);
}

// Its length is no reason to ask, and it stands in the way of the picture.
TEST_F(SnapshotTest, AnEmptyFileStaysAndThePictureInTheTemporaryOne) {
  const std::string name = folder + "empty.jpg";
  Write(name, "");
  world.dialogs.names = {name};
  Click(10);
  EXPECT_THAT(world.dialogs.log, ElementsAre(save));
  EXPECT_EQ(fs::file_size(name), 0u);
  EXPECT_EQ(Read(folder + "tempf.jpg"), picture);
}

TEST_F(SnapshotTest, AFolderIsNeverDeleted) {
  const std::string name = folder + "folder";
  fs::create_directory(name);
  world.dialogs.names = {name};
  world.dialogs.answers = {Dialogs::Answer::kYes};
  Click(10);
  EXPECT_TRUE(fs::is_directory(name));
  EXPECT_EQ(Read(folder + "tempf.jpg"), picture);
}

// ---- Log and message ----------------------------------------------------------------------------------------------

TEST_F(ToolbarTest, TheLogIsShownUntilItIsClosed) {
  texts.insert(texts.begin(), {"$activitylogfile", TextAnswer("1,in\r\n\r\n2,out\r\n")});
  std::string shown;
  on_open = [&] { shown = player->LogForm.Log.Text; };
  Click(11);
  EXPECT_THAT(Asked(), ElementsAre("http://srv:81/$openlogin/u/secret/srv_vigilbox$activitylogfile"));
  EXPECT_THAT(opened, ElementsAre("LogForm Activity Log"));
  EXPECT_EQ(shown, "1\tin\r\n2\tout\r\n");
  EXPECT_EQ(player->LogForm.Log.Text.Get(), "");

  // A server that is away leaves it empty; a new picture quality shows it again.
  texts.front().second = {.headers = {}, .body = {'x'}, .fails = true};
  Choose(player->Resolution, 3);
  EXPECT_EQ(opened.size(), 2u);
  EXPECT_EQ(shown, "");
}

TEST_F(ToolbarTest, AMessageGoesOutDecoded) {
  world.dialogs.texts = {"", "100%25 a+b&c é", "a%0d%0aX-Evil: 1", "%zz"};
  Click(13);
  EXPECT_THAT(Asked(), IsEmpty());
  Click(13);
  EXPECT_THAT(world.dialogs.log, testing::Each("input Message: | House"));
  EXPECT_THAT(Asked(),
              ElementsAre("http://srv:81/$openlogin/u/secret/srv_vigilbox$message?msg=100% a b&c é&Send=Send+Message"));
  // What decodes to more than a line is sent by nobody.
  world.http.log.clear();
  Click(13);
  Click(13);
  EXPECT_EQ(world.http.Count("Refused"), 2);
  EXPECT_EQ(world.http.Count("Send"), 0);
}

TEST_F(ToolbarTest, ARelaysAccountIsResolvedForLogAndMessageAlone) {
  world.configuration.relay_host = "relay.host";
  world.configuration.relay_lookup_host = "lookup";
  texts.insert(texts.begin(), {"//lookup/", TextAnswer("http://1.2.3.4:99/\r\n")});
  player->Connect2Server("relay.host/joe", "u", "p");
  Asked();
  Click(11);
  EXPECT_THAT(Asked(), ElementsAre("http://lookup/cgi-bin/relaypost.exe?op=rdxviewer&account=joe",
                                   "http://1.2.3.4:99/$openlogin/u/p/srv_vigilbox$activitylogfile"));
  texts.front().second = TextAnswer("", 500);
  Click(11);
  EXPECT_THAT(Asked(), ElementsAre("http://lookup/cgi-bin/relaypost.exe?op=rdxviewer&account=joe"));
  EXPECT_EQ(opened.size(), 2u);
}

// ---- Alerts, inputs and outputs -----------------------------------------------------------------------------------

TEST_F(ToolbarTest, InputsAndOutputsWithTheirStates) {
  texts = {
      {"$rdxviewer", TextAnswer("RDXVIEWER\r\nHWI:\tGate\t0\tx\r\nHWI:\tBell\t1\r\nHWO:\tLamp\t0\r\nHWO:\tFan\t00\r\n"
                                "HWO:\tHorn\r\nHWO:\r\nhwo:\tno\t1\r\nHWO\tno\t1\r\n\r\nHWO:\tbehind\t1\r\n")}};
  auto& window = player->AlertsWin;
  on_open = [&] {
    EXPECT_THAT(window.AlertList.List(), ElementsAre("Gate [OFF]", "Bell [ON]"));
    EXPECT_THAT(window.OutList.List(), ElementsAre("Lamp [OFF]", "Fan [ON]", "Horn [ON]"));
    EXPECT_EQ(window.BoxLabel[0].Caption.Get(), "Inputs:");
    EXPECT_EQ(window.BoxLabel[1].Caption.Get(), "Outputs:");
    EXPECT_FALSE(window.Activate.Visible);
    EXPECT_TRUE(window.OutToogle.Visible);
    EXPECT_TRUE(window.OutToogleOff.Visible);
    EXPECT_EQ(window.Width, 7125);
    window.OutList.Choose(2);
    window.OutToogle.OnClick();
  };
  Click(14);
  EXPECT_THAT(opened, ElementsAre("AlertsWin I/O Control"));
  EXPECT_THAT(Asked(), ElementsAre("http://srv:81/secure/srv_vigilbox$rdxviewer",
                                   "http://srv:81/$openlogin/u/secret/srv_vigilbox$output=3+1"));
  on_open = [&] {
    window.OutList.Choose(2);
    window.OutToogleOff.OnClick();
    EXPECT_FALSE(window.IsOpen());
  };
  Click(14);
  EXPECT_EQ(Asked().back(), "http://srv:81/$openlogin/u/secret/srv_vigilbox$output=3+0");
  on_open = [&] { window.OutToogleOff.OnClick(); };
  Click(14);
  EXPECT_EQ(Asked().back(), "http://srv:81/$openlogin/u/secret/srv_vigilbox$output=0+0");
}

TEST_F(ToolbarTest, AnAlertIsActivatedByItsPlace) {
  texts = {{"$rdxviewer", TextAnswer("RDXVIEWER\r\nALT:1\tFire\r\nALT:no name\r\nALT:2\tFlood\tx\r\n\r\n")}};
  auto& window = player->AlertsWin;
  on_open = [&] {
    EXPECT_THAT(window.AlertList.List(), ElementsAre("Fire", "Flood"));
    EXPECT_EQ(window.AlertList.ListIndex(), 0);
    EXPECT_EQ(window.BoxLabel[0].Caption.Get(), "Alerts:");
    EXPECT_TRUE(window.Activate.Visible);
    EXPECT_FALSE(window.OutToogle.Visible);
    EXPECT_EQ(window.Width, 3600);
    window.Activate.OnClick();
  };
  Click(15);
  EXPECT_THAT(opened, ElementsAre("AlertsWin Alerts"));
  EXPECT_THAT(Asked(), ElementsAre("http://srv:81/secure/srv_vigilbox$rdxviewer",
                                   "http://srv:81/$openlogin/u/secret/srv_vigilbox$activatealert=1"));
  // A closed window is as new, its button enabled; an empty list activates alert 0.
  EXPECT_TRUE(window.Activate.Enabled);
  EXPECT_THAT(window.AlertList.List(), IsEmpty());
  texts = {{"$rdxviewer", TextAnswer("", 401)}};
  on_open = [&] { window.Activate.OnClick(); };
  Click(15);
  EXPECT_EQ(Asked().back(), "http://srv:81/$openlogin/u/secret/srv_vigilbox$activatealert=0");
}

// ---- Clips --------------------------------------------------------------------------------------------------------

TEST_F(ToolbarTest, AClipTakesAPictureASecondUntilItIsStopped) {
  world.dialogs.names = {"/tmp/no such folder/clip.avi", "/tmp/no such folder/clip.avi"};
  world.dialogs.compressions = {std::nullopt, Dialogs::Compression{"Uncompressed"}};
  // The viewer tells its rates from half a kilobyte a second on.
  auto large = PictureAnswer();
  large.body.resize(2000);
  texts.emplace_back("http://cam/", large);
  Choose(player->FrameRate, 4);
  Click(9);
  EXPECT_TRUE(player->Player[9].Visible);
  world.avi_files.log.clear();
  Click(9);
  EXPECT_FALSE(player->Player[9].Visible);
  EXPECT_TRUE(player->Player[8].Visible);
  EXPECT_EQ(player->Conv.Width, 640 * 15);
  world.queue.Advance(std::chrono::milliseconds(2500));
  // Not repeated by another picture quality.
  Choose(player->Resolution, 2);
  EXPECT_TRUE(player->Player[8].Visible);
  Click(8);
  EXPECT_THAT(world.avi_files.log,
              ElementsAre("create /tmp/no such folder/clip.avi", "stream 5/1 640x480 921600",
                          "compress Uncompressed 0 0", "format 40", "write 1 640x480", "write 2 640x480", "release"));
  EXPECT_EQ(world.dialogs.log.back(), "tell Done\r\nTotal frames: 3 | AVI Maker");
  EXPECT_TRUE(player->Player[9].Visible);
  EXPECT_FALSE(player->Player[8].Visible);
}

TEST_F(ToolbarTest, AReleasedPlayerFinishesItsClip) {
  world.dialogs.names = {"/tmp/no such folder/clip.avi"};
  world.dialogs.compressions = {Dialogs::Compression{"Uncompressed"}};
  Click(9);
  player.reset();
  EXPECT_EQ(world.avi_files.log.back(), "release");
  EXPECT_EQ(world.dialogs.log.back(), "compression");
}

// ---- Several cameras and full screen ------------------------------------------------------------------------------

TEST_F(ToolbarTest, ChosenCamerasAreShownTogetherUntilOneIsChosen) {
  const std::string both = "http://cam/1/u:secret\r\nhttp://cam/3/u:secret\r\n";
  auto& window = player->MultiCams;
  const auto choose = [&] {
    EXPECT_THAT(window.Cameras.List(), ElementsAre("Door", "Yard", "Roof"));
    EXPECT_FALSE(window.Cameras.Selected(0));
    EXPECT_EQ(player->CamList.ListIndex(), -1);
    window.Cameras.Selected(2, true);
    window.Cameras.Selected(0, true);
    window.Go.OnClick();
  };
  on_open = choose;
  Click(17);
  EXPECT_EQ(window.SelectionResult, both);
  EXPECT_TRUE(player->VS->MultiCam.Enabled);

  std::string tag;
  on_open = [&] { tag = player->XFullScreen.Tag; };
  Click(16);
  EXPECT_EQ(tag, "*" + both);
  Choose(player->CamList, 1);
  EXPECT_FALSE(player->VS->MultiCam.Enabled);
  Click(16);
  EXPECT_EQ(tag, "http://cam/2/u:secret" + std::string(kLive));

  // Leaving without a choice keeps the picture; no selection is left of the last time.
  on_open = [&] { window.Cameras.Selected(1, true); };
  Click(17);
  EXPECT_EQ(window.SelectionResult, "");
  on_open = [&] { window.Go.OnClick(); };
  Click(17);
  on_open = [&] {
    window.Cameras.Selected(1, true);
    window.Bye.OnClick();
  };
  Click(17);
  EXPECT_FALSE(player->VS->MultiCam.Enabled);
  EXPECT_EQ(player->VS->URL(), "http://cam/2/u:secret" + std::string(kLive));
}

TEST_F(ToolbarTest, FullScreenStartsAtEachSizeAndEndsWithAnyButton) {
  Choose(player->FrameRate, 7);
  const std::string live = "http://cam/1/u:secret" + std::string(kLive);
  auto& window = player->XFullScreen;
  for (const std::int16_t button : {kLeftButton, kRightButton, kMiddleButton}) {
    on_open = [&] {
      EXPECT_EQ(player->MousePointer, UserControl1::kDefaultPointer);
      EXPECT_FALSE(player->PlayerControls.Visible);
      EXPECT_EQ(window.Tag.Get(), live);
      ASSERT_TRUE(window.vs);
      EXPECT_EQ(window.vs->FrameRate(), 7);
      EXPECT_TRUE(window.vs->AlwaysSmooth());
      EXPECT_TRUE(window.vs->ShowBandwidth());
      world.http.log.clear();
      for (const float width : {28800.0f, 19200.0f}) {
        window.Width = width;
        window.Height = 16200;
        world.loop.RunToEnd([&] { window.OnResize(); });
        EXPECT_EQ(window.vs->Width(), width);
        EXPECT_THAT(Asked(), ElementsAre(live, live));
      }
      // Over the picture only the left button counts; the test card takes them all.
      const std::weak_ptr<VideoServerPush> viewer = window.vs;
      (button == kLeftButton ? window.vs->VideoStream.OnMouseDown : window.vs->Mira.OnMouseDown)(button);
      EXPECT_FALSE(window.IsOpen());
      EXPECT_TRUE(viewer.expired());
    };
    player->PlayerControls.Visible = true;
    Click(16);
    EXPECT_TRUE(player->PlayerControls.Visible);
  }
  EXPECT_EQ(opened.size(), 3u);
  EXPECT_EQ(player->VS->lStatus.Caption.Get(), "Stopped");

  // Nothing to show is shown as nothing.
  player->VS->Disconnect();
  on_open = [&] {
    EXPECT_EQ(window.Tag.Get(), "");
    window.Width = 100;
    world.http.log.clear();
    world.loop.RunToEnd([&] { window.OnResize(); });
    EXPECT_THAT(Asked(), IsEmpty());
    window.Tag = "*";
    world.loop.RunToEnd([&] { window.OnResize(); });
    EXPECT_FALSE(window.vs->MultiCam.Enabled);
  };
  Click(16);
}

// ---- Secrets ------------------------------------------------------------------------------------------------------

TEST_F(ToolbarTest, NothingThatIsReadHoldsThePassword) {
  std::string read;
  const auto note = [&](const std::string& text) { read += text + "\n"; };
  player->VS->lStatus.Caption.Changed.Listen(note);
  player->VS->Events.Status.Listen([&](std::string& text) { note(text); });
  const auto note_all = [&](const std::vector<NamedChild>& children) {
    for (const NamedChild& child : children) {
      if (const auto* label = std::get_if<Label*>(&child.control)) note((*label)->Caption);
      if (const auto* button = std::get_if<Button*>(&child.control)) note((*button)->Caption.Get());
      if (const auto* box = std::get_if<TextBox*>(&child.control)) note((*box)->Text);
    }
  };
  on_open = [&] {
    for (const NamedChild& window : player->Windows()) {
      note(std::get<Window*>(window.control)->Caption);
      note_all(std::get<Window*>(window.control)->Children());
    }
  };
  for (const int status : {200, 401, 500}) {
    texts = {{"", TextAnswer("x", status)}};
    for (std::size_t tool = 0; tool < player->Player.size(); ++tool) Click(tool);
    note_all(player->Children());
  }
  for (const std::string& line : world.dialogs.log) note(line);
  EXPECT_THAT(read, testing::Not(testing::HasSubstr("secret")));
  EXPECT_THAT(read, testing::HasSubstr("Activity Log"));
}

}  // namespace
}  // namespace orbelcast
