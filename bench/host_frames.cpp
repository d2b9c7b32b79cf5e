// A host of the library that looks at frames, for bench/python_frames.py: host_frames LIBRARY ADDRESS COUNT
// bytes|pixels. It prints the microseconds of CPU a frame.

#include <dlfcn.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string_view>
#include <utility>

#include "orbelcast/orbelcast.h"

using namespace orbelcast::server;

namespace {

constexpr std::int32_t kConnect = 0x6003000f;
constexpr std::int32_t kFrameRate = 0x68030000;
constexpr std::int32_t kFrameTime = 10;  // the event of each frame
constexpr std::int32_t kGetPictureArray = 0x60030065;
constexpr std::int32_t kGetPicture = 0x60030066;

/// The sum of a few bytes, so that they are looked at.
unsigned Look(const void* bytes, std::size_t size) {
  const auto* const each = static_cast<const unsigned char*>(bytes);
  return size == 0 ? 0 : each[0] + each[size / 2] + each[size - 1];
}

unsigned LookAtBytes(IDispatch& viewer) {
  Variant bytes{};
  viewer.Invoke(kGetPictureArray, kMethod, nullptr, &bytes, nullptr);
  const unsigned sum = Look(bytes.bytes, bytes.size);
  Clear(bytes);
  return sum;
}

unsigned LookAtPixels(IDispatch& viewer) {
  Variant result{};
  viewer.Invoke(kGetPicture, kMethod, nullptr, &result, nullptr);
  unsigned sum = 0;
  if (result.object != nullptr) {
    auto& picture = static_cast<IPicture&>(*result.object);
    std::int32_t width = 0;
    std::int32_t height = 0;
    const std::uint32_t* pixels = nullptr;
    picture.GetSize(&width, &height);
    picture.GetPixels(&pixels);
    sum = Look(pixels, sizeof *pixels * static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
  }
  Clear(result);
  return sum;
}

void Put(IDispatch& viewer, std::int32_t id, InvokeKind kind, Variant value) {
  Arguments arguments{&value, 1, 0, nullptr};
  viewer.Invoke(id, kind, &arguments, nullptr, nullptr);
}

class Sink final : public IEventSink {
 public:
  bool new_frame = false;

  Result QueryInterface(const Guid*, void**) override { return E_NOINTERFACE; }
  std::uint32_t AddRef() override { return 1; }
  std::uint32_t Release() override { return 1; }
  Result Invoke(std::int32_t id, Arguments*) override {
    new_frame = new_frame || id == kFrameTime;
    return S_OK;
  }
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 5) return 2;
  void* const library = ::dlopen(argv[1], RTLD_NOW);
  if (library == nullptr) return 1;
  const double seconds = std::atof(argv[3]);
  const bool pixels = std::string_view(argv[4]) == "pixels";
  const auto get_class_object = reinterpret_cast<GetClassObjectFunction*>(::dlsym(library, "DllGetClassObject"));
  Held<IClassFactory> factory;
  get_class_object(&kVideoServerPushClass, &IClassFactory::kId, factory.Put());
  Held<IDispatch> viewer;
  factory->CreateInstance(nullptr, &IDispatch::kId, viewer.Put());
  viewer.As<IControl>()->Place(640 * 15, 480 * 15);
  Sink sink;
  Held<IConnectionPoint> point;
  viewer.As<IConnectionPointContainer>()->FindConnectionPoint(&kVideoServerPushEvents, point.PutTyped());
  std::uint32_t cookie = 0;
  point->Advise(&sink, &cookie);
  Put(*viewer.Get(), kFrameRate, kPropertyPut, MakeLong(30));
  Put(*viewer.Get(), kConnect, kMethod, MakeText(argv[2]));

  const auto services = viewer.As<IHostServices>();
  unsigned sum = 0;
  int count = 0;
  const std::clock_t start = std::clock();
  const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
  while (std::chrono::steady_clock::now() < end) {
    services->HandleNext(100);
    if (!std::exchange(sink.new_frame, false)) continue;
    ++count;
    sum += pixels ? LookAtPixels(*viewer.Get()) : LookAtBytes(*viewer.Get());
  }
  const double used = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
  point->Unadvise(cookie);
  std::printf("%.1f\n", 1e6 * used / count);
  return sum > 0 ? 0 : 1;
}
