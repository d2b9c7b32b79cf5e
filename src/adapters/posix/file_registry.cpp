#include "adapters/posix/file_registry.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <system_error>
#include <thread>

#include "adapters/posix/configuration_file.h"

namespace orbelcast {

namespace {

/// Keeps values in the order in which they were made.
using Json = nlohmann::ordered_json;

/// Somebody who holds the lock needs it for a moment; whoever is stopped meanwhile must not stop the others for good.
constexpr std::chrono::milliseconds kLockPatience{2000};
constexpr std::chrono::milliseconds kLockPause{2};
/// Settings of a user are a few kilobytes; a file beyond this was not written here.
constexpr std::uintmax_t kLargestFile = 16u * 1024 * 1024;
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

/// An open file, closed at its end.
class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() {
    if (number_ >= 0) ::close(number_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int Number() const { return number_; }
  bool IsOpen() const { return number_ >= 0; }

 private:
  const int number_;
};

/// The right to change the file, for as long as it lives. The lock file itself stays.
class Lock {
 public:
  explicit Lock(const std::string& path)
      : file_(::open((path + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, kFileMode)) {
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

bool HasForm(const Json& registry) {
  if (!registry.is_object()) return false;
  for (const Json& hive : registry) {
    if (!hive.is_object()) return false;
    for (const Json& key : hive) {
      if (!key.is_object()) return false;
      for (const Json& value : key) {
        if (!value.is_string()) return false;
      }
    }
  }
  return true;
}

Finding Read(const std::string& path, Json& registry) {
  registry = Json::object();
  std::error_code error;
  if (!std::filesystem::exists(path, error)) return error ? Finding::kUnreadable : Finding::kMissing;
  std::ifstream file(path, std::ios::binary);
  if (!file) return Finding::kUnreadable;
  const std::uintmax_t size = std::filesystem::file_size(path, error);
  if (error) return Finding::kUnreadable;
  if (size > kLargestFile) return Finding::kDamaged;
  const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  if (file.bad()) return Finding::kUnreadable;
  if (text.empty()) return Finding::kMissing;  // A name that somebody reserved.
  Json read = Json::parse(text, nullptr, /*allow_exceptions=*/false);
  if (!HasForm(read)) return Finding::kDamaged;
  registry = std::move(read);
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

bool WriteAll(int file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(file, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

bool WriteNew(const std::string& path, std::string_view bytes) {
  const Descriptor file(::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, kFileMode));
  return file.IsOpen() && WriteAll(file.Number(), bytes) && ::fsync(file.Number()) == 0;
}

void SyncFolder(const std::filesystem::path& folder) {
  const Descriptor opened(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (opened.IsOpen()) ::fsync(opened.Number());
}

bool Replace(const std::string& path, const Json& registry) {
  const std::string text = registry.dump(2) + '\n';
  const std::string beside = path + ".new";
  if (!WriteNew(beside, text) || ::rename(beside.c_str(), path.c_str()) != 0) {
    ::unlink(beside.c_str());
    return false;
  }
  SyncFolder(std::filesystem::path(path).parent_path());
  return true;
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
  return false;  // A text that is not UTF-8, or no memory.
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
  // Read again under the lock: whoever writes may have put a good file in its place.
  if (finding == Finding::kDamaged) ChangeFile(path_, [](Json&) { return Outcome::kAsItWas; });
  const auto found_hive = registry.find(NameOf(hive));
  if (found_hive == registry.end()) return std::nullopt;
  const auto found_key = found_hive->find(key);
  if (found_key == found_hive->end()) return std::nullopt;
  std::vector<Value> values;
  for (const auto& [name, text] : found_key->items()) values.push_back({name, text.get<std::string>()});
  return values;
} catch (const std::exception&) {
  return std::nullopt;
}

bool FileRegistry::DeleteKey(Hive hive, const std::string& key) {
  return ChangeFile(path_, [&](Json& registry) {
    const auto found_hive = registry.find(NameOf(hive));
    if (found_hive == registry.end()) return Outcome::kFailed;
    std::size_t removed = 0;
    for (auto each = found_hive->begin(); each != found_hive->end();) {
      const bool below = each.key() == key || each.key().starts_with(key + "\\");
      each = below ? found_hive->erase(each) : std::next(each);
      removed += below ? 1 : 0;
    }
    return removed > 0 ? Outcome::kChanged : Outcome::kFailed;
  });
}

}  // namespace orbelcast
