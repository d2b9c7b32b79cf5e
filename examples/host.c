// A host in C: it loads the library, makes a viewer, and saves a camera's picture.
//
//     cc -std=c11 -I include examples/host.c -o host -ldl
//     ./host build/dev/lib/liborbelcast.so http://127.0.0.1:8080/live/1 picture.jpg

#include <dlfcn.h>
#include <stdio.h>
#include <string.h>

#include "orbelcast/orbelcast.h"

enum { kStreamInfo = 1, kConnected = 3 };

/// Told the viewer's events. It lives as long as main, so it counts no references.
typedef struct {
  OrbelcastIEventSink base;
  int connected, informed;
} Sink;

static OrbelcastResult Query(OrbelcastIEventSink* self, const OrbelcastGuid* id, void** object) {
  *object = memcmp(id, &ORBELCAST_IEVENTSINK_ID, sizeof *id) == 0 ? self : NULL;
  return *object != NULL ? ORBELCAST_S_OK : ORBELCAST_E_NOINTERFACE;
}

static uint32_t Count(OrbelcastIEventSink* self) {
  return self != NULL;
}

static OrbelcastResult Told(OrbelcastIEventSink* self, int32_t id, OrbelcastArguments* arguments) {
  Sink* const sink = (Sink*)self;
  if (id == kConnected) {
    sink->connected = 1;
    puts("Connected");
  } else if (id == kStreamInfo) {
    sink->informed = 1;
    // These arguments come by reference: the value is in the variable that they point to.
    printf("StreamInfo: %d bytes and %d pictures a second\n", arguments->values[0].reference->i32,
           arguments->values[1].reference->i32);
  }
  return ORBELCAST_S_OK;
}

static const OrbelcastIEventSinkFunctions kSinkFunctions = {Query, Count, Count, Told};

/// Calls a member by its name, with one value.
static OrbelcastResult Call(OrbelcastIDispatch* control, const char* name, uint16_t kind, OrbelcastVariant value) {
  int32_t id = 0;
  const OrbelcastResult found = control->functions->GetIDsOfNames(control, &name, 1, &id);
  if (found < 0) return found;
  OrbelcastArguments arguments = {&value, 1, 0, NULL};
  return control->functions->Invoke(control, id, kind, &arguments, NULL, NULL);
}

static OrbelcastVariant Text(const char* text) {
  return (OrbelcastVariant){.type = ORBELCAST_TEXT, .size = (uint32_t)strlen(text), .text = text};
}

static int Watch(OrbelcastIDispatch* viewer, const char* address, const char* file) {
  OrbelcastIControl* control = NULL;
  OrbelcastIHostServices* services = NULL;
  OrbelcastIConnectionPointContainer* points = NULL;
  OrbelcastIConnectionPoint* point = NULL;
  viewer->functions->QueryInterface(viewer, &ORBELCAST_ICONTROL_ID, (void**)&control);
  viewer->functions->QueryInterface(viewer, &ORBELCAST_IHOSTSERVICES_ID, (void**)&services);
  viewer->functions->QueryInterface(viewer, &ORBELCAST_ICONNECTIONPOINTCONTAINER_ID, (void**)&points);
  control->functions->Place(control, 640 * 15, 480 * 15);

  Sink sink = {{&kSinkFunctions}, 0, 0};
  uint32_t cookie = 0;
  points->functions->FindConnectionPoint(points, &ORBELCAST_VIDEO_SERVER_PUSH_EVENTS, &point);
  point->functions->Advise(point, &sink.base, &cookie);

  // A viewer asks at most 30 times a second, and says so in the variable that it was given.
  OrbelcastVariant rate = {.type = ORBELCAST_LONG, .i32 = 40};
  const OrbelcastVariant by_reference = {.type = ORBELCAST_REFERENCE, .reference = &rate};
  Call(viewer, "FrameRate", ORBELCAST_PROPERTY_PUT, by_reference);
  printf("FrameRate: %d\n", rate.i32);
  Call(viewer, "Connect", ORBELCAST_METHOD, Text(address));
  for (int tenths = 0; tenths < 50 && !(sink.connected && sink.informed); ++tenths) {
    services->functions->RunLoop(services, 100);
  }
  Call(viewer, "SaveImage", ORBELCAST_METHOD, Text(file));

  point->functions->Unadvise(point, cookie);
  point->functions->Release(point);
  points->functions->Release(points);
  services->functions->Release(services);
  control->functions->Release(control);
  return sink.connected && sink.informed;
}

/// Loads the library, watches, and gives everything back. Whether all of that went well.
static int Use(const char* path, const char* address, const char* file) {
  void* const library = dlopen(path, RTLD_NOW | RTLD_LOCAL);
  if (library == NULL) {
    fprintf(stderr, "%s\n", dlerror());
    return 0;
  }
  OrbelcastGetClassObjectFunction* get_class_object = NULL;
  OrbelcastCanUnloadNowFunction* can_unload_now = NULL;
  *(void**)&get_class_object = dlsym(library, "DllGetClassObject");
  *(void**)&can_unload_now = dlsym(library, "DllCanUnloadNow");
  OrbelcastIClassFactory* factory = NULL;
  OrbelcastIDispatch* viewer = NULL;
  get_class_object(&ORBELCAST_VIDEO_SERVER_PUSH_CLASS, &ORBELCAST_ICLASSFACTORY_ID, (void**)&factory);
  factory->functions->CreateInstance(factory, NULL, &ORBELCAST_IDISPATCH_ID, (void**)&viewer);
  const int watched = Watch(viewer, address, file);
  viewer->functions->Release(viewer);
  factory->functions->Release(factory);
  const int unloadable = can_unload_now() == ORBELCAST_S_OK;
  printf("can unload: %s\n", unloadable ? "yes" : "no");
  return watched && unloadable && dlclose(library) == 0;
}

int main(int argc, char** argv) {
  if (argc != 4) return fprintf(stderr, "usage: %s LIBRARY ADDRESS FILE\n", argv[0]), 2;
  // Twice: what was given back can be had again.
  return Use(argv[1], argv[2], argv[3]) && Use(argv[1], argv[2], argv[3]) ? 0 : 1;
}
