#include "json/json.h"

#include <gtest/gtest.h>

#include <string>

namespace orbelcast {
namespace {

std::string Nested(std::size_t depth) {
  return std::string(depth, '[') + std::string(depth, ']');
}

TEST(JsonTest, IsPrintedInTheOrderInWhichItWasFilled) {
  Json line{{"z", 1}, {"a", std::uint64_t{1} << 63}, {"none", nullptr}};
  line["list"] = Json::Array({true, -2, "x\x7f\xff"});
  line.Update({{"z", 2}, {"half", NumberToJson(0.1F)}});
  EXPECT_EQ(ToLine(line), R"({"z":2,"a":9223372036854775808,"none":null,"list":[true,-2,"x\u007f)"
                          "\uFFFD"
                          R"("],"half":0.1})");
  EXPECT_FALSE(ToExactText(line));
  EXPECT_EQ(ToLine(NumberToJson(16777216)), "16777216");
}

TEST(JsonTest, ReadsWhatAnybodyWrote) {
  const Json expected{{"a", Json{{"b", Json::Array({1, -1, 2.5})}}}};
  EXPECT_EQ(ParseJson(R"( {"a": 1, "a": {"b": [1, -1, 25e-1]}} )"), expected);
  for (const char* text : {"", "{", "[1,]", "{\"a\"}", "\"\xff\"", "1e999", "[1] 2"})
    EXPECT_FALSE(ParseJson(text)) << text;
  EXPECT_TRUE(ParseJson(Nested(kMaxJsonDepth)));
  EXPECT_FALSE(ParseJson(Nested(kMaxJsonDepth + 1)));
  EXPECT_FALSE(ParseJson(Nested(1000000)));
}

}  // namespace
}  // namespace orbelcast
