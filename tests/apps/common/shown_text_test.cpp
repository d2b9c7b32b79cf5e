#include "common/shown_text.h"

#include <gtest/gtest.h>

#include <tuple>
#include <vector>

#include "toolkit/visible_text.h"

namespace orbelcast {
namespace {

TEST(ShownText, AnAddressHasNoPassword) {
  const std::vector<std::pair<const char*, const char*>> cases{
      {"http://ann:pw@h/live/1", "http://ann:***@h/live/1"},
      {"http://ann:p/w?x:y@z@h:80/live/1", "http://ann:***@h:80/live/1"},
      {"ann:pw@h:80", "ann:***@h:80"},
      {"http://ann:p@w/x@h/live/1", "http://ann:***@h/live/1"},
      {"/live/1/ann:p http://h:1/x?live-special0160x0120020", "/live/1/ann:***?live-special0160x0120020"},
      {"http://h:8080/live/ann@example.org", "http://h:8080/live/ann@example.org"},
      {"http://[::1]:80/live/1", "http://[::1]:80/live/1"},
      {"http://h/live/1/ann:p/w?s:x?live-special0160x0120020", "http://h/live/1/ann:***?live-special0160x0120020"},
      {"h/live/1/ann%3apw", "h/live/1/ann%3a***"},
      {"http://h/cgi/snap?time=12:30&x=1", "http://h/cgi/snap?time=12:30&x=1"},
      {"http://h/$openlogin/ann/p/w?x/srv_vigilbox$output=1", "http://h/$openlogin/ann/***/srv_vigilbox$output=1"},
      {"http://h/$OpenLogin/a:b/pw", "http://h/$OpenLogin/a:b/***"},
      {"http://h/x?user=ann&PWD=p:w&y=1", "http://h/x?user=ann&PWD=***&y=1"},
      {"http://h/x?password=&pass=a;b=c", "http://h/x?password=&pass=***;b=c"},
      {"", ""},
      {"\x9b\x1b[2J", "??[2J"},
  };
  for (const auto& [address, shown] : cases) EXPECT_EQ(MaskedAddress(address).Text(), shown) << address;
  EXPECT_EQ(HidePasswords("failed: HTTP://ann:pw@h/x (401), see http://h/live/1/ann:pw now"),
            "failed: HTTP://ann:***@h/x (401), see http://h/live/1/ann:*** now");
  EXPECT_EQ(Shown("is it http://h/live/1/ann:***?"), "is it http://h/live/1/ann:***?");
}

TEST(ShownText, AKnownPasswordIsHiddenHoweverItIsWritten) {
  KeepSecret("se/c r?t");
  KeepSecretsOf("http://ann:from%20url@h/");
  KeepSecret("ab");
  for (const char* text : {"se/c r?t", "se%2fc%20r%3ft", "se%2Fc+r?t", "%73e/c r?t", "from url", "from%20url"}) {
    EXPECT_EQ(HidePasswords(std::string("{") + text + "}"), "{***}");
  }
  EXPECT_EQ(HidePasswords("se/c r?, absent, %, %2"), "se/c r?, absent, %, %2");
}

TEST(ShownText, NothingDrivesATerminal) {
  const std::vector<std::tuple<std::string, std::string, std::string>> cases{
      {"a\x7f\xc2\x85"
       "b",
       "a??b", "a\\u007f\\u0085b"},
      {"\xe2\x80\xae"
       "evil\xe2\x81\xa9\xd8\x9c\xe2\x80\x8f",
       "?evil???", "\\u202eevil\\u2069\\u061c\\u200f"},
      {"\x9b"
       "2J\xe9 \xc3\xa9 \xf0\x9f\x98\x80",
       "?2J\xe9 \xc3\xa9 \xf0\x9f\x98\x80",
       "\x9b"
       "2J\xe9 \xc3\xa9 \xf0\x9f\x98\x80"},
      {"\xc0\x80\xed\xa0\x80\xf4\x90\x80\x80\xe2\x80", "\xc0?\xed\xa0?\xf4???\xe2?",
       "\xc0\x80\xed\xa0\x80\xf4\x90\x80\x80\xe2\x80"},
      {std::string("\n\t\0", 3), "???", std::string("\n\t\0", 3)},
  };
  for (const auto& [text, shown, json] : cases) {
    EXPECT_EQ(WithoutControls(text), shown);
    EXPECT_EQ(JsonWithoutControls(text), json);
  }
}

}  // namespace
}  // namespace orbelcast
