#pragma once

#include <string>

#include "platform/registry.h"

namespace orbelcast {

/// The registry as one file a user: a JSON object of hives, each an object of keys under their whole paths, each an
/// object of values, which are texts:
///
///     {"HKEY_LOCAL_MACHINE": {"Software\\Name": {"FPS": "7"}}}
///
/// Any number of processes may use one file. It is read anew at each call. A change is made under a lock (the file
/// NAME.lock beside it, flock(2)) on what the file holds then, and replaces the file as a whole (named_file.h), so no
/// process loses another's values and a crash leaves the old file or the new one.
///
/// A file that cannot be understood is kept aside as NAME.damaged, or NAME.damaged.2 and so on, and reported on
/// standard error; the registry begins anew. Where the file, its folder or the lock is not available, or something
/// other than a file has its name, reading finds nothing and writing answers false. Texts that are not UTF-8 are
/// refused.
class FileRegistry final : public Registry {
 public:
  /// The user's registry: the file that the environment variable ORBELCAST_REGISTRY names, else orbelcast/registry.json
  /// in the user's folder for settings (XDG_CONFIG_HOME, or .config in the home folder). Nothing is made before the
  /// first change.
  FileRegistry();
  explicit FileRegistry(std::string path);

  bool SetValue(Hive hive, const std::string& key, const std::string& name, const std::string& text) override;
  std::optional<std::vector<Value>> Values(Hive hive, const std::string& key) const override;
  bool DeleteKey(Hive hive, const std::string& key) override;

  const std::string& Path() const { return path_; }

 private:
  const std::string path_;
};

}  // namespace orbelcast
