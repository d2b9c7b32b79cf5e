#include "player/texts.h"

#include <gmock/gmock.h>

#include "player/limits.h"
#include "player/registry_text.h"

namespace orbelcast {
namespace {

using namespace std::string_literals;

TEST(PlayerTextsTest, MessagesAreDecodedByCharactersNotBytes) {
  EXPECT_EQ(UrlDecode("a+b%21%2B%25&c"), "a b!+%&c");
  EXPECT_EQ(UrlDecode("%4a%4A%c3%A9é"), "JJéé");
  EXPECT_EQ(UrlDecode("%%41"), "\0"s + "1");  // "%4" is no number
  EXPECT_EQ(UrlDecode("%zz%4g."), "\0\0."s);
  // Too little behind it to be a number, counted in letters.
  EXPECT_EQ(UrlDecode("100%"), "100%");
  EXPECT_EQ(UrlDecode("%a"), "%a");
  EXPECT_EQ(UrlDecode("%é"), "%é");
  EXPECT_EQ(UrlDecode("%0d%0aX: y"), "\r\nX: y");
  EXPECT_EQ(UrlDecode("\xff%\xff"), "\xff%\xff");
}

TEST(PlayerTextsTest, TheLogHasTabsAndHalfItsLineBreaks) {
  EXPECT_EQ(LogText("1,a,b\r\n\r\n2,c\r\n\r\n\r\n\r\n\r\n3\n\n"), "1\ta\tb\r\n2\tc\r\n\r\n\r\n3\n\n");
  EXPECT_EQ(LogText(""), "");
}

TEST(PlayerTextsTest, BoxesKeepTheirLeadingNumber) {
  EXPECT_EQ(ZeroPadded("7", 2), "07");
  EXPECT_EQ(ZeroPadded("24", 4), "0024");
  EXPECT_EQ(ZeroPadded("5x", 2), "05");
  EXPECT_EQ(ZeroPadded("13", 2), "13");
  EXPECT_EQ(ZeroPadded("--", 2), "00");
  EXPECT_EQ(ZeroPadded("----", 4), "0000");
  EXPECT_EQ(ZeroPadded("", 2), "00");
  EXPECT_EQ(ZeroPadded("-0", 2), "00");
  EXPECT_EQ(ZeroPadded("-3", 2), "-03");
  EXPECT_EQ(ZeroPadded("12345", 4), "12345");
  EXPECT_EQ(ZeroPadded("1e999", 4), "0000");
  EXPECT_EQ(ZeroPadded("9e307", 4).size(), 308u);
}

TEST(PlayerTextsTest, ListsOfAServerEndSomewhere) {
  std::string lines;
  for (int i = 0; i < 20000; ++i) lines += "d\tname\r\n";
  std::size_t count = 0;
  ForEachLine(lines, [&](std::size_t number, const auto&) { EXPECT_EQ(number, count++); });
  EXPECT_EQ(count, player_limits::kMaxListLines);
}

TEST(RegistryTextTest, ALookThroughAKeyEndsAtWhatItsBuffersDoNotHold) {
  Registry registry;
  const auto hive = Registry::Hive::kLocalMachine;
  EXPECT_EQ(RegReadString(registry, hive, "K", "a"), "");
  EXPECT_TRUE(RegWriteString(registry, hive, "K", "before", std::string(254, 'x')));
  RegWriteString(registry, hive, "K", "Before", "other");
  RegWriteString(registry, hive, "K", "long", std::string(255, 'x'));
  RegWriteString(registry, hive, "K", "behind", "y");
  EXPECT_EQ(RegReadString(registry, hive, "K", "before"), std::string(254, 'x'));
  EXPECT_EQ(RegReadString(registry, hive, "K", "Before"), "other");
  EXPECT_EQ(RegReadString(registry, hive, "K", "long"), "");
  EXPECT_EQ(RegReadString(registry, hive, "K", "behind"), "");

  RegWriteString(registry, hive, "N", std::string(255, 'n'), "1");
  RegWriteString(registry, hive, "N", "behind", "y");
  EXPECT_EQ(RegReadString(registry, hive, "N", std::string(255, 'n')), "");
  EXPECT_EQ(RegReadString(registry, hive, "N", "behind"), "");
}

}  // namespace
}  // namespace orbelcast
