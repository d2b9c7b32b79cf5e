#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace orbelcast {

namespace detail {

/// The part of a signal that its connections know: a place to take a listener out of.
class SignalCore {
 public:
  virtual ~SignalCore() = default;
  virtual void Remove(std::uint64_t id) = 0;
};

}  // namespace detail

/// A listener's place in a signal. Ends the listening when it is destroyed; outliving the signal is harmless.
class Connection {
 public:
  Connection() = default;
  Connection(std::weak_ptr<detail::SignalCore> core, std::uint64_t id) : core_(std::move(core)), id_(id) {}
  Connection(Connection&& other) noexcept : core_(std::move(other.core_)), id_(std::exchange(other.id_, 0)) {}
  Connection& operator=(Connection&& other) noexcept {
    if (this != &other) {
      Disconnect();
      core_ = std::move(other.core_);
      id_ = std::exchange(other.id_, 0);
    }
    return *this;
  }
  ~Connection() { Disconnect(); }

  void Disconnect() {
    if (auto core = core_.lock(); core && id_ != 0) core->Remove(id_);
    core_.reset();
    id_ = 0;
  }

 private:
  std::weak_ptr<detail::SignalCore> core_;
  std::uint64_t id_ = 0;
};

/// A list of listeners to be notified together, in the order in which they were added.
///
/// A listener may add and remove listeners (itself too) and may destroy the signal while it is being told: one that is
/// removed is not called any more, one that is added is called from the next time on. Telling allocates nothing. A
/// listener's exception ends that listener alone: the notifier goes on with its next step.
template <typename... Args>
class Signal {
 public:
  using Listener = std::function<void(Args...)>;

  Signal() = default;
  Signal(const Signal&) = delete;
  Signal& operator=(const Signal&) = delete;

  /// Calls `listener` from now on, until the returned connection ends.
  [[nodiscard]] Connection Connect(Listener listener) {
    if (!core_) core_ = std::make_shared<Core>();
    return {core_, core_->Add(std::move(listener))};
  }

  /// Calls `listener` for as long as the signal lives.
  void Listen(Listener listener) {
    if (!core_) core_ = std::make_shared<Core>();
    core_->Add(std::move(listener));
  }

  /// Tells every listener.
  void operator()(Args... args) const {
    if (!core_) return;
    const std::shared_ptr<Core> alive = core_;
    alive->Tell(args...);
  }

  /// Forgets every listener.
  void Clear() {
    if (core_) core_->Clear();
  }

  bool HasListeners() const { return core_ && core_->HasEntries(); }

 private:
  class Core final : public detail::SignalCore {
   public:
    std::uint64_t Add(Listener listener) {
      entries_.push_back(std::make_shared<Entry>(Entry{++last_id_, std::move(listener)}));
      return last_id_;
    }

    void Remove(std::uint64_t id) override {
      for (auto& entry : entries_) {
        if (entry && entry->id == id) {
          entry.reset();
          break;
        }
      }
      Tidy();
    }

    void Clear() {
      for (auto& entry : entries_) entry.reset();
      Tidy();
    }

    bool HasEntries() const {
      for (const auto& entry : entries_) {
        if (entry) return true;
      }
      return false;
    }

    void Tell(Args... args) {
      ++telling_;
      const std::size_t count = entries_.size();
      for (std::size_t i = 0; i < count && i < entries_.size(); ++i) {
        const std::shared_ptr<Entry> entry = entries_[i];
        if (!entry) continue;
        try {
          entry->listener(args...);
        } catch (...) {  // NOLINT(bugprone-empty-catch): see the class's comment.
        }
      }
      --telling_;
      Tidy();
    }

   private:
    struct Entry {
      std::uint64_t id;
      Listener listener;
    };

    void Tidy() {
      if (telling_ == 0) std::erase(entries_, nullptr);
    }

    std::vector<std::shared_ptr<Entry>> entries_;
    std::uint64_t last_id_ = 0;
    int telling_ = 0;
  };

  std::shared_ptr<Core> core_;
};

}  // namespace orbelcast
