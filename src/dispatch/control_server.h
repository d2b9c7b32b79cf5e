#pragma once

#include <cstdint>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include "dispatch/control_class.h"
#include "dispatch/host_dialogs.h"
#include "dispatch/object.h"
#include "orbelcast/orbelcast.h"
#include "platform/platform.h"

namespace orbelcast::server {

/// The classes, the platform that their controls run on, and the count of living objects.
///
/// Outlives every object that it made, and is outlived by its platform.
class ControlServer final : public ObjectCount {
 public:
  /// `dialogs`, where hosts may answer them, is the platform's service and outlives the server.
  explicit ControlServer(Platform& platform, HostDialogs* dialogs = nullptr) : platform_(platform), dialogs_(dialogs) {}
  ~ControlServer() override;
  ControlServer(const ControlServer&) = delete;
  ControlServer& operator=(const ControlServer&) = delete;

  /// Gives the class factory of `class_id`, as the entry point does.
  Result GetClassObject(const Guid* class_id, const Guid* interface_id, void** object);

  /// Nothing of it is in use: no object, no lock, and no handler of its loop is running.
  bool Idle() const { return objects_ == 0 && locks_ == 0 && !platform_.loop.InHandler(); }
  /// Called whenever the last object or lock has gone, as the last thing: it may end the server.
  std::function<void()> OnUnused;
  /// Called on any thread, when the last reference to an object has gone there: it has the server's own thread call
  /// EndReleased soon. Without it that happens when the host next calls into the server.
  std::function<void()> OnReleasedElsewhere;

  /// A control as hosts reach it; its last reference releases `control`, which is of that class.
  Held<IDispatch> Host(const ControlClass& control_class, std::shared_ptr<void> control,
                       Raises raises = Raises::kEvents);

  Platform& GetPlatform() { return platform_; }

  // ---- Host services of its objects -------------------------------------------------------------------------------

  bool OnOwnThread() const override { return std::this_thread::get_id() == thread_; }
  void EndLater(std::function<void()> end) override;
  /// Ends the objects whose last reference went on another thread. As with any object's end, the server may be gone
  /// afterwards, unless the caller holds an object of it.
  void EndReleased();
  void Lock(bool lock);
  Result RunLoop(std::int32_t milliseconds);
  Result HandleNext(std::int32_t milliseconds);
  Result CreateSurface(std::int32_t width, std::int32_t height, ISurface** surface);
  Result GetClipboardPicture(IPicture** picture);
  Result GetWaits(LoopDescriptor* descriptors, std::uint32_t capacity, std::uint32_t* count, std::int64_t* nanoseconds);
  Result SetDialogs(IHostDialogs* dialogs);

  void ObjectMade() override { ++objects_; }
  void ObjectGone() override;

 private:
  Platform& platform_;
  HostDialogs* const dialogs_;
  const std::thread::id thread_ = std::this_thread::get_id();
  std::uint32_t objects_ = 0;
  std::uint32_t locks_ = 0;
  std::mutex released_mutex_;
  std::vector<std::function<void()>> released_;  // the ends that wait for this server's thread
};

}  // namespace orbelcast::server
