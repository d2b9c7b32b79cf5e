#include <dlfcn.h>

#include <memory>

#include "adapters/posix/file_registry.h"
#include "server/control_server.h"
#include "server/registration.h"

/// The library that hosts load: the four entry points, and the one control server that they share.
namespace orbelcast::server {

namespace {

/// The server while anything of it is used. A host that ends with objects alive leaves it to the system: their memory
/// must stay good until the last instruction.
class Library {
 public:
  ~Library() {
    if (!EndServerIfIdle()) static_cast<void>(server_.release());  // NOLINT(bugprone-unused-return-value): see above.
  }

  ControlServer& Server() {
    if (!server_) {
      server_ = std::make_unique<ControlServer>();
      server_->OnUnused = [this] { EndServerIfIdle(); };
    }
    return *server_;
  }

  /// False where it is in use.
  bool EndServerIfIdle() {
    if (server_ && (!server_->OnOwnThread() || !server_->Idle())) return false;
    const std::unique_ptr<ControlServer> ending = std::move(server_);
    return true;
  }

 private:
  std::unique_ptr<ControlServer> server_;
};

Library& TheLibrary() {
  static Library library;
  return library;
}

std::string OwnPath() {
  Dl_info info{};
  if (::dladdr(reinterpret_cast<const void*>(&TheLibrary), &info) == 0 || info.dli_fname == nullptr) return {};
  return info.dli_fname;
}

}  // namespace

}  // namespace orbelcast::server

using orbelcast::server::Guid;
using orbelcast::server::Result;

extern "C" Result DllGetClassObject(const Guid* class_id, const Guid* interface_id, void** object) {
  using namespace orbelcast::server;
  return Guarded([&] {
    const Result result = TheLibrary().Server().GetClassObject(class_id, interface_id, object);
    TheLibrary().EndServerIfIdle();
    return result;
  });
}

extern "C" Result DllCanUnloadNow() {
  using namespace orbelcast::server;
  return Guarded([] { return TheLibrary().EndServerIfIdle() ? S_OK : S_FALSE; });
}

extern "C" Result DllRegisterServer() {
  using namespace orbelcast::server;
  return Guarded([] {
    orbelcast::FileRegistry registry;
    return RegisterClasses(registry, OwnPath()) ? S_OK : SELFREG_E_CLASS;
  });
}

extern "C" Result DllUnregisterServer() {
  using namespace orbelcast::server;
  return Guarded([] {
    orbelcast::FileRegistry registry;
    return UnregisterClasses(registry) ? S_OK : SELFREG_E_CLASS;
  });
}
