#pragma once

#include <atomic>
#include <cstdint>
#include <exception>
#include <functional>
#include <new>
#include <utility>

#include "orbelcast/orbelcast.h"

namespace orbelcast::server {

/// The owner's view of its objects: how many are alive, and their thread.
class ObjectCount {
 public:
  virtual ~ObjectCount() = default;
  virtual bool OnOwnThread() const = 0;
  /// Called on another thread: calls `end` on the objects' own one, soon.
  virtual void EndLater(std::function<void()> end) = 0;
  virtual void ObjectMade() = 0;
  /// The last thing an object does: the count may end with it.
  virtual void ObjectGone() = 0;
};

/// Runs an entry point's work: an exception becomes a result code.
template <typename Work>
Result Guarded(Work work) noexcept {
  try {
    return work();
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  } catch (...) {
    return E_UNEXPECTED;
  }
}

/// Reference counting and QueryInterface for an object that has `Interfaces`. It begins with one reference, its
/// maker's.
///
/// References are counted on any thread. Everything else happens on the object's own, its end too: where the last
/// reference goes on another one, the end waits.
template <typename First, typename... Interfaces>
class Object : public First, public Interfaces... {
 public:
  explicit Object(ObjectCount& count) : count_(count) { count_.ObjectMade(); }
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;

  Result QueryInterface(const Guid* id, void** object) override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (id == nullptr) return E_POINTER;
    *object = Find(*id);
    if (*object == nullptr) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  std::uint32_t AddRef() override { return ++references_; }
  std::uint32_t Release() override {
    std::uint32_t counted = references_;
    while (counted > 0 && !references_.compare_exchange_weak(counted, counted - 1)) {
    }
    if (counted != 1) return counted > 0 ? counted - 1 : 0;
    if (count_.OnOwnThread()) {
      End();
    } else {
      count_.EndLater([this] { End(); });
    }
    return 0;
  }

  /// A call in progress: the object's memory stays until it returns, also when it is released meanwhile.
  class Call {
   public:
    explicit Call(Object& object) : object_(object) { ++object_.calls_; }
    ~Call() { object_.Leave(); }
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;

   private:
    Object& object_;
  };

 protected:
  virtual ~Object() = default;

  /// The interface of that id, not counted; null where there is none.
  virtual void* Find(const Guid& id) {
    if (id == IUnknown::kId || id == First::kId) return static_cast<First*>(this);
    void* found = nullptr;
    ((id == Interfaces::kId ? void(found = static_cast<Interfaces*>(this)) : void()), ...);
    return found;
  }
  /// The last reference is gone; calls may still be in progress.
  virtual void Ended() {}

 private:
  void End() {
    ++calls_;  // Stays whole while it ends, also when a sink that it lets go calls back in.
    ended_ = true;
    Ended();
    Leave();
  }
  // Without a reference it may still have to end: the last one has just gone on another thread, which will say so.
  void Leave() {
    if (--calls_ > 0 || references_ > 0 || !ended_) return;
    ObjectCount& count = count_;
    delete this;
    count.ObjectGone();
  }

  ObjectCount& count_;
  std::atomic<std::uint32_t> references_ = 1;
  std::uint32_t calls_ = 0;
  bool ended_ = false;
};

/// Keeps a value alive for a variant that points into it.
template <typename T>
class Owner final : public Object<IUnknown> {
 public:
  Owner(ObjectCount& count, T owned) : Object(count), value(std::move(owned)) {}
  const T value;
};

}  // namespace orbelcast::server
