#include "protocol/info_text.h"

#include <gtest/gtest.h>

#include <string>

#include "protocol/limits.h"

namespace orbelcast {
namespace {

ServerInfo Parse(const std::string& text, InfoMode mode = InfoMode::kCameras) {
  ServerInfo info;
  ParseInfoText(text, mode, info);
  return info;
}

TEST(InfoTextTest, EachModeCollectsItsOwnLinesAndEveryKeyFillsItsField) {
  const std::string lines =
      "RDXVIEWER\r\nADM:1\r\nSNM:name\r\nSVR:1.2\r\nSYN:sy\r\nCPU:c "
      "u\r\nRAM:1\t2\r\nAME:am\r\nCPN:cn\r\nCPS:snm:SNM\r\n"
      "AES:1x\r\nCST:1\r\nsnm:x\r\nSNM\r\n SNM:y\r\nAES:0\r\nCAM:D\tN\tX\r\nALT:1\tdoor\r\nCAM:\r\n\r\n";
  const std::string text = lines + "SNM:after the end\r\n";
  EXPECT_EQ(Parse(text).Lines, "D\tN\tX\r\n\r\n");
  EXPECT_EQ(Parse(text, InfoMode::kAllLines).Lines, lines);
  const ServerInfo info = Parse(text, InfoMode::kAlerts);
  EXPECT_EQ(info.Lines, "1\tdoor\r\n");
  EXPECT_EQ(info.SystemName + "|" + info.ServerVersion + "|" + info.SynValue + "|" + info.CpuValue + "|" +
                info.RamValue + "|" + info.AmeValue + "|" + info.CpnValue + "|" + info.CpsValue,
            "name|1.2|sy|c u|1\t2|am|cn|snm:SNM");
  EXPECT_TRUE(info.AesFlag && info.CstFlag && info.AdmFlag);  // a flag stays
  const ServerInfo others = Parse("SNM:1\r\nSNM:\r\nCST:\r\nADM:2");
  EXPECT_EQ(others.SystemName, "");
  EXPECT_FALSE(others.CstFlag || others.AdmFlag);
}

TEST(InfoTextTest, TheNumberIsTheLeadingOneRoundedToEven) {
  const std::pair<const char*, int> numbers[] = {{"2.5", 2},     {"3.5 minutes", 4}, {" -12.7", -13}, {"+1e2", 100},
                                                 {"32767.5", 7}, {"99999999999", 7}, {"1e999", 7},    {"- 5", 0}};
  for (const auto& [text, number] : numbers) {
    EXPECT_EQ(Parse("UPS:7\r\nUPS:" + std::string(text) + "\r\n").UpsValue, number) << text;
  }
}

// Beyond the bounds whole lines are read, and what ends the information hides what follows it.
TEST(InfoTextTest, LongTextsLongLinesAndZerosLoseNothingUpToTheBounds) {
  std::string many;
  for (std::size_t i = 0; i < protocol_limits::kMaxInfoLines; ++i) many += "CAM:\r\n";
  EXPECT_EQ(Parse(many + "SNM:x").UnreadBytes, 5u);
  const std::string with_zeros = std::string("a\0b\rc\nd", 7) + std::string(1'000'000, 'x') + std::string(1, '\0');
  EXPECT_EQ(Parse("CAM:" + with_zeros).Lines, with_zeros + "\r\n");
  const std::string beyond(protocol_limits::kMaxInfoBytes, 'x');
  const ServerInfo cut = Parse("CAM:1\r\nCAM:" + beyond);
  EXPECT_EQ(cut.Lines, "1\r\n");
  EXPECT_EQ(cut.UnreadBytes, 2 + 4 + beyond.size());
  EXPECT_EQ(Parse("CAM:1\r\n\r\n" + beyond).UnreadBytes, 0u);
}

}  // namespace
}  // namespace orbelcast
