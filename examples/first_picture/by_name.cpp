// The first picture in C++ that links nothing: by_name LIBRARY ADDRESS FILE
#include <dlfcn.h>

#include <orbelcast/orbelcast.h>

#include <array>

using namespace orbelcast::server;

template <std::size_t N>
void Call(const Held<IDispatch>& viewer, const char* method, std::array<Variant, N> values) {
  std::int32_t id = 0;
  viewer->GetIDsOfNames(&method, 1, &id);
  Arguments arguments{values.data(), N, 0, nullptr};
  viewer->Invoke(id, kMethod, &arguments, nullptr, nullptr);
}

int main(int, char** argv) {
  void* const library = dlopen(argv[1], RTLD_NOW);
  const auto get = reinterpret_cast<GetClassObjectFunction*>(dlsym(library, "DllGetClassObject"));
  Held<IClassFactory> factory;
  Held<IDispatch> viewer;
  get(&kVideoServerPushClass, &IClassFactory::kId, factory.Put());
  factory->CreateInstance(nullptr, &IDispatch::kId, viewer.Put());
  Call(viewer, "Connect", std::array{MakeText(argv[2]), MakeBoolean(true)});  // one picture, no stream
  Call(viewer, "SaveImage", std::array{MakeText(argv[3])});
}
