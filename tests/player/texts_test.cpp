#include "player/texts.h"

#include <gmock/gmock.h>

#include "player/limits.h"
#include "player/registry_text.h"

namespace orbelcast {
namespace {

using namespace std::string_literals;

TEST(PlayerTextsTest, MessagesAreDecodedByCharactersNotBytes) {
  EXPECT_EQ(UrlDecode("a+b%21%2B%25&c%4a%4A%c3%A9é"), "a b!+%&cJJéé");
  EXPECT_EQ(UrlDecode("%%41%zz%4g."), "\0001\0\0."s);  // neither "%4", "zz" nor "4g" is a number
  // Too little behind it to be a number, counted in letters.
  for (const char* kept : {"100%", "%a", "%é", "\xff%\xff"}) EXPECT_EQ(UrlDecode(kept), kept);
}

TEST(PlayerTextsTest, BoxesKeepTheirLeadingNumber) {
  const std::pair<const char*, const char*> written[] = {{"-0", "00"}, {"-3", "-03"}, {"123", "123"}, {"1e999", "00"}};
  for (const auto& [typed, shown] : written) EXPECT_EQ(ZeroPadded(typed, 2), shown);
  EXPECT_EQ(ZeroPadded("9e307", 4).size(), 308u);
}

// Of a long one the newest lines, whole, from where the line breaks pair as they do in all of it; each long line cut.
TEST(PlayerTextsTest, ALogHasTabsHalfItsLineBreaksAndItsNewestLines) {
  EXPECT_EQ(LogText("1,a,b\r\n\r\n2,c\r\n\r\n\r\n\r\n\r\n3\n\n"), "1\ta\tb\r\n2\tc\r\n\r\n\r\n3\n\n");
  std::string log;
  for (int i = 0; i < 100'000; ++i) log += std::to_string(i) + ",Door opened\r\n\r\n";
  const std::string shown = LogText(log);
  EXPECT_LE(shown.size(), player_limits::kMaxLogBytes);
  EXPECT_TRUE(shown.starts_with("The newest "));
  EXPECT_TRUE(shown.ends_with("99998\tDoor opened\r\n99999\tDoor opened\r\n"));
  EXPECT_EQ(shown.find("\r\n\r\n"), std::string::npos);
  // By lines where they are short, and as it is up to there.
  const std::string all(player_limits::kMaxLogLines - 1, '\n');
  EXPECT_EQ(LogText(all), all);
  EXPECT_THAT(LogText("1\n2\n3\n" + all), testing::EndsWith("left out.\r\n" + all));

  const std::string longest(player_limits::kMaxLogLineBytes, 'x');
  EXPECT_EQ(LogText("x" + longest + "\r\n1,2\n"), longest + "…\r\n1\t2\n");
  EXPECT_EQ(LogText(longest.substr(1) + "é"), longest.substr(1) + "…");
  // One line of that size has only an end.
  EXPECT_THAT(LogText(std::string(3'000'000, 'x')), testing::EndsWith("out.\r\n" + longest + "…"));
}

TEST(RegistryTextTest, ALookThroughAKeyEndsAtWhatItsBuffersDoNotHold) {
  Registry registry;
  constexpr auto kHive = Registry::Hive::kLocalMachine;
  RegWriteString(registry, kHive, "K", "before", std::string(254, 'x'));
  RegWriteString(registry, kHive, "K", "long", std::string(255, 'x'));
  RegWriteString(registry, kHive, "K", "behind", "y");
  EXPECT_EQ(RegReadString(registry, kHive, "K", "before"), std::string(254, 'x'));
  for (const char* name : {"long", "behind"}) EXPECT_EQ(RegReadString(registry, kHive, "K", name), "");
  RegWriteString(registry, kHive, "N", std::string(255, 'n'), "1");
  RegWriteString(registry, kHive, "N", "behind", "y");
  EXPECT_EQ(RegReadString(registry, kHive, "N", "behind"), "");
}

}  // namespace
}  // namespace orbelcast
