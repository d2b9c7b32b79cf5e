#include "protocol/info_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "protocol/base64.h"
#include "protocol/limits.h"

namespace orbelcast {
namespace {

ServerInfo Parse(const std::string& text, InfoMode mode = InfoMode::kCameras) {
  ServerInfo info;
  ParseInfoText(text, mode, info);
  return info;
}

TEST(InfoTextTest, EachModeCollectsItsOwnLines) {
  const std::string text = "RDXVIEWER\r\nSNM:L\r\nCAM:D\tN\tX\r\nALT:1\tdoor\r\nCAM:\r\n\r\nSNM:after the end\r\n";
  EXPECT_EQ(Parse(text).Lines, "D\tN\tX\r\n\r\n");
  EXPECT_EQ(Parse(text).SystemName, "L");
  EXPECT_EQ(Parse(text, InfoMode::kAlerts).Lines, "1\tdoor\r\n");
  EXPECT_EQ(Parse(text, InfoMode::kAllLines).Lines, "RDXVIEWER\r\nSNM:L\r\nCAM:D\tN\tX\r\nALT:1\tdoor\r\nCAM:\r\n\r\n");
  const ServerInfo none = Parse(text, static_cast<InfoMode>(4));
  EXPECT_EQ(none.Lines + none.SystemName, "");
  EXPECT_EQ(Parse("", InfoMode::kAllLines).Lines, "");
}

TEST(InfoTextTest, EveryKeyFillsItsFieldInAnyOrder) {
  std::vector<std::string> lines = {"SNM:name", "SVR:1.2",     "SYN:sy",  "CPU:c u", "RAM:1\t2", "AME:am",
                                    "CPN:cn",   "CPS:snm:SNM", "UPS:87x", "AES:1x",  "CST:1",    "ADM:1"};
  std::sort(lines.begin(), lines.end());
  for (const InfoMode mode : {InfoMode::kCameras, InfoMode::kAlerts, InfoMode::kAllLines}) {
    for (int rotation = 0; rotation < 12; ++rotation) {
      std::rotate(lines.begin(), lines.begin() + 1, lines.end());
      std::string text;
      for (const std::string& line : lines) text += line + "\r\n";
      const ServerInfo info = Parse(text, mode);
      EXPECT_EQ(info.SystemName + "|" + info.ServerVersion + "|" + info.SynValue + "|" + info.CpuValue + "|" +
                    info.RamValue + "|" + info.AmeValue + "|" + info.CpnValue + "|" + info.CpsValue,
                "name|1.2|sy|c u|1\t2|am|cn|snm:SNM");
      EXPECT_EQ(info.UpsValue, 87);
      EXPECT_TRUE(info.AesFlag && info.CstFlag && info.AdmFlag);
    }
  }
}

TEST(InfoTextTest, LinesThatAreNoneOfIts) {
  const ServerInfo info = Parse("snm:x\r\nSNM\r\n SNM:y\r\nAES:0\r\nAES:1\r\nAES:0\r\nSNM:1\r\nSNM:\r\nCST:\r\nADM:2");
  EXPECT_EQ(info.SystemName, "");
  EXPECT_TRUE(info.AesFlag);
  EXPECT_FALSE(info.CstFlag || info.AdmFlag);
}

TEST(InfoTextTest, TheNumberIsTheLeadingOneRoundedToEven) {
  const auto ups = [](const std::string& value) { return Parse("UPS:7\r\nUPS:" + value + "\r\n").UpsValue; };
  EXPECT_EQ(ups("2.5"), 2);
  EXPECT_EQ(ups("3.5 minutes"), 4);
  EXPECT_EQ(ups(" -12.7"), -13);
  EXPECT_EQ(ups("+1e2"), 100);
  EXPECT_EQ(ups(".5x"), 0);
  for (const char* none : {"", "x1", "inf", "nan", "-", "+-5", "- 5", "."}) EXPECT_EQ(ups(none), 0) << none;
  for (const char* beyond : {"32767.5", "-32769", "99999999999", "1e999"}) EXPECT_EQ(ups(beyond), 7) << beyond;
  EXPECT_EQ(ups("-32768.4"), -32768);
}

TEST(InfoTextTest, LongTextsLongLinesAndZerosLoseNothingUpToTheBounds) {
  constexpr std::size_t kLines = protocol_limits::kMaxInfoLines;
  std::string many;
  for (std::size_t i = 0; i < kLines; ++i) many += "CAM:" + std::to_string(i) + "\tname\tbase\r\n";
  for (const auto& [more, unread] :
       {std::pair("", 0u), std::pair("\r\nno information", 2u + 14), std::pair("SNM:x", 5u)}) {
    const ServerInfo info = Parse(many + more);
    EXPECT_EQ(std::count(info.Lines.begin(), info.Lines.end(), '\n'), kLines);
    EXPECT_TRUE(info.Lines.ends_with("49999\tname\tbase\r\n"));
    EXPECT_EQ(info.UnreadBytes, unread);
  }
  const std::string with_zeros = std::string("a\0b\rc\nd", 7) + std::string(1'000'000, 'x') + std::string(1, '\0');
  const ServerInfo info = Parse("CAM:" + with_zeros + "\r\nSNM:" + with_zeros);  // without a last line end
  EXPECT_EQ(info.Lines, with_zeros + "\r\n");
  EXPECT_EQ(info.SystemName, with_zeros);
  EXPECT_EQ(info.UnreadBytes, 0u);
  // Beyond them whole lines are read, and what ends the information hides what follows it.
  const std::string beyond(protocol_limits::kMaxInfoBytes, 'x');
  const ServerInfo cut = Parse("CAM:1\r\nCAM:" + beyond);
  EXPECT_EQ(cut.Lines, "1\r\n");
  EXPECT_EQ(cut.UnreadBytes, 2 + 4 + beyond.size());
  EXPECT_EQ(Parse("CAM:1\r\n\r\n" + beyond).UnreadBytes, 0u);
  EXPECT_EQ(Parse("CAM:" + beyond).Lines.size(), protocol_limits::kMaxInfoBytes - 4 + 2);
}

TEST(Base64Test, EncodesAsEveryoneDoes) {
  const std::vector<std::pair<std::string, std::string>> known = {{"", ""},
                                                                  {"f", "Zg=="},
                                                                  {"fo", "Zm8="},
                                                                  {"foo", "Zm9v"},
                                                                  {"foob", "Zm9vYg=="},
                                                                  {"fooba", "Zm9vYmE="},
                                                                  {"foobar", "Zm9vYmFy"},
                                                                  {std::string("\0\xff\xfe>?", 5), "AP/+Pj8="}};
  for (const auto& [text, encoded] : known) EXPECT_EQ(EncodeBase64(text), encoded);
  EXPECT_EQ(ShiftLeft4(0xff), 0xf0);
}

}  // namespace
}  // namespace orbelcast
