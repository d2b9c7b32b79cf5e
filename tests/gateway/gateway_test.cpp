#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "fakes/fake_platform.h"
#include "gateway/allowed_servers.h"
#include "gateway/page_session.h"
#include "remote/drawing_journal.h"
#include "viewer/design.h"
#include "viewer/pictures.h"

namespace orbelcast {

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

FrameBytes Jpeg(std::uint8_t red) {
  return FrameBytes(FrameBytes::Storage{red, 0, 0, 4, 3});
}

/// The first byte of each JPEG taken, −1 for a fill, −2 for pixels.
std::vector<int> Taken(DrawingJournal& journal) {
  std::vector<int> taken;
  for (const Drawing& each : journal.Take()) {
    const auto* jpeg = std::get_if<FrameBytes>(&each.what);
    taken.push_back(jpeg != nullptr ? jpeg->Bytes()[0] : std::holds_alternative<Color>(each.what) ? -1 : -2);
  }
  return taken;
}

TEST(DrawingJournal, KeepsWhatIsStillSeenAndTheNewestOfIt) {
  Surface surface(100, 100);
  fakes::FakePictures codec;
  int news = 0;
  const auto journal =
      std::make_shared<DrawingJournal>([&]() -> const Surface& { return surface; }, codec, [&] { ++news; });
  surface.Watch(journal);
  surface.TellPicture(Jpeg(1), 0, 0, 50, 100);
  surface.TellPicture(Jpeg(2), 50, 0, 50, 100);
  surface.FillBox(10, 10, 12, 12, 0);
  surface.TellPicture(Jpeg(3), 0, 0, 50, 100);
  EXPECT_EQ(news, 4);
  EXPECT_THAT(Taken(*journal), ElementsAre(2, 3));

  // Two pictures are on the way: what comes waits, and is replaced, until one was painted.
  surface.TellPicture(Jpeg(4), 0, 0, 100, 100);
  surface.TellPicture(Jpeg(5), 0, 0, 100, 100);
  EXPECT_EQ(news, 4);
  EXPECT_THAT(Taken(*journal), IsEmpty());
  journal->Painted();
  EXPECT_EQ(news, 5);
  EXPECT_THAT(Taken(*journal), ElementsAre(5));

  // A front end that did not see it gets what there is when it does.
  journal->SetSeen(false);
  surface.FillBox(1, 1, 2, 2, 0);
  EXPECT_THAT(Taken(*journal), IsEmpty());
  journal->SetSeen(true);
  EXPECT_THAT(Taken(*journal), ElementsAre(5, -1));

  // A flood of small drawings becomes one.
  for (int i = 0; i < 2 * static_cast<int>(DrawingJournal::kMaxKept); ++i)
    surface.FillBox(i % 90, i / 90, i % 90, i / 90, i);
  EXPECT_THAT(Taken(*journal), ElementsAre(-2));
}

TEST(DrawingJournal, PassesOnAPictureThatNobodyHasSeenAsTheFileThatItIs) {
  fakes::FakePictures codec;  // its files are empty
  const auto card = MakeTestCard(codec);
  DrawingJournal journal([&]() -> const Surface& { return *card; }, codec, [] {});
  journal.TakeAnew();
  const auto taken = journal.Take();
  ASSERT_EQ(taken.size(), 1u);
  EXPECT_TRUE(std::ranges::equal(std::get<Drawing::Png>(taken[0].what), resources::test_card_png));
  EXPECT_EQ(card->Memory(), nullptr);
}

TEST(AllowedServers, AreThoseThatWereNamed) {
  AllowedServers servers;
  for (const char* const named : {"Camera", "10.0.0.1:8080", "[::1]:81", "any:*"})
    EXPECT_TRUE(servers.Add(named)) << named;
  for (const auto& [host, port] : std::vector<std::pair<std::string, int>>{
           {"camera", 80}, {"camera", 443}, {"10.0.0.1", 8080}, {"::1", 81}, {"any", 1}}) {
    EXPECT_TRUE(servers.Allow(host, port)) << host << port;
  }
  for (const auto& [host, port] : std::vector<std::pair<std::string, int>>{
           {"camera", 8080}, {"10.0.0.1", 80}, {"::1", 80}, {"camera.evil", 80}, {"", 0}}) {
    EXPECT_FALSE(servers.Allow(host, port)) << host << port;
  }
  for (const char* const wrong : {"", ":80", "a:", "a:0", "a:65536", "a:b", "http://a", "a/b", "[::1", "::1", "a b"}) {
    EXPECT_FALSE(servers.Add(wrong)) << wrong;
  }
}

TEST(NamedServers, HideTheirAddressesAndLogins) {
  NamedServers servers;
  EXPECT_FALSE(servers.Add("Yard", "http://ann:p@ss/1@10.0.0.5:8080"));
  EXPECT_FALSE(servers.Add("gate", "https://camera"));
  EXPECT_FALSE(servers.Add("own", "http://x:y@[fd00::1]:81/"));
  for (const auto& [name, address] : std::vector<std::pair<std::string, std::string>>{{"yard", "http://a"},
                                                                                      {"a.b", "http://a"},
                                                                                      {"", "http://a"},
                                                                                      {"a", "ftp://a"},
                                                                                      {"b", "http://a:*"},
                                                                                      {"c", "http://"}}) {
    EXPECT_TRUE(servers.Add(name, address)) << name << address;
  }
  for (const char* const named : {"http://yard", "HTTP://Yard:1/x", "http://gate?x", "http://own/"}) {
    EXPECT_NE(servers.Find(named), nullptr) << named;
  }
  for (const char* const other :
       {"http://yard.a/", "http://yard@a/", "http://a@yard/", "https://yard/", "yard", "http://yard:x/"}) {
    EXPECT_EQ(servers.Find(other), nullptr) << other;
  }
  EXPECT_TRUE(servers.Allow("10.0.0.5", 8080) && servers.Allow("camera", 443) && servers.Allow("fd00::1", 81));
  EXPECT_FALSE(servers.Allow("10.0.0.5", 80) || servers.Allow("camera", 80));
  for (const auto& [told, shown] : std::vector<std::pair<std::string, std::string>>{
           {"http://10.0.0.5:8080/live/1 10.0.0.5:8080. 10.0.0.5.", "http://yard/live/1 yard. yard."},
           {"10.0.0.50 110.0.0.5 10.0.0.5:80", "10.0.0.50 110.0.0.5 yard:80"},
           {"ann:p@ss/1 /ann/p@ss/1/ p%40ss%2F1 YW5uOnBAc3MvMQ==", "***:*** /***/***/ *** ***"},
           {"a camera: http://camera/1 //camera2", "a camera: http://gate/1 //camera2"},
           {"x:y [fd00::1]:81 [fd00::1]", "***:*** own own"}}) {
    EXPECT_EQ(servers.Hide(told), shown);
  }
}

/// Notes what is sent.
class NotingPage final : public Page {
 public:
  void SendText(std::string line) override { lines.push_back(std::move(line)); }
  void SendBytes(std::string line, FrameBytes /*bytes*/) override { lines.push_back(std::move(line)); }
  bool IsIdle() const override { return true; }
  void Close(const std::string& why) override { lines.push_back(why); }

  std::string Last() {
    std::string last = lines.empty() ? "" : lines.back();
    lines.clear();
    return last;
  }
  std::vector<std::string> lines;
};

TEST(PageSession, HasAPagesLinesAloneAndEndsCleanlyWhateverWaits) {
  fakes::FakePlatform fakes;
  const auto page = std::make_shared<NotingPage>();
  auto session = PageSession::Create(fakes.platform, std::make_shared<NamedServers>(), page);
  const std::weak_ptr<PageSession> alive = session;
  for (const char* const wrong :
       {"run 1000", "surface s 60000 1000", "picture c . /tmp/x", "on Connected \"run 1\"", "nonsense"}) {
    page->lines.clear();
    session->TakeLine(wrong);
    fakes.queue.HandleDue();
    ASSERT_FALSE(page->lines.empty());
    EXPECT_THAT(page->lines.front(), HasSubstr("\"error\""));
  }
  session->TakeLine("create c UserControl1");
  session->TakeLine("show c");
  // Lines that are told in one go are one message.
  page->lines.clear();
  fakes.queue.HandleDue();
  ASSERT_FALSE(page->lines.empty());
  EXPECT_THAT(page->lines.front(), HasSubstr("}\n{\"show\":\"c.VS.VideoStream\""));
  session->TakeLine("load c Server=cam Username=ann");
  // A question waits for its answer, and a connection for its server, when the page goes.
  session->TakeLine("click c Player(13)");
  session->TakeLine("call c.VS Connect http://cam/live/1");
  session->TakeLine("call c AviStart");
  session->TellGone();
  session.reset();
  for (int round = 0; round < 64 && !alive.expired(); ++round) fakes.queue.HandleDue();
  EXPECT_TRUE(alive.expired());
}

TEST(PageSession, AsksACameraForNobodyWhileItsPageIsAway) {
  using std::chrono::seconds;
  fakes::FakePlatform fakes;
  fakes.http.answers.front().body = {1, 0, 0, 4, 3};
  const auto asked_in = [&](seconds time) {
    const int before = fakes.http.sent;
    fakes.queue.Advance(time);
    return fakes.http.sent - before;
  };
  const auto session =
      PageSession::Create(fakes.platform, std::make_shared<NamedServers>(), std::make_shared<NotingPage>());
  for (const char* const line : {"create c VideoServerPush", "show c", "place c 9600 7200", "set c FrameRate 10",
                                 "call c Connect http://cam/live/1"}) {
    session->TakeLine(line);
  }
  EXPECT_NEAR(asked_in(seconds(PageSession::kMaxAwaitedSeconds)), 50, 2);
  asked_in(seconds(1));
  EXPECT_EQ(asked_in(seconds(30)), 0);
  session->TakeLine("painted c.VideoStream");
  EXPECT_GE(asked_in(seconds(0)), 1);
  // A page that paints nothing because nobody looks is told events all the time.
  session->TakeLine("unseen c");
  EXPECT_NEAR(asked_in(seconds(30)), 300, 3);
}

}  // namespace

}  // namespace orbelcast
