#pragma once

#include <cstdint>
#include <functional>
#include <mutex>
#include <string_view>
#include <thread>
#include <vector>

#include "assembly/headless_platform.h"
#include "orbelcast/orbelcast.h"
#include "server/object.h"

namespace orbelcast {
class VideoServerPush;
}

/// The in-process control server: class factories, late-bound controls and event sinks over the interface tables.
///
/// `orbelcast/orbelcast.h` is what hosts see of it. One mechanism serves every class; what differs between them stands
/// in their ControlClass. control_object.h is a control as hosts reach it, dispatch.h the way of a call, module/ the
/// library.
namespace orbelcast::server {

/// The classes, the platform that their controls run on, and the count of what is alive.
///
/// Outlives every object that it made. A program that links this room makes one of its own; the library's entry points
/// make one for whoever loaded it.
class ControlServer final : public ObjectCount {
 public:
  /// Controls ask nobody: every dialog is cancelled.
  ControlServer() = default;
  /// Controls ask `dialogs`, which outlives the server.
  explicit ControlServer(Dialogs& dialogs) : platform_(dialogs) {}
  ~ControlServer() override;
  ControlServer(const ControlServer&) = delete;
  ControlServer& operator=(const ControlServer&) = delete;

  /// Gives the class factory of `class_id`, as the entry point does.
  Result GetClassObject(const Guid* class_id, const Guid* interface_id, void** object);

  /// Nothing of it is in use: no object, no lock, and nobody is inside a handler of its loop.
  bool Idle() const { return objects_ == 0 && locks_ == 0 && !platform_.Loop().InHandler(); }
  /// Called whenever the last object or lock has gone, as the last thing: it may end the server.
  std::function<void()> OnUnused;

  /// The members of a viewer that lies inside another control, which stays its owner; null where there is no memory for
  /// it. Nothing is to be called through it once the viewer has ended.
  Held<IDispatch> DispatchOf(VideoServerPush& viewer);

  Platform& GetPlatform() { return platform_.Get(); }

  // ---- What its objects hand on to their hosts --------------------------------------------------------------------

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

  void ObjectMade() override { ++objects_; }
  void ObjectGone() override;

 private:
  HeadlessPlatform platform_;
  const std::thread::id thread_ = std::this_thread::get_id();
  std::uint32_t objects_ = 0;
  std::uint32_t locks_ = 0;
  std::mutex released_mutex_;
  std::vector<std::function<void()>> released_;  // the ends that wait for this server's thread
};

/// The class of that name ("VideoServerPush"), letter by letter; null where there is none.
const Guid* FindClass(std::string_view name);

}  // namespace orbelcast::server
