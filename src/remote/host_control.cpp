#include "remote/host_control.h"

#include <map>
#include <memory>

#include "remote/script_error.h"
#include "remote/variant_json.h"

namespace orbelcast {

namespace {

using server::Held;
using server::Succeeded;

}  // namespace

/// The sink of the control's events.
class HostControl::Sink final : public server::IEventSink {
 public:
  Sink(server::IMemberList& members, OnEvent on_event) : on_event_(std::move(on_event)) {
    ForEachMember(members, [this](const server::MemberInfo& member) {
      if (member.kind == server::kEventMember) events_[member.id] = &member;
    });
  }

  server::Result QueryInterface(const server::Guid* id, void** object) override {
    const bool known = *id == server::IUnknown::kId || *id == server::IEventSink::kId;
    *object = known ? static_cast<server::IEventSink*>(this) : nullptr;
    if (!known) return server::E_NOINTERFACE;
    AddRef();
    return server::S_OK;
  }
  std::uint32_t AddRef() override { return ++references_; }
  std::uint32_t Release() override {
    const std::uint32_t left = --references_;
    if (left == 0) delete this;
    return left;
  }

  server::Result Invoke(std::int32_t id, server::Arguments* arguments) override {
    const auto found = events_.find(id);
    if (found == events_.end()) return server::DISP_E_MEMBERNOTFOUND;
    const server::MemberInfo& event = *found->second;
    Json values = Json::Object();
    for (std::uint32_t i = 0; i < arguments->count && i < event.argument_count; ++i) {
      values[event.arguments[i].name] = ToJson(arguments->values[i]);
    }
    // A copy: telling may release the control, and this sink with it.
    const OnEvent on_event = on_event_;
    on_event(event.name, std::move(values));
    return server::S_OK;
  }

 private:
  ~Sink() = default;

  OnEvent on_event_;
  std::map<std::int32_t, const server::MemberInfo*> events_;
  std::uint32_t references_ = 1;
};

HostControl::HostControl(server::ControlServer& server, const std::string& class_name, OnEvent on_event)
    : class_(FindClass(class_name)) {
  const server::ControlClass& control_class = class_;
  std::shared_ptr<void> control = control_class.create(server.GetPlatform());
  if (control_class.id == server::kVideoServerPushClass) viewer_ = static_cast<VideoServerPush*>(control.get());
  if (control_class.id == server::kUserControl1Class) player_ = static_cast<UserControl1*>(control.get());
  control_ = server.Host(control_class, std::move(control));
  site_ = control_.As<server::IControl>();
  if (viewer_ != nullptr) ListenTo(server::kVideoServerPushEvents, std::move(on_event));
}

HostControl::~HostControl() {
  if (point_) point_->Unadvise(cookie_);
}

const server::ControlClass& HostControl::FindClass(const std::string& class_name) {
  const server::ControlClass* const found = server::FindClass(class_name);
  if (found == nullptr) {
    throw ScriptError("there is no class '" + class_name + "'; there are VideoServerPush and UserControl1");
  }
  return *found;
}

void HostControl::Load(const std::vector<std::pair<std::string, std::string>>& properties) {
  std::vector<server::PersistedProperty> bag;
  bag.reserve(properties.size());
  for (const auto& [key, text] : properties) {
    bag.push_back(
        {key.data(), static_cast<std::uint32_t>(key.size()), static_cast<std::uint32_t>(text.size()), text.data()});
  }
  Check(site_->Load(bag.data(), static_cast<std::uint32_t>(bag.size())));
}

void HostControl::ListenTo(const server::Guid& events, OnEvent on_event) {
  const auto points = control_.As<server::IConnectionPointContainer>();
  const auto members = control_.As<server::IMemberList>();
  Check(points->FindConnectionPoint(&events, point_.PutTyped()));
  const Held<server::IEventSink> sink(new Sink(*members.Get(), std::move(on_event)));
  Check(point_->Advise(sink.Get(), &cookie_));
}

void HostControl::Check(server::Result result) {
  if (!Succeeded(result)) throw ScriptError("the control answered " + std::to_string(result));
}

}  // namespace orbelcast
