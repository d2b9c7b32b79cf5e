#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>

/// Files that a person named, on a command line, in a script or in the environment: the one way in which they are read
/// and written. A problem is a text for people, empty where there is none.
namespace orbelcast {

/// The content of a file that was read as a whole.
struct FileContent {
  std::string problem{};   ///< Why it could not be read.
  bool missing = false;    ///< There is nothing of that name. Also a problem.
  bool too_large = false;  ///< More than was asked for. Also a problem.
  std::string text{};
  mode_t mode = 0;  ///< As fstat(2) tells it.
};

/// Whether a pipe may be read in place of a file. One without a writer is empty, not waited for.
enum class Pipes { kRefused, kRead };

/// Reads a file of at most `most_bytes`. Folders, devices and sockets are refused at once.
FileContent ReadNamedFile(const std::filesystem::path& name, std::size_t most_bytes, Pipes pipes = Pipes::kRefused);

/// Writes exactly these bytes to the file that `name` leads to.
///
/// Links are followed. A device, and a pipe that has a reader, is written to. A regular file is replaced as a whole:
/// the bytes go to a file of an unforeseeable name in the same folder, to the disk, and to the file's name last, with
/// the mode and the owner of the one that was there (`mode`, less the umask, for a new one). Where that fails, for want
/// of room, say, the old file is as it was and nothing else is left. A file that this user may not write to is refused.
std::string WriteNamedFile(const std::filesystem::path& name, std::span<const std::uint8_t> bytes, mode_t mode = 0666);

/// The reason why `name` cannot be written to, as far as can be told without trying. Writes nothing.
std::string WhyUnwritable(const std::filesystem::path& name);

/// The file that `name` leads to: itself where it is no link. It need not exist.
std::filesystem::path FollowLinks(const std::filesystem::path& name);

/// An unused and unforeseeable name in the folder of `file`: for a file that is to replace it later.
std::filesystem::path NameBeside(const std::filesystem::path& file);

/// Puts the complete file `beside` in the place of `file`, with the mode and the owner of the one that is there.
std::string PutInPlace(const std::filesystem::path& beside, const std::filesystem::path& file);

}  // namespace orbelcast
