#pragma once

#include <chrono>
#include <cstddef>
#include <list>
#include <map>
#include <string>
#include <utility>

namespace orbelcast::camera_server {

/// What is remembered of clients by a key, bounded in number and in age: the one not used for longest is forgotten
/// first. Used by one thread at a time.
template <typename Value>
class Recent {
 public:
  using Clock = std::chrono::steady_clock;

  Recent(std::size_t most, Clock::duration age) : most_(most), age_(age) {}

  struct Found {
    Value& value;  ///< stays until the next Use
    bool is_new;   ///< it was not known, or not used for so long that it was forgotten
  };
  Found Use(const std::string& key, Clock::time_point now) {
    while (!entries_.empty() && now - entries_.back().used > age_) ForgetOldest();
    const auto place = places_.find(key);
    if (place != places_.end()) {
      entries_.splice(entries_.begin(), entries_, place->second);
      entries_.front().used = now;
      return {entries_.front().value, false};
    }
    if (entries_.size() >= most_) ForgetOldest();
    entries_.push_front({key, now, Value{}});
    places_[key] = entries_.begin();
    return {entries_.front().value, true};
  }

 private:
  struct Entry {
    std::string key;
    Clock::time_point used;
    Value value;
  };
  void ForgetOldest() {
    places_.erase(entries_.back().key);
    entries_.pop_back();
  }

  std::size_t most_;
  Clock::duration age_;
  std::list<Entry> entries_;  // the one used last first
  std::map<std::string, typename std::list<Entry>::iterator> places_;
};

}  // namespace orbelcast::camera_server
