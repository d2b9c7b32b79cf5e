#include "dispatch/class_factory.h"

#include "dispatch/control_server.h"

namespace orbelcast::server {

Result ClassFactory::CreateInstance(IUnknown* outer, const Guid* id, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (id == nullptr) return E_POINTER;
  if (outer != nullptr) return CLASS_E_NOAGGREGATION;
  return Entered([&] {
    const Held<IDispatch> control = Server().Host(Class(), Class().create(Server().GetPlatform()));
    return control->QueryInterface(id, object);
  });
}

Result ClassFactory::LockServer(std::int32_t lock) {
  return Entered([&] {
    Server().Lock(lock != 0);
    return S_OK;
  });
}

}  // namespace orbelcast::server
