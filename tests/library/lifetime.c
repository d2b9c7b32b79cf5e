// A host in C that releases its control inside what the library calls, and one that ends in mid stream.
//
//     lifetime LIBRARY release NAME=ADDRESS...   the library is loaded, the control released inside the event, or the
//                                                player's question AskSaveName, and the library unloaded: for each name
//     lifetime LIBRARY end ADDRESS               main returns in mid stream
//     lifetime LIBRARY leave ADDRESS             main returns while another thread is inside the library
//     lifetime LIBRARY thread ADDRESS            another thread releases the control, which Connect waits in
#define _DEFAULT_SOURCE  // usleep

#include <dlfcn.h>
#include <pthread.h>
#include <stdio.h>
#include <string.h>
#include <unistd.h>

#include "orbelcast/orbelcast.h"

enum { kPatience = 30000 };  // ms

static OrbelcastIDispatch* control;  // what is released
static int32_t awaited;              // the event's id

static void ReleaseControl(void) {
  OrbelcastIDispatch* const released = control;
  control = NULL;
  if (released != NULL) released->functions->Release(released);
}

static uint32_t CountSink(OrbelcastIEventSink* self) {
  return self != NULL;
}

static OrbelcastResult QuerySink(OrbelcastIEventSink* self, const OrbelcastGuid* id, void** object) {
  (void)self, (void)id;
  *object = NULL;
  return ORBELCAST_E_NOINTERFACE;
}

static OrbelcastResult Told(OrbelcastIEventSink* self, int32_t id, OrbelcastArguments* arguments) {
  (void)self, (void)arguments;
  if (id == awaited) ReleaseControl();
  return ORBELCAST_S_OK;
}

static const OrbelcastIEventSinkFunctions kSinkFunctions = {QuerySink, CountSink, CountSink, Told};
static OrbelcastIEventSink sink = {&kSinkFunctions};

static uint32_t CountDialogs(OrbelcastIHostDialogs* self) {
  return self != NULL;
}

static OrbelcastResult AskSaveName(OrbelcastIHostDialogs* self, const char* title, const char* filter,
                                   OrbelcastVariant* name) {
  (void)self, (void)title, (void)filter, (void)name;
  ReleaseControl();
  return ORBELCAST_S_FALSE;
}

// The others are not asked: they come after the name.
static const OrbelcastIHostDialogsFunctions kDialogsFunctions = {
    .AddRef = CountDialogs, .Release = CountDialogs, .AskSaveName = AskSaveName};
static OrbelcastIHostDialogs dialogs = {&kDialogsFunctions};

static void* Ask(const OrbelcastGuid* id) {
  void* found = NULL;
  control->functions->QueryInterface(control, id, &found);
  return found;
}

static void Call(const char* name, uint16_t kind, OrbelcastVariant value) {
  int32_t id = 0;
  OrbelcastIDispatch* const called = control;  // which the call may release
  OrbelcastArguments arguments = {&value, value.type != ORBELCAST_EMPTY, 0, NULL};
  if (called->functions->GetIDsOfNames(called, &name, 1, &id) < 0 ||
      called->functions->Invoke(called, id, kind, &arguments, NULL, NULL) < 0) {
    fprintf(stderr, "%s failed\n", name);
  }
}

static OrbelcastVariant Text(const char* text) {
  return (OrbelcastVariant){.type = ORBELCAST_TEXT, .size = (uint32_t)strlen(text), .text = text};
}

static OrbelcastVariant Number(int32_t number) {
  return (OrbelcastVariant){.type = ORBELCAST_LONG, .i32 = number};
}

static void Listen(const char* event) {
  OrbelcastIMemberList* const members = Ask(&ORBELCAST_IMEMBERLIST_ID);
  const OrbelcastMemberInfo* member = NULL;
  awaited = 0;
  for (uint32_t i = 0; members->functions->GetMember(members, i, &member) == ORBELCAST_S_OK; ++i) {
    if (member->kind == ORBELCAST_EVENT_MEMBER && strcmp(member->name, event) == 0) awaited = member->id;
  }
  members->functions->Release(members);

  OrbelcastIConnectionPointContainer* const points = Ask(&ORBELCAST_ICONNECTIONPOINTCONTAINER_ID);
  OrbelcastIConnectionPoint* point = NULL;
  uint32_t cookie = 0;
  points->functions->FindConnectionPoint(points, &ORBELCAST_VIDEO_SERVER_PUSH_EVENTS, &point);
  point->functions->Advise(point, &sink, &cookie);
  point->functions->Release(point);
  points->functions->Release(points);
}

static void Watch(const char* event, const char* address) {
  Listen(event);
  Call("FrameRate", ORBELCAST_PROPERTY_PUT, Number(30));
  Call("MotionSensivity", ORBELCAST_PROPERTY_PUT, Number(100));
  Call("MotionDetector", ORBELCAST_PROPERTY_PUT, Number(1));
  Call("MotionByZones", ORBELCAST_PROPERTY_PUT, Number(1));
  Call("Connect", ORBELCAST_METHOD, Text(address));
  if (control != NULL && strcmp(event, "Disconnected") == 0) {
    Call("Disconnect", ORBELCAST_METHOD, (OrbelcastVariant){0});
  }
}

static void Record(const char* port) {
  OrbelcastIDialogServices* const services = Ask(&ORBELCAST_IDIALOGSERVICES_ID);
  services->functions->SetDialogs(services, &dialogs);
  services->functions->Release(services);
  const OrbelcastPersistedProperty kept[] = {{"Server", 6, 9, "127.0.0.1"}, {"Port", 4, (uint32_t)strlen(port), port}};
  OrbelcastIControl* const placed = Ask(&ORBELCAST_ICONTROL_ID);
  placed->functions->Place(placed, 640 * 15, 480 * 15);
  placed->functions->Load(placed, kept, 2);
  placed->functions->Release(placed);
  Call("AviStart", ORBELCAST_METHOD, (OrbelcastVariant){0});
}

typedef struct {
  void* handle;
  OrbelcastIClassFactory* factory;
  OrbelcastIHostServices* services;
} Library;

/// Loads the library and makes a control of it.
static Library Load(const char* path, const OrbelcastGuid* class_id) {
  Library library = {dlopen(path, RTLD_NOW | RTLD_LOCAL), NULL, NULL};
  OrbelcastGetClassObjectFunction* get_class_object = NULL;
  *(void**)&get_class_object = dlsym(library.handle, "DllGetClassObject");
  get_class_object(class_id, &ORBELCAST_ICLASSFACTORY_ID, (void**)&library.factory);
  library.factory->functions->QueryInterface(library.factory, &ORBELCAST_IHOSTSERVICES_ID, (void**)&library.services);
  library.factory->functions->CreateInstance(library.factory, NULL, &ORBELCAST_IDISPATCH_ID, (void**)&control);
  return library;
}

/// Gives the library back; false where it is still in use.
static int Unload(Library library) {
  library.services->functions->Release(library.services);
  library.factory->functions->Release(library.factory);
  OrbelcastCanUnloadNowFunction* can_unload_now = NULL;
  *(void**)&can_unload_now = dlsym(library.handle, "DllCanUnloadNow");
  return can_unload_now() == ORBELCAST_S_OK && dlclose(library.handle) == 0;
}

/// Has the control released inside `event`, and runs on for a moment, in which nothing of it may come.
static int ReleaseInside(const char* path, const char* event, const char* address) {
  const int player = strcmp(event, "AskSaveName") == 0;
  const Library library = Load(path, player ? &ORBELCAST_USER_CONTROL1_CLASS : &ORBELCAST_VIDEO_SERVER_PUSH_CLASS);
  if (player) {
    Record(address);
  } else {
    Watch(event, address);
  }
  for (int waited = 0; control != NULL && waited < kPatience; waited += 20) {
    library.services->functions->RunLoop(library.services, 20);
  }
  const int raised = control == NULL;
  library.services->functions->RunLoop(library.services, 20);
  ReleaseControl();
  if (!raised) fprintf(stderr, "%s was not raised\n", event);
  const int unloaded = Unload(library);
  if (!unloaded) fprintf(stderr, "something is alive after %s\n", event);
  return raised && unloaded;
}

/// The arguments' address in mid stream, for a moment.
static void* Stream(void* arguments) {
  char** const argv = arguments;
  const Library library = Load(argv[1], &ORBELCAST_VIDEO_SERVER_PUSH_CLASS);
  Watch("", argv[3]);
  library.services->functions->RunLoop(library.services, strcmp(argv[2], "end") == 0 ? 200 : kPatience);
  return NULL;
}

static void* ReleaseSoon(void* unused) {
  usleep(100000);
  ReleaseControl();
  return unused;
}

int main(int argc, char** argv) {
  if (argc < 4) return 2;
  int good = 1;
  for (int i = 3; i < argc && strcmp(argv[2], "release") == 0; ++i) {
    char* const address = strchr(argv[i], '=');
    *address = '\0';
    good &= ReleaseInside(argv[1], argv[i], address + 1);
  }
  pthread_t thread;
  if (strcmp(argv[2], "end") == 0) {
    Stream(argv);
  } else if (strcmp(argv[2], "leave") == 0) {
    pthread_create(&thread, NULL, Stream, argv);
    usleep(300000);
  } else if (strcmp(argv[2], "thread") == 0) {
    const Library library = Load(argv[1], &ORBELCAST_VIDEO_SERVER_PUSH_CLASS);
    pthread_create(&thread, NULL, ReleaseSoon, NULL);
    Call("Connect", ORBELCAST_METHOD, Text(argv[3]));
    pthread_join(thread, NULL);
    good = Unload(library);
  }
  return good ? 0 : 1;
}
