#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace orbelcast {

/// Settings that outlive the program: texts under names, in keys, in hives. A key is a path of names joined by "\".
///
/// This one keeps them in memory, for tests and for programs that are to leave no trace.
class Registry {
 public:
  enum class Hive { kClassesRoot, kCurrentUser, kLocalMachine };
  struct Value {
    std::string name;
    std::string text;
  };

  virtual ~Registry() = default;

  /// Stores a value, making the key where it is missing. False when it could not be stored.
  virtual bool SetValue(Hive hive, const std::string& key, const std::string& name, const std::string& text) {
    for (Value& value : keys_[{hive, key}]) {
      if (value.name == name) {
        value.text = text;
        return true;
      }
    }
    keys_[{hive, key}].push_back({name, text});
    return true;
  }
  /// The values of a key in the order in which they are kept; nothing where there is no such key. Names are kept and
  /// compared letter by letter.
  virtual std::optional<std::vector<Value>> Values(Hive hive, const std::string& key) const {
    const auto found = keys_.find({hive, key});
    if (found == keys_.end()) return std::nullopt;
    return found->second;
  }
  /// Removes a key with all below it. False where there was none, or it could not be removed.
  virtual bool DeleteKey(Hive hive, const std::string& key) {
    return std::erase_if(keys_, [&](const auto& entry) {
             const auto& [entry_hive, path] = entry.first;
             return entry_hive == hive && (path == key || path.starts_with(key + "\\"));
           }) > 0;
  }

 private:
  std::map<std::pair<Hive, std::string>, std::vector<Value>> keys_;
};

}  // namespace orbelcast
