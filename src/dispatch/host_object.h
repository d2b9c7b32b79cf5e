#pragma once

#include "dispatch/control_class.h"
#include "dispatch/control_server.h"
#include "dispatch/object.h"
#include "orbelcast/orbelcast.h"

namespace orbelcast::server {

/// The common base of class factories and controls: the message loop, dialogs, and the list of members.
template <typename First, typename... Interfaces>
class HostObject : public Object<First, Interfaces..., IHostServices, IMemberList, IHostLoop, IDialogServices> {
  using Base = Object<First, Interfaces..., IHostServices, IMemberList, IHostLoop, IDialogServices>;

 public:
  HostObject(ControlServer& server, const ControlClass& control_class)
      : Base(server), server_(server), class_(control_class) {}

  Result RunLoop(std::int32_t milliseconds) override {
    return Entered([&] { return server_.RunLoop(milliseconds); });
  }
  Result HandleNext(std::int32_t milliseconds) override {
    return Entered([&] { return server_.HandleNext(milliseconds); });
  }
  Result CreateSurface(std::int32_t width, std::int32_t height, ISurface** surface) override {
    return Entered([&] { return server_.CreateSurface(width, height, surface); });
  }
  Result GetClipboardPicture(IPicture** picture) override {
    return Entered([&] { return server_.GetClipboardPicture(picture); });
  }

  Result GetWaits(LoopDescriptor* descriptors, std::uint32_t capacity, std::uint32_t* count,
                  std::int64_t* nanoseconds) override {
    return Entered([&] { return server_.GetWaits(descriptors, capacity, count, nanoseconds); });
  }
  Result SetDialogs(IHostDialogs* dialogs) override {
    return Entered([&] { return server_.SetDialogs(dialogs); });
  }

  std::uint32_t GetCount() override { return static_cast<std::uint32_t>(class_.members.size()); }
  Result GetMember(std::uint32_t index, const MemberInfo** member) override {
    if (member == nullptr) return E_POINTER;
    *member = nullptr;
    if (index >= class_.members.size()) return E_INVALIDARG;
    *member = &class_.members[index];
    return S_OK;
  }

 protected:
  /// Every entry point's frame: on the right thread alone, with the object kept until it returns, and no exception out.
  template <typename Work>
  Result Entered(Work work) {
    if (!server_.OnOwnThread()) return RPC_E_WRONG_THREAD;
    const typename Base::Call call(*this);
    server_.EndReleased();
    return Guarded(work);
  }
  ControlServer& Server() { return server_; }
  const ControlClass& Class() const { return class_; }

 private:
  ControlServer& server_;
  const ControlClass& class_;
};

}  // namespace orbelcast::server
