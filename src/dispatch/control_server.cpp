#include "dispatch/control_server.h"

#include <algorithm>
#include <chrono>

#include "dispatch/class_factory.h"
#include "dispatch/control_object.h"
#include "dispatch/returned.h"

namespace orbelcast::server {

namespace {

// A handler that was woken ends with the next look at the queue; one that another one waits for, a look later.
constexpr int kLooksForHandlers = 100;

/// A time to wait for: done when it has passed.
class Alarm {
 public:
  Alarm(EventQueue& queue, std::int32_t milliseconds)
      : queue_(queue), id_(queue.ArmTimer(std::chrono::milliseconds(milliseconds), [this] { passed.Complete(); })) {}
  ~Alarm() { queue_.CancelTimer(id_); }
  Alarm(const Alarm&) = delete;
  Alarm& operator=(const Alarm&) = delete;

  Completion passed;

 private:
  EventQueue& queue_;
  const EventQueue::TimerId id_;
};

/// A surface that a host lends for drawing, for as long as it lives.
class SurfaceObject final : public PictureObject<ISurface> {
 public:
  SurfaceObject(ControlServer& server, int width, int height)
      : PictureObject(server, Surface(width, height, Rgb(0, 0, 0))),
        device_contexts_(server.GetPlatform().device_contexts),
        number_(device_contexts_.Add(Drawn())) {}

  Result GetDeviceContext(std::int32_t* device_context) override {
    if (device_context == nullptr) return E_POINTER;
    *device_context = number_;
    return S_OK;
  }

 private:
  ~SurfaceObject() override { device_contexts_.Remove(number_); }

  DeviceContexts& device_contexts_;
  const std::int32_t number_;
};

}  // namespace

ControlServer::~ControlServer() {
  // The handlers of controls that have ended have been woken and need the services once more to return.
  for (int look = 0; look < kLooksForHandlers && platform_.loop.Handlers() > 0; ++look) {
    platform_.loop.Queue().HandleDue();
  }
}

Result ControlServer::GetClassObject(const Guid* class_id, const Guid* interface_id, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (class_id == nullptr || interface_id == nullptr) return E_POINTER;
  if (!OnOwnThread()) return RPC_E_WRONG_THREAD;
  return Guarded([&] {
    const ControlClass* const found = FindClass(*class_id);
    if (found == nullptr) return CLASS_E_CLASSNOTAVAILABLE;
    const Held<ClassFactory> factory(new ClassFactory(*this, *found));
    return factory->QueryInterface(interface_id, object);
  });
}

Held<IDispatch> ControlServer::Host(const ControlClass& control_class, std::shared_ptr<void> control, Raises raises) {
  return Held<IDispatch>(new ControlObject(*this, control_class, std::move(control), raises));
}

void ControlServer::Lock(bool lock) {
  if (lock) {
    ++locks_;
  } else if (locks_ > 0) {
    --locks_;
  }
}

Result ControlServer::RunLoop(std::int32_t milliseconds) {
  if (milliseconds < 0) return E_INVALIDARG;
  MessageLoop& loop = GetPlatform().loop;
  Alarm alarm(loop.Queue(), milliseconds);
  loop.Wait(alarm.passed);
  return S_OK;
}

Result ControlServer::HandleNext(std::int32_t milliseconds) {
  if (milliseconds < 0) return E_INVALIDARG;
  MessageLoop& loop = GetPlatform().loop;
  if (platform_.loop.InHandler()) {
    loop.Yield();
    return S_OK;
  }
  if (milliseconds == 0) {
    loop.Queue().HandleDue();
    return S_OK;
  }
  const Alarm alarm(loop.Queue(), milliseconds);
  loop.Queue().HandleNext();
  return alarm.passed.IsDone() ? S_FALSE : S_OK;
}

Result ControlServer::CreateSurface(std::int32_t width, std::int32_t height, ISurface** surface) {
  if (surface == nullptr) return E_POINTER;
  *surface = nullptr;
  const bool fits = width > 0 && height > 0 && width <= Surface::kMaxSide && height <= Surface::kMaxSide &&
                    std::int64_t{width} * height <= Surface::kMaxPixels;
  if (!fits) return E_INVALIDARG;
  *surface = new SurfaceObject(*this, width, height);
  return S_OK;
}

Result ControlServer::GetClipboardPicture(IPicture** picture) {
  if (picture == nullptr) return E_POINTER;
  *picture = nullptr;
  Surface copy = GetPlatform().clipboard.Picture();
  if (copy.Empty()) return S_FALSE;
  *picture = new PictureObject<IPicture>(*this, std::move(copy));
  return S_OK;
}

Result ControlServer::GetWaits(LoopDescriptor* descriptors, std::uint32_t capacity, std::uint32_t* count,
                               std::int64_t* nanoseconds) {
  if (count == nullptr || nanoseconds == nullptr || (descriptors == nullptr && capacity > 0)) return E_POINTER;
  const auto waits = GetPlatform().loop.Queue().WaitsFor();
  if (!waits) return E_NOTIMPL;
  *count = static_cast<std::uint32_t>(waits->sockets.size());
  *nanoseconds = waits->next ? waits->next->count() : -1;
  for (std::uint32_t i = 0; i < std::min(*count, capacity); ++i) {
    const auto& [socket, events] = waits->sockets[i];
    descriptors[i] = {socket, static_cast<std::uint16_t>(events.readable), static_cast<std::uint16_t>(events.writable)};
  }
  return S_OK;
}

Result ControlServer::SetDialogs(IHostDialogs* dialogs) {
  if (dialogs_ == nullptr) return E_NOTIMPL;
  if (dialogs != nullptr) dialogs->AddRef();
  dialogs_->SetHost(Held<IHostDialogs>(dialogs));
  return S_OK;
}

void ControlServer::EndLater(std::function<void()> end) {
  const std::lock_guard lock(released_mutex_);
  released_.push_back(std::move(end));
  // Under the lock, which EndReleased takes as well: the server cannot end before this returns.
  if (OnReleasedElsewhere) OnReleasedElsewhere();
}

void ControlServer::EndReleased() {
  std::vector<std::function<void()>> ends;
  {
    const std::lock_guard lock(released_mutex_);
    ends.swap(released_);
  }
  for (const auto& end : ends) end();
}

void ControlServer::ObjectGone() {
  --objects_;
  if (objects_ == 0 && locks_ == 0 && OnUnused) OnUnused();
}

}  // namespace orbelcast::server
