#include "adapters/posix/file_registry.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <system_error>
#include <thread>

#include "adapters/posix/configuration_file.h"
#include "adapters/posix/descriptor.h"
#include "adapters/posix/named_file.h"
#include "json/json.h"

namespace orbelcast {

namespace {

/// The lock is held for a moment only; a holder that is stopped meanwhile must not stop the others for good.
constexpr std::chrono::milliseconds kLockPatience{2000};
constexpr std::chrono::milliseconds kLockPause{2};
/// Settings of a user are a few kilobytes; a file beyond this was not written here.
constexpr std::size_t kLargestFile = 16u * 1024 * 1024;
constexpr int kMostDamagedKept = 100;  ///< Copies of damaged files; then the newest stays where it is.
constexpr mode_t kFolderMode = 0700;
constexpr mode_t kFileMode = 0600;

const char* NameOf(Registry::Hive hive) {
  switch (hive) {
    case Registry::Hive::kClassesRoot:
      return "HKEY_CLASSES_ROOT";
    case Registry::Hive::kCurrentUser:
      return "HKEY_CURRENT_USER";
    case Registry::Hive::kLocalMachine:
      return "HKEY_LOCAL_MACHINE";
  }
  return "";
}

std::string DefaultPath() {
  const auto environment = [](const char* name) { return ProcessEnvironment(name).value_or(""); };
  if (std::string path = environment("ORBELCAST_REGISTRY"); !path.empty()) return path;
  std::string settings = environment("XDG_CONFIG_HOME");
  if (!settings.starts_with('/')) settings = environment("HOME") + "/.config";
  return settings + "/orbelcast/registry.json";
}

/// The right to change the file, for as long as it lives. The lock file itself stays.
class Lock {
 public:
  explicit Lock(const std::string& path)
      : file_(::open((path + ".lock").c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, kFileMode)) {
    const auto end = std::chrono::steady_clock::now() + kLockPatience;
    while (file_.IsOpen() && !(held_ = ::flock(file_.Number(), LOCK_EX | LOCK_NB) == 0)) {
      if ((errno != EWOULDBLOCK && errno != EINTR) || std::chrono::steady_clock::now() >= end) return;
      std::this_thread::sleep_for(kLockPause);
    }
  }
  bool Held() const { return held_; }

 private:
  const Descriptor file_;
  bool held_ = false;
};

enum class Finding { kGood, kMissing, kUnreadable, kDamaged };

/// Objects in one another, `levels` deep, whose innermost members are texts: hives of keys of values have three.
bool HasForm(const Json& value, int levels) {
  if (levels == 0) return value.Get<std::string>() != nullptr;
  const auto* const members = value.Get<Json::Members>();
  return members != nullptr &&
         std::ranges::all_of(*members, [&](const JsonMember& each) { return HasForm(each.value, levels - 1); });
}

Finding Read(const std::string& path, Json& registry) {
  registry = Json::Object();
  const FileContent content = ReadNamedFile(path, kLargestFile);
  if (content.missing) return Finding::kMissing;
  if (content.too_large) return Finding::kDamaged;
  if (!content.problem.empty()) return Finding::kUnreadable;
  if (content.text.empty()) return Finding::kMissing;  // An empty file that reserves the name.
  std::optional<Json> read = ParseJson(content.text);
  if (!read || !HasForm(*read, 3)) return Finding::kDamaged;
  registry = std::move(*read);
  return Finding::kGood;
}

/// Under the lock. False where it could not be moved out of the way.
bool KeepDamagedAside(const std::string& path) {
  for (int number = 1; number <= kMostDamagedKept; ++number) {
    const std::string aside = path + ".damaged" + (number > 1 ? "." + std::to_string(number) : "");
    // A link fails where the name exists, so what was kept before is not replaced.
    if (::link(path.c_str(), aside.c_str()) != 0) {
      if (errno == EEXIST) continue;
      break;
    }
    if (::unlink(path.c_str()) != 0) break;
    std::cerr << "orbelcast: the settings in " << path << " are damaged; they are kept as " << aside << '\n';
    return true;
  }
  std::cerr << "orbelcast: the settings in " << path << " are damaged and cannot be moved aside\n";
  return false;
}

bool Replace(const std::string& path, const Json& registry) {
  std::optional<std::string> text = ToExactText(registry);
  if (!text) return false;
  *text += '\n';
  return WriteNamedFile(path, {reinterpret_cast<const std::uint8_t*>(text->data()), text->size()}, kFileMode).empty();
}

/// The file itself where the name is a link to it, so that the link survives a replacement.
std::string Resolved(const std::string& path) {
  std::error_code error;
  const auto resolved = std::filesystem::weakly_canonical(std::filesystem::absolute(path, error), error);
  return error ? path : resolved.string();
}

enum class Outcome { kFailed, kAsItWas, kChanged };

/// Runs `change` on what the file holds and replaces the file where it says that it changed something. False where it
/// failed, or the file could not be replaced: then nothing has changed.
template <typename Change>
bool ChangeFile(const std::string& named, Change change) try {
  const std::string path = Resolved(named);
  const std::filesystem::path folder = std::filesystem::path(path).parent_path();
  std::error_code ignored;
  std::filesystem::create_directories(folder.parent_path(), ignored);
  ::mkdir(folder.c_str(), kFolderMode);

  const Lock lock(path);
  if (!lock.Held()) return false;
  Json registry;
  const Finding finding = Read(path, registry);
  if (finding == Finding::kUnreadable) return false;
  if (finding == Finding::kDamaged && !KeepDamagedAside(path)) return false;
  const Outcome outcome = change(registry);
  return outcome == Outcome::kAsItWas || (outcome == Outcome::kChanged && Replace(path, registry));
} catch (const std::exception&) {
  return false;  // No memory, or a name that the system does not take.
}

}  // namespace

FileRegistry::FileRegistry() : FileRegistry(DefaultPath()) {}

FileRegistry::FileRegistry(std::string path) : path_(std::move(path)) {}

bool FileRegistry::SetValue(Hive hive, const std::string& key, const std::string& name, const std::string& text) {
  return ChangeFile(path_, [&](Json& registry) {
    Json& value = registry[NameOf(hive)][key][name];
    if (value == text) return Outcome::kAsItWas;  // Spares a start of the player its wait for the disk.
    value = text;
    return Outcome::kChanged;
  });
}

std::optional<std::vector<Registry::Value>> FileRegistry::Values(Hive hive, const std::string& key) const try {
  Json registry;
  const Finding finding = Read(path_, registry);
  // Read again under the lock: another writer may have put a good file in its place.
  if (finding == Finding::kDamaged) ChangeFile(path_, [](Json&) { return Outcome::kAsItWas; });
  const Json* const found_hive = registry.Find(NameOf(hive));
  const Json* const found_key = found_hive != nullptr ? found_hive->Find(key) : nullptr;
  if (found_key == nullptr) return std::nullopt;
  std::vector<Value> values;
  for (const auto& [name, text] : *found_key->Get<Json::Members>()) values.push_back({name, *text.Get<std::string>()});
  return values;
} catch (const std::exception&) {
  return std::nullopt;
}

bool FileRegistry::DeleteKey(Hive hive, const std::string& key) {
  return ChangeFile(path_, [&](Json& registry) {
    if (registry.Find(NameOf(hive)) == nullptr) return Outcome::kFailed;
    const auto removed = std::erase_if(*registry[NameOf(hive)].Get<Json::Members>(), [&](const JsonMember& each) {
      return each.name == key || each.name.starts_with(key + "\\");
    });
    return removed > 0 ? Outcome::kChanged : Outcome::kFailed;
  });
}

}  // namespace orbelcast
