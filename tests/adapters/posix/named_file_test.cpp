#include "adapters/posix/named_file.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

#include "adapters/posix/descriptor.h"
#include "adapters/posix/posix_files.h"
#include "fakes/temporary_folder.h"

namespace orbelcast {
namespace {

namespace fs = std::filesystem;
using fakes::ReadFile;
using testing::HasSubstr;

/// The calls to the system, in order.
std::string calls;

class NamedFileTest : public testing::Test {
 protected:
  static std::string Write(const fs::path& name, std::string_view text) {
    return WriteNamedFile(name, {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
  }
  fs::path Pipe() const {
    ::mkfifo((folder_ / "pipe").c_str(), 0600);
    return folder_ / "pipe";
  }
  std::ptrdiff_t Count() const { return std::distance(fs::directory_iterator(folder_), fs::directory_iterator()); }

  const fakes::TemporaryFolder owned_;
  const fs::path& folder_ = owned_.Path();
};

TEST_F(NamedFileTest, WritesWhereTheNameLeads) {
  const fs::path file = owned_.Write("file", "longer than the new one");
  ::chmod(file.c_str(), 0640);
  fs::create_symlink("file", folder_ / "link");
  fs::create_symlink("new", folder_ / "to-come");
  EXPECT_EQ(Write(folder_ / "link", "one"), "");
  EXPECT_EQ(Write(folder_ / "to-come", "two"), "");
  EXPECT_EQ(ReadFile(file) + ReadFile(folder_ / "new"), "onetwo");
  EXPECT_TRUE(fs::is_symlink(folder_ / "link"));
  EXPECT_EQ(fs::status(file).permissions(), fs::perms(0640));
  EXPECT_EQ(Count(), 4) << "nothing is left beside them";

  const fs::path pipe = Pipe();
  EXPECT_THAT(Write(pipe, "three"), HasSubstr("nobody reads"));
  const Descriptor reader(::open(pipe.c_str(), O_RDONLY | O_NONBLOCK));
  EXPECT_EQ(Write(pipe, "three"), "");
  char text[8] = {};
  EXPECT_EQ(::read(reader.Number(), text, sizeof text), 5);
  EXPECT_TRUE(fs::is_fifo(pipe));
}

TEST_F(NamedFileTest, TheBytesAreOnTheDiskBeforeTheNameLeadsToThem) {
  calls.clear();
  EXPECT_EQ(Write(folder_ / "file", "text"), "");
  EXPECT_EQ(calls, "sync file, rename, sync folder, ");
}

TEST_F(NamedFileTest, WhatFailsIsToldAndLeavesTheOldFile) {
  const fs::path file = owned_.Write("file", "old");
  EXPECT_THAT(Write(folder_, "x"), HasSubstr("folder"));
  EXPECT_THAT(Write(folder_ / "no/file", "x"), HasSubstr("there is no folder"));
  EXPECT_THAT(Write(folder_ / "file/below", "x"), HasSubstr("there is no folder"));
  fs::create_symlink("round", folder_ / "round");
  EXPECT_NE(Write(folder_ / "round", "x"), "");

  rlimit old{};
  ::getrlimit(RLIMIT_FSIZE, &old);
  const rlimit small{100, old.rlim_max};
  ::setrlimit(RLIMIT_FSIZE, &small);
  EXPECT_THAT(Write(file, std::string(101, 'x')), HasSubstr("too large"));
  ::setrlimit(RLIMIT_FSIZE, &old);
  EXPECT_EQ(ReadFile(file), "old");
  EXPECT_EQ(Count(), 2);
}

TEST_F(NamedFileTest, ReadsFilesAndNothingThatWouldHangOrNotEnd) {
  EXPECT_EQ(ReadNamedFile(owned_.Write("file", "text"), 4).text, "text");
  EXPECT_TRUE(ReadNamedFile(folder_ / "file", 3).too_large);
  EXPECT_TRUE(ReadNamedFile(folder_ / "none", 9).missing);
  EXPECT_EQ(ReadNamedFile(folder_, 9).problem, "it is a folder");
  EXPECT_EQ(ReadNamedFile(Pipe(), 9).problem, "it is a pipe");
  EXPECT_NE(ReadNamedFile("/dev/zero", 9).problem, "");
  const FileContent unwritten = ReadNamedFile(Pipe(), 9, Pipes::kRead);
  EXPECT_EQ(unwritten.problem + unwritten.text, "");
}

TEST_F(NamedFileTest, TheModuleFolderIsThisProgramsAloneUnlessItIsNamed) {
  ::setenv("temp", folder_.c_str(), 1);
  {
    const PosixFiles one;
    const PosixFiles other;
    EXPECT_NE(one.ModuleFolder(), other.ModuleFolder());
    EXPECT_EQ(one.ModuleFolder(), one.ModuleFolder());
    EXPECT_EQ(fs::status(one.ModuleFolder()).permissions(), fs::perms(0700));
    owned_.Write(fs::relative(one.ModuleFolder(), folder_).string() + "/tempf.jpg", "x");
  }
  EXPECT_EQ(Count(), 0) << "they go with the program";

  ::setenv("ORBELCAST_MODULE_FOLDER", (folder_ / "named").c_str(), 1);
  EXPECT_EQ(PosixFiles().ModuleFolder(), (folder_ / "named/").string());
  // Somebody else's folder may hold somebody else's picture.
  if (::chown((folder_ / "named").c_str(), 4711, 4711) == 0) {
    EXPECT_NE(PosixFiles().ModuleFolder(), (folder_ / "named/").string());
  }
  ::setenv("temp", (folder_ / "none").c_str(), 1);
  ::unsetenv("ORBELCAST_MODULE_FOLDER");
  EXPECT_FALSE(std::ofstream(PosixFiles().ModuleFolder() + "tempf.jpg"));
  ::unsetenv("temp");
}

}  // namespace
}  // namespace orbelcast

extern "C" int fsync(int descriptor) {
  struct stat about {};
  ::fstat(descriptor, &about);
  orbelcast::calls += S_ISDIR(about.st_mode) ? "sync folder, " : "sync file, ";
  return ::fdatasync(descriptor);
}
extern "C" int rename(const char* from, const char* to) noexcept {
  orbelcast::calls += "rename, ";
  return ::renameat(AT_FDCWD, from, AT_FDCWD, to);
}
