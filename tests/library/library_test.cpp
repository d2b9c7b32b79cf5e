/// The library as a host meets it: loaded by its file name, through its entry points alone.

#include <dlfcn.h>
#include <gmock/gmock.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <barrier>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>

#include "fakes/temporary_folder.h"
#include "orbelcast/orbelcast.h"

namespace orbelcast::server {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr const char* kPath = ORBELCAST_LIBRARY;

/// The tests' own registry file, not the user's.
class LibraryTest : public testing::Test {
 protected:
  LibraryTest() { ::setenv("ORBELCAST_REGISTRY", registry_.c_str(), 1); }
  ~LibraryTest() override { ::unsetenv("ORBELCAST_REGISTRY"); }

  const fakes::TemporaryFolder folder_;
  const std::string registry_ = folder_.File("registry.json");
};

class Library {
 public:
  explicit Library(const std::string& path = kPath) : handle_(::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)) {}
  ~Library() {
    if (handle_ != nullptr) ::dlclose(handle_);
  }
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;

  bool Loaded() const { return handle_ != nullptr; }
  Result GetClassObject(const Guid& class_id, const Guid& interface_id, void** object) const {
    return Entry<GetClassObjectFunction>("DllGetClassObject")(&class_id, &interface_id, object);
  }
  Result CanUnloadNow() const { return Entry<CanUnloadNowFunction>("DllCanUnloadNow")(); }
  Result Register() const { return Entry<RegisterServerFunction>("DllRegisterServer")(); }
  Result Unregister() const { return Entry<RegisterServerFunction>("DllUnregisterServer")(); }

  Held<IClassFactory> Factory(const Guid& class_id = kVideoServerPushClass) const {
    Held<IClassFactory> factory;
    EXPECT_EQ(GetClassObject(class_id, IClassFactory::kId, factory.Put()), S_OK);
    return factory;
  }

 private:
  template <typename Function>
  Function* Entry(const char* name) const {
    return reinterpret_cast<Function*>(::dlsym(handle_, name));
  }

  void* const handle_;
};

Held<IDispatch> Create(const Held<IClassFactory>& factory) {
  Held<IDispatch> control;
  EXPECT_EQ(factory->CreateInstance(nullptr, &IDispatch::kId, control.Put()), S_OK);
  return control;
}

TEST_F(LibraryTest, ExportsItsFourEntryPointsAndNothingElse) {
  std::FILE* const output = ::popen((std::string("nm -Dj --defined-only '") + kPath + "' | sort").c_str(), "r");
  std::string names(4096, ' ');
  names.resize(std::fread(names.data(), 1, names.size(), output));
  EXPECT_EQ(::pclose(output), 0);
  EXPECT_EQ(names, "DllCanUnloadNow\nDllGetClassObject\nDllRegisterServer\nDllUnregisterServer\n");
}

TEST_F(LibraryTest, IsUsedCountsEveryUseAndIsUnloadedTwice) {
  for (int round = 0; round < 2; ++round) {
    {
      const Library library;
      ASSERT_TRUE(library.Loaded()) << ::dlerror();
      EXPECT_EQ(library.CanUnloadNow(), S_OK);
      auto factory = library.Factory();
      EXPECT_EQ(library.CanUnloadNow(), S_FALSE);
      EXPECT_EQ(factory->LockServer(1), S_OK);
      factory.Release();
      EXPECT_EQ(library.CanUnloadNow(), S_FALSE) << "locked";
      EXPECT_EQ(library.Factory()->LockServer(0), S_OK);
      EXPECT_EQ(library.CanUnloadNow(), S_OK);
      auto player = Create(library.Factory(kUserControl1Class));
      EXPECT_EQ(player.As<IHostServices>()->RunLoop(20), S_OK);
      Held<ISurface> surface;
      EXPECT_EQ(player.As<IHostServices>()->CreateSurface(4, 4, surface.PutTyped()), S_OK);
      player.Release();
      EXPECT_EQ(library.CanUnloadNow(), S_FALSE);
      surface.Release();
      EXPECT_EQ(library.CanUnloadNow(), S_OK);
    }
    EXPECT_EQ(::dlopen(kPath, RTLD_NOW | RTLD_NOLOAD), nullptr) << "it is still loaded";
  }
}

TEST_F(LibraryTest, BelongsToTheThreadThatCameFirst) {
  const Library library;
  ASSERT_TRUE(library.Loaded());
  // Of several that come at once, one is first.
  std::atomic<int> first = 0;
  std::atomic<int> refused = 0;
  std::barrier all(4);
  std::array<std::thread, 4> threads;
  for (auto& thread : threads) {
    thread = std::thread([&] {
      Held<IClassFactory> factory;
      all.arrive_and_wait();
      const Result result = library.GetClassObject(kVideoServerPushClass, IClassFactory::kId, factory.Put());
      ++(result == S_OK ? first : refused);
      EXPECT_TRUE(result == S_OK || result == RPC_E_WRONG_THREAD);
      all.arrive_and_wait();
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(first, 1);
  EXPECT_EQ(refused, 3);

  auto viewer = Create(library.Factory());
  std::thread([&] {
    EXPECT_EQ(viewer->Invoke(0x68030000, kPropertyGet, nullptr, nullptr, nullptr), RPC_E_WRONG_THREAD);
    EXPECT_EQ(viewer.As<IHostServices>()->HandleNext(0), RPC_E_WRONG_THREAD);
    EXPECT_EQ(viewer.As<IMemberList>()->GetCount(), 48u);
    EXPECT_EQ(library.CanUnloadNow(), S_FALSE);
    viewer.Release();  // As a garbage collector does: it ends when its own thread comes by.
  }).join();
  EXPECT_EQ(library.CanUnloadNow(), S_OK);
}

// A loop of the host's own around it is that of the Python package with asyncio.
TEST_F(LibraryTest, ACallThatIsStartedHoldsUpNobodyAndHasItsOwnCopyOfItsArguments) {
  constexpr std::int32_t kConnect = 0x6003000f;
  const Library library;
  {
    const auto viewer = Create(library.Factory());
    const auto starter = viewer.As<IStarter>();

    Variant rate = MakeText("40");
    Variant value = MakeReference(rate);
    Arguments arguments{&value, 1, 0, nullptr};
    EXPECT_EQ(starter->Start(0x68030000, kPropertyPut, &arguments, nullptr, nullptr), S_OK);
    EXPECT_EQ(std::string(rate.text, rate.size), "30");
    Clear(rate);

    for (const bool released : {false, true}) {
      {
        const std::string address = "http://127.0.0.1:1/";
        value = MakeText(address);
        EXPECT_EQ(starter->Start(kConnect, kMethod, &arguments, nullptr, nullptr), S_FALSE);
      }
      if (released) break;
      EXPECT_EQ(viewer.As<IHostServices>()->RunLoop(20), S_OK);
    }
  }
  EXPECT_EQ(library.CanUnloadNow(), S_OK) << "the call that went on was not ended";
}

TEST_F(LibraryTest, RegistersItsClassesAndRemovesThem) {
  // The path is the file's own, however the host named it and wherever it goes.
  const auto here = std::filesystem::current_path();
  const std::filesystem::path file(kPath);
  std::filesystem::current_path(file.parent_path());
  const Library library("./" + file.filename().string());
  std::filesystem::current_path(here);
  ASSERT_TRUE(library.Loaded());
  EXPECT_EQ(library.Register(), S_OK);
  EXPECT_THAT(fakes::ReadFile(registry_), HasSubstr('"' + std::filesystem::canonical(file).string() + '"'));
  EXPECT_THAT(fakes::ReadFile(registry_), HasSubstr("Orbelcast.VideoServerPush"));
  EXPECT_EQ(library.Unregister(), S_OK);
  EXPECT_THAT(fakes::ReadFile(registry_), Not(HasSubstr("Orbelcast")));
  EXPECT_EQ(library.Unregister(), S_OK) << "there is nothing left to remove";

  ::setenv("ORBELCAST_REGISTRY", (registry_ + "/below/a/file").c_str(), 1);
  EXPECT_EQ(library.Register(), SELFREG_E_CLASS);
}

}  // namespace
}  // namespace orbelcast::server
