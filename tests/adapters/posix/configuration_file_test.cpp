#include "adapters/posix/configuration_file.h"

#include <gmock/gmock.h>

#include <map>

#include "fakes/temporary_folder.h"

namespace orbelcast {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class ConfigurationFileTest : public testing::Test {
 protected:
  LoadedConfiguration Load() {
    return LoadConfiguration(
        [this](const std::string& name) -> std::optional<std::string> {
          const auto found = environment.find(name);
          return found == environment.end() ? std::nullopt : std::optional(found->second);
        },
        folder.File("system.conf"));
  }

  const fakes::TemporaryFolder folder;
  std::map<std::string, std::string> environment;
};

TEST_F(ConfigurationFileTest, EachPlaceOverridesTheOneBefore) {
  folder.Write("system.conf", "# the machine's\r\n\r\n relay_host =  system.example \r\nrelay_lookup_host=[::1]:80\n");
  EXPECT_EQ(Load().configuration.relay_host, "system.example");
  EXPECT_EQ(Load().configuration.relay_lookup_host, "[::1]:80");
  std::filesystem::create_directory(folder.Path() / "orbelcast");
  folder.Write("orbelcast/orbelcast.conf", "relay_host=user.example");  // without a line end
  environment["XDG_CONFIG_HOME"] = folder.Path();
  EXPECT_EQ(Load().configuration.relay_host, "user.example");
  EXPECT_EQ(Load().configuration.relay_lookup_host, "[::1]:80");
  environment["ORBELCAST_CONFIGURATION"] = folder.Write("named", "relay_host = named.example");
  EXPECT_EQ(Load().configuration.relay_host, "named.example");
  EXPECT_EQ(Load().configuration.relay_lookup_host, "lookup.relay.invalid");
  environment["ORBELCAST_RELAY_HOST"] = "environment.example";
  EXPECT_EQ(Load().configuration.relay_host, "environment.example");
  EXPECT_THAT(Load().problems, IsEmpty());
}

TEST_F(ConfigurationFileTest, WhatIsWrongIsSaidAndLeftOut) {
  const std::string path =
      folder.Write("system.conf", std::string("relay_host = good.example\nrelay_host = a/b\nnonsense\n"
                                              "colour\x1b = red\nrelay_lookup_host =\n") +
                                      std::string("relay_lookup_host = a\0b\n", 24));
  environment["ORBELCAST_RELAY_LOOKUP_HOST"] = "two words";
  const LoadedConfiguration loaded = Load();
  EXPECT_EQ(loaded.configuration.relay_host, "good.example");
  EXPECT_EQ(loaded.configuration.relay_lookup_host, "lookup.relay.invalid");
  EXPECT_THAT(loaded.problems, ElementsAre(HasSubstr(path + ":2: relay_host is 'a/b'"), HasSubstr(":3: 'nonsense'"),
                                           HasSubstr(":4: there is no setting 'colour?'"), HasSubstr(":5: "),
                                           HasSubstr(":6: "), HasSubstr("ORBELCAST_RELAY_LOOKUP_HOST is 'two words'")));
  folder.Write("system.conf", std::string(1 << 20, 'x'));
  environment["ORBELCAST_CONFIGURATION"] = folder.Path();
  EXPECT_THAT(Load().problems, ElementsAre(HasSubstr(folder.Path().string() + ": cannot be read"), testing::_));
  environment.clear();
  EXPECT_THAT(Load().problems, ElementsAre(HasSubstr("too large, over 65536 bytes")));
}

}  // namespace
}  // namespace orbelcast
