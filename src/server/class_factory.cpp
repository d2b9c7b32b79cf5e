#include "server/class_factory.h"

#include "server/control_object.h"

namespace orbelcast::server {

Result ClassFactory::CreateInstance(IUnknown* outer, const Guid* id, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (id == nullptr) return E_POINTER;
  if (outer != nullptr) return CLASS_E_NOAGGREGATION;
  return Entered([&] {
    const Held<ControlObject> control(new ControlObject(Server(), Class()));
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
