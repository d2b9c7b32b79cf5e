#include "adapters/posix/file_registry.h"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <thread>

#include "fakes/temporary_folder.h"

namespace orbelcast {
namespace {

using testing::HasSubstr;
using testing::SizeIs;

constexpr auto kHive = Registry::Hive::kLocalMachine;
const std::string kKey = "Software\\Test";

class FileRegistryTest : public testing::Test {
 protected:
  std::string Text(const std::string& name) const {
    for (const auto& value : FileRegistry(path_).Values(kHive, kKey).value_or(std::vector<Registry::Value>())) {
      if (value.name == name) return value.text;
    }
    return {};
  }

  const fakes::TemporaryFolder folder_;
  const std::string path_ = folder_.File("made/registry.json");
};

/// Runs `work` in another process.
template <typename Work>
pid_t InAnotherProcess(Work work) {
  const pid_t child = ::fork();
  if (child == 0) {
    work();
    ::_exit(0);
  }
  return child;
}

void AwaitEnd(pid_t child) {
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
}

TEST_F(FileRegistryTest, KeepsValuesInTheirOrderForTheNextProgram) {
  EXPECT_EQ(FileRegistry(path_).Values(kHive, kKey), std::nullopt);
  {
    FileRegistry registry(path_);
    EXPECT_TRUE(registry.SetValue(kHive, kKey, "Resolution", "15"));
    EXPECT_TRUE(registry.SetValue(kHive, kKey, "FPS", "\xc3\xa9\"\\\n"));
    EXPECT_TRUE(registry.SetValue(kHive, kKey, "Resolution", "16"));
    EXPECT_TRUE(registry.SetValue(Registry::Hive::kCurrentUser, kKey, "FPS", "other hive"));
    EXPECT_FALSE(registry.SetValue(kHive, kKey, "FPS", "\xff is no UTF-8"));
  }
  EXPECT_EQ(std::filesystem::status(path_).permissions(), std::filesystem::perms(0600));
  EXPECT_EQ(std::filesystem::status(folder_.Path() / "made").permissions(), std::filesystem::perms(0700));
  const auto values = FileRegistry(path_).Values(kHive, kKey);
  ASSERT_TRUE(values);
  ASSERT_THAT(*values, SizeIs(2));
  EXPECT_EQ((*values)[0].name + "=" + (*values)[0].text, "Resolution=16");
  EXPECT_EQ((*values)[1].name + "=" + (*values)[1].text, "FPS=\xc3\xa9\"\\\n");
}

TEST_F(FileRegistryTest, DeletesAKeyWithAllBelowItAndNothingBeside) {
  FileRegistry registry(path_);
  registry.SetValue(kHive, kKey, "a", "1");
  registry.SetValue(kHive, kKey + "\\Below", "b", "2");
  registry.SetValue(kHive, kKey + "Beside", "c", "3");
  EXPECT_TRUE(registry.DeleteKey(kHive, kKey));
  EXPECT_FALSE(registry.DeleteKey(kHive, kKey));
  EXPECT_FALSE(registry.Values(kHive, kKey));
  EXPECT_FALSE(registry.Values(kHive, kKey + "\\Below"));
  EXPECT_TRUE(registry.Values(kHive, kKey + "Beside"));
}

TEST_F(FileRegistryTest, TwoProcessesThatWriteAtOnceLoseNothing) {
  constexpr int kEach = 40;
  std::vector<pid_t> children;
  for (const std::string name : {"one", "other"}) {
    children.push_back(InAnotherProcess([&] {
      FileRegistry registry(path_);
      for (int i = 0; i < kEach; ++i) registry.SetValue(kHive, kKey, name + std::to_string(i), "x");
    }));
  }
  for (const pid_t child : children) AwaitEnd(child);
  EXPECT_THAT(FileRegistry(path_).Values(kHive, kKey).value(), SizeIs(2 * kEach));
}

TEST_F(FileRegistryTest, AProcessThatIsKilledLeavesAWholeFileAndNoLock) {
  FileRegistry registry(path_);
  ASSERT_TRUE(registry.SetValue(kHive, kKey, "kept", "yes"));
  for (int round = 0; round < 10; ++round) {
    const pid_t child = InAnotherProcess([&] {
      for (std::uint64_t i = 0;; ++i) FileRegistry(path_).SetValue(kHive, kKey, "count", std::to_string(i));
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(10 + 3 * round));
    ::kill(child, SIGKILL);
    AwaitEnd(child);
    EXPECT_EQ(Text("kept"), "yes");
    EXPECT_TRUE(registry.SetValue(kHive, kKey, "round", std::to_string(round)));
  }
  EXPECT_FALSE(std::filesystem::exists(path_ + ".damaged"));
}

TEST_F(FileRegistryTest, ADamagedFileIsKeptAsideAndReported) {
  ASSERT_TRUE(FileRegistry(path_).SetValue(kHive, kKey, "FPS", "7"));
  const std::string cut = fakes::ReadFile(path_).substr(0, 20);
  const std::string wrong_form = R"({"HKEY_LOCAL_MACHINE": {"Software\\Test": {"FPS": 7}}})";
  for (const auto& [text, aside] : {std::pair(cut, path_ + ".damaged"), std::pair(wrong_form, path_ + ".damaged.2")}) {
    folder_.Write("made/registry.json", text);
    testing::internal::CaptureStderr();
    EXPECT_FALSE(FileRegistry(path_).Values(kHive, kKey));
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr(aside));
    EXPECT_EQ(fakes::ReadFile(aside), text);
    EXPECT_FALSE(std::filesystem::exists(path_));
  }
  EXPECT_TRUE(FileRegistry(path_).SetValue(kHive, kKey, "FPS", "8"));
  EXPECT_EQ(Text("FPS"), "8");
}

TEST_F(FileRegistryTest, WhatCannotBeWrittenAnswersFalse) {
  folder_.Write("file", "not a folder");
  ::mkfifo(folder_.File("pipe").c_str(), 0600);
  std::filesystem::create_symlink(folder_.File("elsewhere"), folder_.File("locked.lock"));
  for (const std::string name : {"file/registry.json", "pipe", "", "locked"}) {
    FileRegistry registry(folder_.File(name));
    EXPECT_FALSE(registry.SetValue(kHive, kKey, "FPS", "7")) << name;
    EXPECT_FALSE(registry.DeleteKey(kHive, kKey));
    EXPECT_FALSE(registry.Values(kHive, kKey));
  }
  EXPECT_FALSE(std::filesystem::exists(folder_.File("elsewhere")));
}

}  // namespace
}  // namespace orbelcast
