// The first picture in C: by_name LIBRARY ADDRESS FILE
#include <dlfcn.h>
#include <orbelcast/orbelcast.h>
#include <string.h>

static OrbelcastVariant Text(const char* text) {
  return (OrbelcastVariant){.type = ORBELCAST_TEXT, .size = (uint32_t)strlen(text), .text = text};
}

static void Call(OrbelcastIDispatch* viewer, const char* method, OrbelcastVariant* values, uint32_t count) {
  int32_t id = 0;
  viewer->functions->GetIDsOfNames(viewer, &method, 1, &id);
  OrbelcastArguments arguments = {values, count, 0, NULL};
  viewer->functions->Invoke(viewer, id, ORBELCAST_METHOD, &arguments, NULL, NULL);
}

int main(int argc, char** argv) {
  if (argc != 4) return 2;
  OrbelcastGetClassObjectFunction* get = NULL;
  OrbelcastIClassFactory* factory = NULL;
  OrbelcastIDispatch* viewer = NULL;
  *(void**)&get = dlsym(dlopen(argv[1], RTLD_NOW), "DllGetClassObject");
  get(&ORBELCAST_VIDEO_SERVER_PUSH_CLASS, &ORBELCAST_ICLASSFACTORY_ID, (void**)&factory);
  factory->functions->CreateInstance(factory, NULL, &ORBELCAST_IDISPATCH_ID, (void**)&viewer);
  // One picture, no stream.
  Call(viewer, "Connect", (OrbelcastVariant[]){Text(argv[2]), {.type = ORBELCAST_BOOLEAN, .i16 = -1}}, 2);
  Call(viewer, "SaveImage", (OrbelcastVariant[]){Text(argv[3])}, 1);
  viewer->functions->Release(viewer);
  factory->functions->Release(factory);
  return 0;
}
