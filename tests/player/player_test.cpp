// How a player starts, what its host keeps for it, its camera list and its layout.

#include "platform/version.h"
#include "player_fixture.h"

namespace orbelcast {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PlayerTest : public PlayerWorld {};

TEST_F(PlayerTest, StartsManualAtThreeTwentyByTwoForty) {
  player = UserControl1::Create(world.platform);
  EXPECT_EQ(player->Label1.Caption.Get(), "Version 1.0.0 - " + std::string(kLegalNotice));
  EXPECT_EQ(player->FrameRate.ListCount(), 26);
  EXPECT_EQ(player->FrameRate.List().front(), "Manual");
  EXPECT_EQ(player->FrameRate.List().back(), "25 FPS");
  EXPECT_EQ(player->FrameRate.ListIndex(), 0);
  EXPECT_EQ(player->Resolution.List()[15], "320x240 (80% compression)");
  EXPECT_EQ(player->Resolution.ListIndex(), 15);
  // "Manual" is not stored, and stops the stream.
  EXPECT_EQ(Stored("FPS"), "nothing");
  EXPECT_EQ(Stored("Resolution"), "15");
  EXPECT_EQ(player->VS->lStatus.Caption.Get(), "Stopped");
  EXPECT_TRUE(player->VS->DisableTestScreen());
  EXPECT_EQ(world.http.sent, 0);
  EXPECT_FALSE(player->CamList.Visible);
  EXPECT_FALSE(player->Player[8].Visible);
  EXPECT_FALSE(player->Player[1].Enabled);
  EXPECT_TRUE(player->Player[2].Enabled);
  EXPECT_EQ(player->SystemName(), "");
}

TEST_F(PlayerTest, ShowsTheStoredChoices) {
  Store("FPS", "12");
  Store("Resolution", "27");
  player = UserControl1::Create(world.platform);
  EXPECT_EQ(player->FrameRate.ListIndex(), 12);
  EXPECT_EQ(player->VS->FrameRate(), 12);
  EXPECT_EQ(player->Resolution.ListIndex(), 27);
  EXPECT_EQ(player->VS->lStatus.Caption.Get(), "");  // Nothing stopped it.
  // No picture was chosen before, so that of 640 × 480 has none to keep.
  player->RefreshURLs("http://cam/1", "http://archive");
  EXPECT_EQ(Asked().front(), "http://cam/1");
}

TEST_F(PlayerTest, StoredNonsenseIsLivedWith) {
  for (const char* nonsense : {"999", "-4", "26", "99999999999999999999", "1e400"}) {
    Store("FPS", nonsense);
    Store("Resolution", nonsense);
    player = UserControl1::Create(world.platform);
    EXPECT_EQ(player->FrameRate.ListIndex(), -1) << nonsense;
    EXPECT_EQ(Stored("FPS"), nonsense);
    player->RefreshURLs("http://cam/1", "http://archive");
    Click(3);
    EXPECT_EQ(Asked().back(), "http://archive&Day=0&Month=0&Year=0&Hour=0&Minute=0&Second=0&F=0&Quality=");
    player->VS->Disconnect();
  }
  Store("FPS", "abc");
  Store("Resolution", " 7 apples");
  player = UserControl1::Create(world.platform);
  EXPECT_EQ(player->FrameRate.ListIndex(), 0);
  EXPECT_EQ(player->Resolution.ListIndex(), 7);
}

/// Keeps nothing and knows nothing.
class BrokenRegistry final : public Registry {
 public:
  bool SetValue(Hive, const std::string&, const std::string&, const std::string&) override { return false; }
  std::optional<std::vector<Value>> Values(Hive, const std::string&) const override { return std::nullopt; }
};

// No server, no list, no registry, no keys that make sense: every control is there and every button may be pressed.
TEST_F(PlayerTest, EverythingWrongAtOnce) {
  BrokenRegistry registry;
  Platform broken{.loop = world.loop,
                  .clock = world.clock,
                  .screen = world.screen,
                  .text_mapper = world.text_mapper,
                  .files = world.files,
                  .http = world.http,
                  .jpeg_decoder = world.jpeg_decoder,
                  .pictures = world.pictures,
                  .clipboard = world.clipboard,
                  .device_contexts = world.device_contexts,
                  .registry = registry,
                  .dialogs = world.dialogs,
                  .avi_files = world.avi_files,
                  .configuration = world.configuration};
  world.files.module_folder = "/nowhere/at/all/";
  for (const fakes::Answer& answer :
       {fakes::Answer{.headers = {}, .body = {}, .fails = true}, TextAnswer("who are you", 401), TextAnswer(""),
        TextAnswer("RDXVIEWER\r\nCAM:\r\nCAM:no tabs\r\nALT:\r\nHWO:\r\nHWI:\r\nHWO:\tname\r\n\t\t\r\n\r\n")}) {
    texts = {{"", answer}};
    player = UserControl1::Create(broken);
    Load({{"Server", "no.such"}, {"Start", "Yes"}, {"Device", "x"}, {"_Resize", "Yes"}, {"Port", "\x01"}});
    EXPECT_EQ(player->SystemName(), "no.such");
    player->ShowExtendedFeatures(true);
    Choose(player->CamList, 0);
    Choose(player->FrameRate, 25);
    Choose(player->Resolution, 29);
    for (std::size_t tool = 0; tool < player->Player.size(); ++tool) Click(tool);
    player->RefreshURLs("", "");
    player->Resize(9000, 9000);
    EXPECT_TRUE(player->PlayerControls.Visible);
    EXPECT_EQ(player->VS->URL(), "");
  }
}

TEST_F(PlayerTest, AServersPropertiesLoadItsCameras) {
  Create();
  Load({{"Server", "srv"}, {"Port", "81"}, {"Username", "u"}, {"Password", "secret"}, {"LURL", "http://not"}});
  EXPECT_EQ(Asked(), (std::vector<std::string>{"http://srv:81/secure/srv_vigilbox$rdxviewer"}));
  EXPECT_TRUE(player->CamList.Visible);
  EXPECT_THAT(player->CamList.List(), ElementsAre("Door", "Yard", "Roof"));
  EXPECT_EQ(player->CamList.ListIndex(), -1);
  EXPECT_EQ(player->SystemName(), "House");
  Click(5);  // "LURL" is none of a server's.
  EXPECT_THAT(Asked(), IsEmpty());
}

// The colon of a missing port is there in the one address and not in the other.
TEST_F(PlayerTest, AServerWithoutAPort) {
  Create();
  Load({{"Server", "srv"}, {"Device", "d1"}});
  EXPECT_THAT(Asked(), testing::Contains("http://srv:/secure/srv_vigilbox$rdxviewer"));
  Click(4);
  EXPECT_EQ(Asked().back(),
            "http://srv/$openlogin///srv_vigilbox$img?Device=d1&Day=0&Month=0&Year=0&Hour=0&Minute=0&Second=0&B=0"
            "&Quality=" +
                std::string(kLive));

  LoadServer();
  player->Connect2Server("other:82", "me", "");
  EXPECT_EQ(Asked(), (std::vector<std::string>{"http://other:82/secure/srv_vigilbox$rdxviewer"}));
  player->ShowExtendedFeatures(true);
  Click(15);  // The port that was read is forgotten.
  EXPECT_EQ(Asked(), (std::vector<std::string>{"http://other:82/secure/srv_vigilbox$rdxviewer"}));
  player->Connect2Server("", "", "");
  EXPECT_THAT(Asked(), IsEmpty());
  EXPECT_EQ(player->SystemName(), "House");
}

TEST_F(PlayerTest, ADeviceIsFoundInAnyLetterCaseAndShownTwice) {
  Create();
  LoadServer({{"Device", "d2"}});
  EXPECT_EQ(player->CamList.ListIndex(), 1);
  EXPECT_EQ(player->VS->URL(), "http://cam/2/u:secret" + std::string(kLive));

  Create();
  Load({{"Server", "srv"}, {"Device", "D3"}, {"Username", "a b"}, {"Password", "p/%20?é"}});
  const std::string live = "http://cam/3/a b:p/%20?é" + std::string(kLive);
  const auto asked = Asked();
  // The choice by code runs the handling, and it is run once more: each connects, with a first request and a tick.
  EXPECT_EQ(asked, (std::vector<std::string>{"http://srv:/secure/srv_vigilbox$rdxviewer", live, live, live, live}));

  Create();
  LoadServer({{"Device", "d"}});
  EXPECT_EQ(player->CamList.ListIndex(), -1);
  EXPECT_EQ(player->VS->URL(), "");
}

TEST_F(PlayerTest, WithoutAServerTheAddressesAreTakenAndStarted) {
  Create();
  Load({{"LURL", "http://cam/x"}, {"IURL", "http://srv/img?Device=9"}, {"Start", "Yes"}});
  EXPECT_FALSE(player->CamList.Visible);
  EXPECT_EQ(Asked().front(), "http://cam/x" + std::string(kLive));
  Click(0);
  EXPECT_EQ(Asked().back(),
            "http://srv/img?Device=9&Day=0&Month=0&Year=0&Hour=0&Minute=0&Second=0&T=0&Quality=" + std::string(kLive));
  Create();
  Load({{"LURL", "http://cam/x"}, {"Start", "yes"}});
  EXPECT_THAT(Asked(), IsEmpty());
}

// Device and live base go by lines, the names by items: a line without a name shifts what follows it.
TEST_F(PlayerTest, LinesWithoutFieldsShiftWhatFollows) {
  texts = {{"$rdxviewer", TextAnswer("RDXVIEWER\r\nCAM:only\r\nCAM:d1\tDoor\r\nCAM:d2\tYard\thttp://cam/2\r\n\r\n")}};
  Create();
  LoadServer();
  EXPECT_THAT(player->CamList.List(), ElementsAre("Door", "Yard"));
  Choose(player->CamList, 0);  // "Door" plays the line without a base: an address that the viewer ignores.
  EXPECT_THAT(Asked(), IsEmpty());
  Choose(player->CamList, 1);
  EXPECT_THAT(Asked(), IsEmpty());
  Click(0);
  EXPECT_THAT(Asked().back(), testing::HasSubstr("?Device=d1&Day="));
}

TEST_F(PlayerTest, AListLoadedAgainForgetsTheOneBefore) {
  Create();
  LoadServer({{"Device", "d2"}});
  texts = {{"$rdxviewer", TextAnswer("no", 401)}};
  player->Connect2Server("srv", "u", "wrong");
  EXPECT_THAT(player->CamList.List(), IsEmpty());
  EXPECT_EQ(player->CamList.ListIndex(), -1);
  EXPECT_EQ(player->SystemName(), "srv");
}

// ---- Layout -------------------------------------------------------------------------------------------------------

TEST_F(PlayerTest, TheChildrenFollowTheSize) {
  Create();
  LoadServer();
  player->Resize(8000, 7001);
  EXPECT_EQ(player->VSPlace.Top, 315);
  EXPECT_EQ(player->VSPlace.Width, 8000);
  EXPECT_EQ(player->VSPlace.Height, 7001 - (1755 + 315));
  EXPECT_EQ(player->VS->Width(), 8000);
  EXPECT_EQ(player->VS->Height(), player->VSPlace.Height);
  EXPECT_EQ(player->PlayerControls.Top, 7001 - 1755 + 30);  // Two pixels below the edge.
  EXPECT_EQ(player->PlayerControls.Left, (8000.0f - 5235) / 2);
  EXPECT_EQ(player->CamList.Width, 8000);

  // Without room for the toolbar the viewer keeps its height.
  for (const auto& [width, height] : {std::pair(5235.0f, 9000.0f), std::pair(9000.0f, 5900.0f)}) {
    player->Resize(8000, 7001);
    player->Resize(width, height);
    EXPECT_FALSE(player->PlayerControls.Visible);
    EXPECT_EQ(player->VSPlace.Width, width);
    EXPECT_EQ(player->VSPlace.Height, 7001 - (1755 + 315));
  }
  player->Resize(5236, 5901);
  EXPECT_TRUE(player->PlayerControls.Visible);

  // A camera list of a height between two twips counts as the nearer one, the even one of two as near.
  player->CamList.Height = 316.5f;
  player->Show();
  EXPECT_EQ(player->VSPlace.Top, 316);
}

TEST_F(PlayerTest, AHostThatKeptItsExtentsHasTheDesignsPlaces) {
  Create();
  Load({{"_ExtentX", "100"}, {"_ExtentY", "100"}, {"ExtendedControls", "Yes"}});
  player->Resize(9000, 9000);
  EXPECT_EQ(player->VSPlace.Top, 360);
  EXPECT_EQ(player->VS->Width(), 5220);
  EXPECT_EQ(player->PlayerControls.Top, 4080);
  EXPECT_TRUE(player->Player[17].Visible);
  player->ShowExtendedFeatures(false);
  for (const std::size_t extended : {11u, 12u, 13u, 14u, 15u, 17u}) EXPECT_FALSE(player->Player[extended].Visible);
  EXPECT_TRUE(player->Player[16].Visible);
  player->DoResize(true);
  EXPECT_EQ(player->VSPlace.Top, 360);  // from the next resize on
  player->Show();
  EXPECT_EQ(player->VSPlace.Top, 0);

  Load({{"_ExtentX", "100"}, {"_ExtentY", ""}});
  player->Resize(7000, 7000);
  EXPECT_EQ(player->VS->Width(), 7000);
  Load({{"_ExtentX", "100"}, {"_ExtentY", "100"}, {"_Resize", "Yes"}});
  player->Resize(7100, 7000);
  EXPECT_EQ(player->VS->Width(), 7100);
}

// ---- The lists ----------------------------------------------------------------------------------------------------

TEST_F(PlayerTest, FrameRatesAreStoredButManual) {
  Create();
  LoadServer({{"Device", "d1"}});
  Choose(player->FrameRate, 25);
  EXPECT_EQ(player->VS->FrameRate(), 25);
  EXPECT_EQ(Stored("FPS"), "25");
  Choose(player->FrameRate, 0);
  EXPECT_EQ(Stored("FPS"), "25");
  EXPECT_EQ(player->VS->lStatus.Caption.Get(), "Stopped");
}

TEST_F(PlayerTest, TheFiveLargestChoicesAskForNothingNew) {
  Create();
  LoadServer();
  Click(5);
  player->RefreshURLs("http://cam/1", "http://archive");
  Click(5);
  Asked();
  Choose(player->Resolution, 22);
  EXPECT_EQ(Asked().front(), "http://cam/1?live-special0640x0480060");
  Choose(player->Resolution, 27);
  EXPECT_EQ(Asked().front(), "http://cam/1?live-special0640x0480060");
  EXPECT_EQ(Stored("Resolution"), "27");
  Choose(player->Resolution, 0);
  EXPECT_EQ(Asked().front(), "http://cam/1?live-special0160x0120020");
  // What is not repeated: the information.
  Click(6);
  Asked();
  const bool shown = player->VS->ShowBandwidth();
  Choose(player->Resolution, 1);
  EXPECT_THAT(Asked(), IsEmpty());
  EXPECT_EQ(player->VS->ShowBandwidth(), shown);
}

}  // namespace
}  // namespace orbelcast
