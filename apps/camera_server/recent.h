#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <map>
#include <string>

namespace orbelcast::camera_server {

/// A memory of clients by a key, bounded in number and in age: the one not used for longest is forgotten
/// first. Used by one thread at a time.
template <typename Value>
class Recent {
 public:
  using Clock = std::chrono::steady_clock;

  Recent(std::size_t most, Clock::duration age) : most_(most), age_(age) {}

  /// The value remembered for `key`, or a new one. Stays until the next Use.
  Value& Use(const std::string& key) {
    const Clock::time_point now = Clock::now();
    std::erase_if(entries_, [&](const auto& entry) { return now - entry.second.used > age_; });
    if (entries_.size() >= most_ && !entries_.contains(key)) {
      entries_.erase(std::ranges::min_element(entries_, {}, [](const auto& entry) { return entry.second.used; }));
    }
    Entry& entry = entries_[key];
    entry.used = now;
    return entry.value;
  }

 private:
  struct Entry {
    Clock::time_point used;
    Value value{};
  };
  std::size_t most_;
  Clock::duration age_;
  std::map<std::string, Entry> entries_;
};

}  // namespace orbelcast::camera_server
