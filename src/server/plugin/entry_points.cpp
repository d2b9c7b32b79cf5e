#include <memory>
#include <mutex>
#include <string>

#include "adapters/posix/file_registry.h"
#include "adapters/posix/own_folder.h"
#include "adapters/posix/wakeup.h"
#include "assembly/headless_platform.h"
#include "dispatch/control_server.h"
#include "server/registration.h"

/// The library that hosts load: the four entry points, and the one control server that they share.
namespace orbelcast::server {

namespace {

/// A control server with the platform that its controls run on. There is no screen: dialogs are the host's to answer.
struct HostedServer {
  HostDialogs dialogs;
  HeadlessPlatform platform{dialogs};
  ControlServer server{platform.Get(), &dialogs};
  Wakeup wakeup{platform.Get().loop.Queue(), [this] { server.EndReleased(); }};
};

/// The server while anything of it is used: of the thread that asked first, and of it alone until all is given back. A
/// host that ends with objects alive leaves it to the system: their memory must stay good until the last instruction.
class Library {
 public:
  ~Library() {
    if (!EndServerIfIdle()) static_cast<void>(hosted_.release());  // NOLINT(bugprone-unused-return-value): see above.
  }

  /// The server, made where there is none. Null on any thread but its own.
  ControlServer* Server() {
    const std::lock_guard lock(mutex_);
    if (!hosted_) {
      hosted_ = std::make_unique<HostedServer>();
      hosted_->server.OnUnused = [this] { EndServerIfIdle(); };
      hosted_->server.OnReleasedElsewhere = [&wakeup = hosted_->wakeup] { wakeup.Wake(); };
    }
    return hosted_->server.OnOwnThread() ? &hosted_->server : nullptr;
  }

  /// False where it is in use. Only its own thread ends it, so that the thread's references to it stay valid.
  bool EndServerIfIdle() {
    if (ControlServer* const server = OwnServer()) server->EndReleased();
    std::unique_ptr<HostedServer> ending;
    const std::lock_guard lock(mutex_);
    if (hosted_ && (!hosted_->server.OnOwnThread() || !hosted_->server.Idle())) return false;
    ending = std::move(hosted_);
    return true;
  }

 private:
  ControlServer* OwnServer() {
    const std::lock_guard lock(mutex_);
    return hosted_ && hosted_->server.OnOwnThread() ? &hosted_->server : nullptr;
  }

  std::mutex mutex_;
  std::unique_ptr<HostedServer> hosted_;
};

Library& TheLibrary() {
  static Library library;
  return library;
}

/// The library's own file, found when the library is loaded: the host may have named it from a folder that it leaves.
const std::string kOwnPath = OwnFile();

}  // namespace

}  // namespace orbelcast::server

using orbelcast::server::Guid;
using orbelcast::server::Result;

extern "C" Result DllGetClassObject(const Guid* class_id, const Guid* interface_id, void** object) {
  using namespace orbelcast::server;
  return Guarded([&] {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    ControlServer* const server = TheLibrary().Server();
    if (server == nullptr) return RPC_E_WRONG_THREAD;
    const Result result = server->GetClassObject(class_id, interface_id, object);
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
    return !kOwnPath.empty() && RegisterClasses(registry, kOwnPath) ? S_OK : SELFREG_E_CLASS;
  });
}

extern "C" Result DllUnregisterServer() {
  using namespace orbelcast::server;
  return Guarded([] {
    orbelcast::FileRegistry registry;
    return UnregisterClasses(registry) ? S_OK : SELFREG_E_CLASS;
  });
}
