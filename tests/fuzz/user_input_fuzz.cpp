// Any bytes as what people write and programs print: the first byte says as what.

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "adapters/posix/configuration_file.h"
#include "adapters/posix/file_registry.h"
#include "common/credentials_file.h"
#include "common/shown_text.h"
#include "json/json.h"
#include "toolkit/ascii.h"
#include "toolkit/visible_text.h"

using namespace orbelcast;

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

/// A file in memory, by a name that every process finds its own under.
std::string FileWith(std::string_view text) {
  static const int file = ::memfd_create("input", MFD_CLOEXEC);
  Require(::ftruncate(file, 0) == 0 &&
          ::pwrite(file, text.data(), text.size(), 0) == static_cast<ssize_t>(text.size()));
  return "/proc/self/fd/" + std::to_string(file);
}

bool IsVisible(const std::string& text) {
  return WithoutControls(text) == text;
}

void ReadRegistry(std::string_view text) {
  const FileRegistry registry(FileWith(text));
  registry.Values(Registry::Hive::kLocalMachine, "Software");
}

void ReadConfiguration(std::string_view text) {
  const std::string file = FileWith(text);
  const auto loaded = LoadConfiguration([&](const std::string& name) -> std::optional<std::string> {
    if (name != "ORBELCAST_CONFIGURATION") return std::nullopt;
    return file;
  });
  for (const std::string& problem : loaded.problems) Require(IsVisible(problem));
  Require(!HasControlCharacter(loaded.configuration.relay_host + loaded.configuration.relay_lookup_host));
}

void ReadLogin(std::string_view text) {
  try {
    const Credentials credentials = ReadCredentials(FileWith(text));
    Require(!HasControlCharacter(credentials.user.value_or("") + credentials.password.value_or("")));
  } catch (const CredentialsError& error) {
    Require(IsVisible(error.what()));
  }
}

void ShowAddress(std::string_view text) {
  // Neither an end of the address nor of the password that it is a part of.
  const std::string password = "S3CRET" + std::string(text.substr(0, text.find('\n')));
  for (const std::string& address :
       {"http://ann:" + password + "@h/live/1", "http://h/live/1/ann:" + password + "?live-special0320x0240050",
        "http://h/$openlogin/ann/" + password + "/srv_vigilbox$output=1+1"}) {
    Require(MaskedAddress(address).Text().find("S3CRET") == std::string::npos);
  }
}

void ShowText(std::string_view text) {
  KeepSecret("known");
  const std::string shown = Shown(text);
  Require(IsVisible(shown) && shown.find("known") == std::string::npos);
}

// Printed text is read as what it was, but for bytes that are no text; JSON that is read is printed and read the same.
void ReadJson(std::string_view text) {
  const std::string line = ToLine(text);
  const auto printed = ParseJson(line);
  Require(IsVisible(line) && printed && ToLine(*printed) == line);
  const auto read = ParseJson(text);
  Require(!read || ParseJson(ToExactText(*read).value()) == read);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  constexpr void (*kUses[])(std::string_view) = {ReadRegistry, ReadConfiguration, ReadLogin,
                                                 ShowAddress,  ShowText,          ReadJson};
  kUses[data[0] % std::size(kUses)]({reinterpret_cast<const char*>(data) + 1, size - 1});
  return 0;
}
