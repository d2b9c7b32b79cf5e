// A host that links nothing of Orbelcast: it loads the library, makes a viewer, and saves a camera's picture.
//
//     c++ -std=c++20 -I include examples/host.cpp -o host -ldl
//     ./host build/dev/lib/liborbelcast.so http://127.0.0.1:8080/live/1 picture.jpg

#include <dlfcn.h>

#include <cstdio>

#include "orbelcast/orbelcast.h"

using namespace orbelcast::server;

namespace {

/// Told the viewer's events. It lives as long as main, so it counts no references.
class Sink final : public IEventSink {
 public:
  bool connected = false;
  bool informed = false;

  Result QueryInterface(const Guid* id, void** object) override {
    const bool known = *id == IUnknown::kId || *id == IEventSink::kId;
    *object = known ? this : nullptr;
    return known ? S_OK : E_NOINTERFACE;
  }
  std::uint32_t AddRef() override { return 1; }
  std::uint32_t Release() override { return 1; }

  Result Invoke(std::int32_t id, Arguments* arguments) override {
    constexpr std::int32_t kStreamInfo = 1;
    constexpr std::int32_t kConnected = 3;
    if (id == kConnected) {
      connected = true;
      std::puts("Connected");
    } else if (id == kStreamInfo) {
      informed = true;
      std::printf("StreamInfo: %d bytes and %d pictures a second\n", Number(arguments, 0), Number(arguments, 1));
    }
    return S_OK;
  }

 private:
  // These arguments come by reference: the value is in the variable that they point to.
  static int Number(const Arguments* arguments, int position) { return arguments->values[position].reference->i32; }
};

/// Calls a member by its name.
Result Call(IDispatch& control, const char* name, InvokeKind kind, Variant* values, std::uint32_t count) {
  std::int32_t id = 0;
  const Result found = control.GetIDsOfNames(&name, 1, &id);
  if (!Succeeded(found)) return found;
  Arguments arguments{};
  arguments.values = values;
  arguments.count = count;
  return control.Invoke(id, kind, &arguments, nullptr, nullptr);
}

bool Watch(IClassFactory& factory, const char* address, const char* file) {
  Held<IDispatch> viewer;
  if (!Succeeded(factory.CreateInstance(nullptr, &IDispatch::kId, viewer.Put()))) return false;
  viewer.As<IControl>()->Place(640 * 15, 480 * 15);

  Sink sink;
  Held<IConnectionPoint> point;
  viewer.As<IConnectionPointContainer>()->FindConnectionPoint(&kVideoServerPushEvents, point.PutTyped());
  std::uint32_t cookie = 0;
  point->Advise(&sink, &cookie);

  // A viewer asks at most 30 times a second, and says so in the variable that it was given.
  Variant rate = MakeLong(40);
  Variant by_reference = MakeReference(rate);
  Call(*viewer.Get(), "FrameRate", kPropertyPut, &by_reference, 1);
  std::printf("FrameRate: %d\n", rate.i32);

  Variant url = MakeText(address);
  Call(*viewer.Get(), "Connect", kMethod, &url, 1);

  const auto services = viewer.As<IHostServices>();
  for (int tenths = 0; tenths < 50 && !(sink.connected && sink.informed); ++tenths) services->RunLoop(100);

  Variant name = MakeText(file);
  Call(*viewer.Get(), "SaveImage", kMethod, &name, 1);
  point->Unadvise(cookie);
  return sink.connected && sink.informed;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fprintf(stderr, "usage: %s LIBRARY ADDRESS FILE\n", argv[0]);
    return 2;
  }
  void* const library = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) {
    std::fprintf(stderr, "%s\n", dlerror());
    return 1;
  }
  const auto get_class_object = reinterpret_cast<GetClassObjectFunction*>(dlsym(library, "DllGetClassObject"));
  const auto can_unload_now = reinterpret_cast<CanUnloadNowFunction*>(dlsym(library, "DllCanUnloadNow"));

  bool watched = false;
  {
    Held<IClassFactory> factory;
    if (Succeeded(get_class_object(&kVideoServerPushClass, &IClassFactory::kId, factory.Put()))) {
      watched = Watch(*factory.Get(), argv[2], argv[3]);
    }
  }
  const bool unloadable = can_unload_now() == S_OK;
  std::printf("can unload: %s\n", unloadable ? "yes" : "no");
  if (unloadable) dlclose(library);
  return watched && unloadable ? 0 : 1;
}
