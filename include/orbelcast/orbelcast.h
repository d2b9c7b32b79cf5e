#pragma once

/// Orbelcast's controls for any host: C++ or C that links nothing, or whatever else can call a table of functions. This
/// header is all that a host needs, one file to copy; it depends on nothing and declares nothing that has to be linked.
///
/// Getting in. Load `liborbelcast.so` and look up its four entry points, `DllGetClassObject` first. It gives the class
/// factory of a control, the factory makes controls, and a control gives its other interfaces by QueryInterface.
/// Members are reached late-bound: GetIDsOfNames turns a name into a dispatch id, Invoke calls it. Ids never change.
///
/// Threads and the loop. Everything happens on the thread that made the first object, until all objects are released:
/// from another one DllGetClassObject, and every method of IClassFactory, IDispatch, IConnectionPointContainer,
/// IConnectionPoint, IControl, IHostServices, IHostLoop, IStarter and IDialogServices, answer RPC_E_WRONG_THREAD.
/// Methods that only count or read may be called on any thread: QueryInterface, AddRef, Release, and the methods of
/// IMemberList, IPicture, ISurface and IDataObject (the pixels of a surface not while a control may draw on it). An
/// object whose last Release comes on another thread ends on its own one: in the loop, which that wakes, or at the next
/// call into the library. Event sinks are called on the objects' thread alone. There are no threads of the library's
/// own that a host could notice. Pictures arrive only while the message loop runs: inside IHostServices::RunLoop and
/// HandleNext (a host with a loop of its own waits for what IHostLoop names and calls HandleNext(0)) and inside members
/// that wait.
///
/// Blocking. `Connect` waits for the server, at most about a minute. The player's `Connect2Server` and camera
/// choices wait at most about ten seconds for each question to the server. Everything else returns at once, apart from
/// a yield to the loop. Called on the host's own stack, a member that waits runs the loop, so events come meanwhile.
/// Called inside an event, it suspends that event's handler, which has a stack of its own (1 MiB), and all else goes
/// on; a host whose language keeps books about its stack (Python does) therefore calls members inside an event by
/// IStarter, and does not run the loop there.
///
/// Releasing. The last Release of a control, on its thread, ends it at once, also in the middle of an event or of a
/// member that waits: what is under way is aborted, no event comes any more, and the member that waited returns soon.
///
/// Failure. Every function answers a result code and lets no exception out; what a host's sink throws must not leave
/// the sink. A control reports failures of the network as events, never as a result code.
///
/// The process. No signal handler, no locale, no standard output of the library's. Memory and sockets are given back
/// when the last object is released; when DllCanUnloadNow answers S_OK the library may be closed, and loaded again.
///
/// The binary form. An interface is a pointer to an object whose first word points to a table of function pointers:
/// first the base interface's, then its own, in the order of declaration below. Each takes the object as its first
/// argument, by the platform's C calling convention. Structures have C's layout. Later versions add interfaces, members
/// of controls, and fields at the end of MemberInfo; nothing that is declared here moves.
///
/// In C++ the interfaces are classes in the namespace orbelcast::server. In C they are structures of functions of the
/// same binary form, with the prefix Orbelcast; the C part at the end of this header is made of the C++ part.
#ifdef __cplusplus

#include <cstdint>
#include <string_view>

namespace orbelcast::server {

// ---- Result codes ---------------------------------------------------------------------------------------------------

/// Success is 0 or positive, failure negative.
using Result = std::int32_t;

constexpr bool Succeeded(Result result) {
  return result >= 0;
}

// NOLINTBEGIN(readability-identifier-naming): the platform's names.
inline constexpr Result S_OK = 0;
inline constexpr Result S_FALSE = 1;  ///< It worked, and the answer is no.
inline constexpr Result E_UNEXPECTED = static_cast<Result>(0x8000FFFFU);
inline constexpr Result E_NOTIMPL = static_cast<Result>(0x80004001U);
inline constexpr Result E_NOINTERFACE = static_cast<Result>(0x80004002U);
inline constexpr Result E_POINTER = static_cast<Result>(0x80004003U);  ///< A pointer is null that must not be.
inline constexpr Result E_FAIL = static_cast<Result>(0x80004005U);
inline constexpr Result E_OUTOFMEMORY = static_cast<Result>(0x8007000EU);
inline constexpr Result E_INVALIDARG = static_cast<Result>(0x80070057U);
inline constexpr Result RPC_E_WRONG_THREAD = static_cast<Result>(0x8001010EU);
inline constexpr Result DISP_E_MEMBERNOTFOUND = static_cast<Result>(0x80020003U);
inline constexpr Result DISP_E_PARAMNOTFOUND = static_cast<Result>(0x80020004U);
inline constexpr Result DISP_E_TYPEMISMATCH = static_cast<Result>(0x80020005U);
inline constexpr Result DISP_E_UNKNOWNNAME = static_cast<Result>(0x80020006U);
inline constexpr Result DISP_E_BADVARTYPE = static_cast<Result>(0x80020008U);  ///< A variant of no known type.
inline constexpr Result DISP_E_OVERFLOW = static_cast<Result>(0x8002000AU);
inline constexpr Result DISP_E_BADPARAMCOUNT = static_cast<Result>(0x8002000EU);
inline constexpr Result DISP_E_PARAMNOTOPTIONAL = static_cast<Result>(0x8002000FU);
inline constexpr Result CLASS_E_NOAGGREGATION = static_cast<Result>(0x80040110U);
inline constexpr Result CLASS_E_CLASSNOTAVAILABLE = static_cast<Result>(0x80040111U);
inline constexpr Result CONNECT_E_NOCONNECTION = static_cast<Result>(0x80040200U);
inline constexpr Result SELFREG_E_CLASS = static_cast<Result>(0x80040201U);  ///< The registry could not be written.
// NOLINTEND(readability-identifier-naming)

// ---- Identifiers ----------------------------------------------------------------------------------------------------

/// 16 bytes that name a class or an interface.
struct Guid {
  std::uint32_t data1;
  std::uint16_t data2;
  std::uint16_t data3;
  std::uint8_t data4[8];

  friend constexpr bool operator==(const Guid&, const Guid&) = default;
};

/// The stream viewer: shows one camera. Made "VideoServerPush" by its name.
inline constexpr Guid kVideoServerPushClass{
    0x9056793e, 0xad07, 0x40a0, {0x81, 0xff, 0xb1, 0xa1, 0x10, 0x37, 0x16, 0xf6}};
/// The viewer's events.
inline constexpr Guid kVideoServerPushEvents{
    0x760451e3, 0x6366, 0x4863, {0x97, 0xe5, 0x37, 0xb2, 0xe0, 0x94, 0xea, 0xd4}};
/// The player around a viewer; it has no events.
inline constexpr Guid kUserControl1Class{0x118b9212, 0x7be2, 0x49c5, {0x98, 0x81, 0x31, 0xa3, 0x43, 0x64, 0xf8, 0x47}};

// ---- Values ---------------------------------------------------------------------------------------------------------

struct IUnknown;
struct Variant;

/// The type of a variant's value.
enum VariantType : std::uint16_t {
  kEmpty = 0,  ///< Nothing. As an argument 0, False or an empty text.
  kNull = 1,
  kInteger = 2,         ///< 16 bits, signed.
  kLong = 3,            ///< 32 bits, signed.
  kSingle = 4,          ///< A float.
  kDouble = 5,          ///< A double.
  kText = 8,            ///< UTF-8.
  kMissing = 10,        ///< As an argument: left out.
  kBoolean = 11,        ///< In `i16`: 0 is False, −1 (or any other number) True.
  kAny = 12,            ///< In MemberInfo only: the variant says itself what it holds.
  kObject = 13,         ///< An interface: IPicture of a picture, IDataObject of dropped data. May be null.
  kLongLong = 20,       ///< 64 bits, signed.
  kBytes = 0x2011,      ///< An array of bytes.
  kReference = 0x400C,  ///< The variable of the caller's that the callee may write to.
};

/// A value. Set all bytes to 0 before use.
///
/// Ownership. `owner` is what keeps the text, bytes or object alive. Null: the variant's maker does, for as long
/// as the call lasts that it was made for. Otherwise one reference is counted for this variant, and its holder
/// ends with Clear, which releases it. A member's result is the caller's to clear; the arguments of an
/// event belong to the control. To keep a value longer, copy it, or count a reference of your own (`owner->AddRef()`).
///
/// A callee that writes through a reference clears what was there and puts its own value in its place.
struct Variant {
  std::uint16_t type;  ///< A VariantType.
  std::uint16_t reserved;
  std::uint32_t size;  ///< Bytes in `text` (whatever it holds; no 0 at its end is needed) or `bytes`.
  union {
    std::int16_t i16;  ///< kInteger, kBoolean.
    std::int32_t i32;  ///< kLong.
    std::int64_t i64;  ///< kLongLong.
    float f32;         ///< kSingle.
    double f64;        ///< kDouble.
    const char* text;
    const std::uint8_t* bytes;
    IUnknown* object;
    Variant* reference;  ///< Never to another reference.
  };
  IUnknown* owner;
};

/// The arguments of a call, in the member's own order: first those by position, then those by name.
struct Arguments {
  Variant* values;
  std::uint32_t count;        ///< All of them.
  std::uint32_t named_count;  ///< How many of them, the last, are given by name.
  const std::int32_t* names;  ///< The ids of those, as GetIDsOfNames gives them.
};

// ---- Objects --------------------------------------------------------------------------------------------------------

/// Reference counting, and the way to an object's other interfaces. Every object has it.
struct IUnknown {
  static constexpr Guid kId{0x7a813f10, 0x089f, 0x4c3b, {0xbf, 0xd0, 0x72, 0x4c, 0x04, 0x87, 0x3c, 0xc5}};

  /// Gives another interface of the object, with a reference counted for the caller. E_NOINTERFACE, and `*object` null,
  /// where it has none of that id. Asked for IUnknown, an object always gives the same pointer.
  virtual Result QueryInterface(const Guid* id, void** object) = 0;
  /// Counts one reference more, or less. The last Release ends the object. Both answer the new count.
  virtual std::uint32_t AddRef() = 0;
  virtual std::uint32_t Release() = 0;

 protected:
  ~IUnknown() = default;
};

/// Makes the controls of one class.
struct IClassFactory : IUnknown {
  static constexpr Guid kId{0x97c4f441, 0x44bb, 0x482e, {0x87, 0x66, 0xdb, 0xf7, 0xd3, 0x2c, 0xe6, 0x56}};

  /// Makes a control and gives its interface `id`. `outer` is null, anything else answers CLASS_E_NOAGGREGATION.
  virtual Result CreateInstance(IUnknown* outer, const Guid* id, void** object) = 0;
  /// Counts one lock more (1) or less (0): a locked library does not want to be unloaded.
  virtual Result LockServer(std::int32_t lock) = 0;

 protected:
  ~IClassFactory() = default;
};

/// The kind of a call to a member. A call that may be either of two (`x.Name` in a script) adds them.
enum InvokeKind : std::uint16_t { kMethod = 1, kPropertyGet = 2, kPropertyPut = 4 };

/// The name under which the new value of a property may be given.
inline constexpr std::int32_t kPropertyPutId = -3;
/// The id that GetIDsOfNames gives for an unknown name.
inline constexpr std::int32_t kUnknownId = -1;

/// A control's properties and methods, reached by name or dispatch id.
struct IDispatch : IUnknown {
  static constexpr Guid kId{0x17ed370c, 0xfaa1, 0x454c, {0x87, 0xe7, 0x87, 0x82, 0x46, 0x99, 0x17, 0xf5}};

  /// Gives the ids of `names`, texts that end in a 0, in any letter case: first a member's, then those of its
  /// arguments. DISP_E_UNKNOWNNAME where one is unknown, which then has the id kUnknownId.
  virtual Result GetIDsOfNames(const char* const* names, std::uint32_t count, std::int32_t* ids) = 0;

  /// Calls a method, reads a property or writes one (its new value is the only argument).
  ///
  /// Optional arguments may be left out, at the end or as kMissing. A value of another type is converted as the
  /// platform's scripts expect: numbers to narrower numbers where they fit (halves to the even number), numbers and
  /// texts to each other, Boolean from any number and the texts "True" and "False".
  ///
  /// Arguments by reference: the variable that a kReference points to holds the control's value afterwards, in the
  /// variable's own type where that can hold it, and is untouched where the control did not change the value.
  ///
  /// `result` may be null. It need not be initialised and is kEmpty where there is no result. `wrong_argument` may be
  /// null; it gets the position in `arguments->values` of the argument that an argument's error is about.
  /// `arguments` may be null where there are none.
  ///
  /// DISP_E_MEMBERNOTFOUND: no such member, or it cannot be used that way (writing a property that can only be read).
  /// DISP_E_TYPEMISMATCH, DISP_E_OVERFLOW, DISP_E_BADVARTYPE: a value that cannot be converted. DISP_E_BADPARAMCOUNT:
  /// too many. DISP_E_PARAMNOTOPTIONAL: one too few. DISP_E_PARAMNOTFOUND: an argument's id that the member does not
  /// have, or has by position already.
  virtual Result Invoke(std::int32_t id, std::uint16_t kind, Arguments* arguments, Variant* result,
                        std::uint32_t* wrong_argument) = 0;

 protected:
  ~IDispatch() = default;
};

// ---- Lists of members -----------------------------------------------------------------------------------------------

enum MemberKind : std::uint16_t { kPropertyMember = 1, kMethodMember = 2, kEventMember = 3 };

enum ArgumentFlags : std::uint16_t { kOptional = 1, kByReference = 2 };

struct ArgumentInfo {
  const char* name;
  std::uint16_t type;   ///< A VariantType.
  std::uint16_t flags;  ///< ArgumentFlags, added.
  std::uint32_t reserved;
};

struct MemberInfo {
  const char* name;
  std::int32_t id;
  std::uint16_t kind;            ///< A MemberKind.
  std::uint16_t type;            ///< A property's, or what a method returns: a VariantType, kEmpty for nothing.
  std::uint16_t writable;        ///< Of a property: 1 where it can be written.
  std::uint16_t argument_count;  ///< A method's or an event's.
  const ArgumentInfo* arguments;
};

/// Lists a class's members: properties, methods, events, in the interface's own order. Class factories and controls
/// have it.
struct IMemberList : IUnknown {
  static constexpr Guid kId{0x7eafa2c0, 0x58f3, 0x4165, {0x97, 0xd9, 0xcb, 0xa0, 0x0b, 0x62, 0xdc, 0xf3}};

  virtual std::uint32_t GetCount() = 0;
  /// Gives the member at `index`, which lives as long as the library is loaded. E_INVALIDARG beyond the last.
  virtual Result GetMember(std::uint32_t index, const MemberInfo** member) = 0;

 protected:
  ~IMemberList() = default;
};

// ---- Events ---------------------------------------------------------------------------------------------------------

/// The host's object that is told a control's events.
struct IEventSink : IUnknown {
  static constexpr Guid kId{0x1c26b791, 0x60cd, 0x43a6, {0x94, 0x14, 0x83, 0xc9, 0x55, 0x6a, 0x55, 0xe7}};

  /// The event `id` was raised. Arguments by reference are kReference, and what the sink writes there the control reads
  /// (a text with no owner must stay where it is until the sink's next call); the others are plain values. It may
  /// call any member, add and remove sinks and release the control. The answer is not looked at.
  virtual Result Invoke(std::int32_t id, Arguments* arguments) = 0;

 protected:
  ~IEventSink() = default;
};

/// The connection point of event sinks.
struct IConnectionPoint : IUnknown {
  static constexpr Guid kId{0xe64049ee, 0xe8ec, 0x4711, {0x98, 0xe3, 0x9e, 0x2b, 0x4c, 0xcc, 0xf4, 0xc6}};

  /// Calls `sink` from now on; its reference is counted until Unadvise or the control's end. `cookie` names the
  /// connection; it is never 0.
  virtual Result Advise(IEventSink* sink, std::uint32_t* cookie) = 0;
  /// CONNECT_E_NOCONNECTION where there is no such connection.
  virtual Result Unadvise(std::uint32_t cookie) = 0;

 protected:
  ~IConnectionPoint() = default;
};

/// A control's event interfaces.
struct IConnectionPointContainer : IUnknown {
  static constexpr Guid kId{0x40251869, 0x5a8a, 0x44b1, {0xa7, 0xf6, 0xaf, 0x23, 0x2a, 0x4a, 0xc6, 0xf9}};

  /// CONNECT_E_NOCONNECTION where the control does not raise the events `id`.
  virtual Result FindConnectionPoint(const Guid* id, IConnectionPoint** point) = 0;

 protected:
  ~IConnectionPointContainer() = default;
};

// ---- The container's side -------------------------------------------------------------------------------------------

/// A persisted property: texts that need not end in a 0.
struct PersistedProperty {
  const char* key;
  std::uint32_t key_size;
  std::uint32_t text_size;
  const char* text;
};

/// The calls of a container, the window that a control is placed on.
struct IControl : IUnknown {
  static constexpr Guid kId{0xdd06299a, 0xad7a, 0x4394, {0x86, 0x6a, 0x43, 0x5a, 0x5e, 0x2d, 0x1a, 0xbe}};

  /// Sites the control and gives it its size in twips (15 to a pixel), which runs its layout. Again at each change.
  virtual Result Place(float width, float height) = 0;
  /// The control is hidden: a viewer's stream does nothing until the next successful Connect.
  virtual Result Hide() = 0;
  /// Hands the control its property bag, which has exactly these keys: once, after Place. The viewer has no persisted
  /// properties and reads none. The player reads "Server" and the rest, and may wait for the server.
  virtual Result Load(const PersistedProperty* properties, std::uint32_t count) = 0;

 protected:
  ~IControl() = default;
};

/// A picture: what `GetPicture` returns.
struct IPicture : IUnknown {
  static constexpr Guid kId{0x4e837c2b, 0x0134, 0x4971, {0xb6, 0x3c, 0x7e, 0x08, 0x83, 0xc5, 0x23, 0xd1}};

  virtual Result GetSize(std::int32_t* width, std::int32_t* height) = 0;
  /// Gives the pixels, width × height of them, row by row from the top: each the number 0xAARRGGBB in the machine's
  /// byte order. They stay where they are until the picture is released or, of a surface, drawn on.
  virtual Result GetPixels(const std::uint32_t** pixels) = 0;

 protected:
  ~IPicture() = default;
};

/// A surface that controls draw on, black at first.
struct ISurface : IPicture {
  static constexpr Guid kId{0x641f5119, 0x10aa, 0x4b44, {0x9e, 0xe1, 0x35, 0xb4, 0x8b, 0xde, 0xea, 0xd2}};

  /// The number by which it is named as a device context (`RenderPicture`), until it is released. Never 0.
  virtual Result GetDeviceContext(std::int32_t* device_context) = 0;

 protected:
  ~ISurface() = default;
};

/// Dropped data, one format at a time, as the event `OLEDragDrop` hands it on.
struct IDataObject : IUnknown {
  static constexpr Guid kId{0x074fb0d9, 0x4a2c, 0x4d9b, {0x94, 0x67, 0x5a, 0x3c, 0x37, 0x71, 0x9a, 0x17}};

  virtual std::uint32_t GetCount() = 0;
  /// Gives the media type (a text that ends in a 0) and the bytes of the form at `index`. E_INVALIDARG beyond the last.
  virtual Result GetFormat(std::uint32_t index, const char** media_type, const char** data, std::uint32_t* size) = 0;

 protected:
  ~IDataObject() = default;
};

/// The message loop and what else a host without a toolkit needs. Class factories and controls have it.
struct IHostServices : IUnknown {
  static constexpr Guid kId{0xcaa8d289, 0x6515, 0x41c0, {0xa0, 0xae, 0x7e, 0xf0, 0xd3, 0xd5, 0x47, 0x77}};

  /// Runs the message loop for that long. E_INVALIDARG for a negative time.
  virtual Result RunLoop(std::int32_t milliseconds) = 0;
  /// Waits until something is due, but not longer than that, and handles it; 0 handles what is due and does not wait.
  /// S_FALSE when the time has passed. Inside an event it only yields.
  virtual Result HandleNext(std::int32_t milliseconds) = 0;
  /// Makes a surface of so many pixels; at most 65535 to a side and 64 megapixels, else E_INVALIDARG.
  virtual Result CreateSurface(std::int32_t width, std::int32_t height, ISurface** surface) = 0;
  /// A copy of the picture that `ImageOnClipboard` left; S_FALSE, and null, where there is none.
  virtual Result GetClipboardPicture(IPicture** picture) = 0;

 protected:
  ~IHostServices() = default;
};

/// A descriptor that the message loop waits for.
struct LoopDescriptor {
  std::int32_t descriptor;
  std::uint16_t readable;  ///< 1 where it is waited for until it can be read, else 0.
  std::uint16_t writable;  ///< The same of writing.
};

/// The waits of the message loop, for a host with a loop of its own. Class factories and controls have it.
struct IHostLoop : IUnknown {
  static constexpr Guid kId{0x49b5523e, 0x8c75, 0x48a5, {0x99, 0x39, 0x29, 0x0c, 0xab, 0x8c, 0x94, 0xac}};

  /// Gives the descriptors that the loop waits for just now, at most `capacity` of them; `*count` is how many there
  /// are. `*nanoseconds` is the time until something is due without them: 0 at once, −1 never. The host calls
  /// HandleNext(0) when one of these is there. Each call into the library may change them: ask again after it.
  virtual Result GetWaits(LoopDescriptor* descriptors, std::uint32_t capacity, std::uint32_t* count,
                          std::int64_t* nanoseconds) = 0;

 protected:
  ~IHostLoop() = default;
};

/// Calls that do not wait. Controls have it.
///
/// For hosts that call a member which may wait where they must not be suspended: inside an event, or on the thread of
/// another event loop. What is called runs on a stack of its own.
struct IStarter : IUnknown {
  static constexpr Guid kId{0x4fb3e6d8, 0xda93, 0x452e, {0xab, 0x21, 0x2e, 0x08, 0x8a, 0xa5, 0x4e, 0x9c}};

  /// As IDispatch::Invoke where the member ends without waiting. S_FALSE where it waits: it goes on while the loop
  /// runs, on copies of the arguments; what it returns and writes by reference then, nobody is told.
  virtual Result Start(std::int32_t id, std::uint16_t kind, Arguments* arguments, Variant* result,
                       std::uint32_t* wrong_argument) = 0;
  /// As IControl::Load. S_FALSE where it goes on.
  virtual Result StartLoad(const PersistedProperty* properties, std::uint32_t count) = 0;

 protected:
  ~IStarter() = default;
};

enum MessageIcon : std::int32_t { kNoIcon = 0, kExclamationIcon = 1, kInformationIcon = 2 };

/// The host's object that answers the questions of controls. Texts it is given end in a 0 and stay until it returns; of
/// a text that it answers with the same holds as of one that an event sink writes. S_FALSE, as any failure, is the
/// cancelled dialog, or No.
struct IHostDialogs : IUnknown {
  static constexpr Guid kId{0x5144b14e, 0xdb75, 0x4a18, {0x90, 0xa0, 0x42, 0xe7, 0x9e, 0xff, 0x8d, 0xdc}};

  /// Asks for a file name to save under; `filter` has kinds of files with their names' endings, as pairs: "JPEG Image
  /// (*.jpg)|*.jpg".
  virtual Result AskSaveName(const char* title, const char* filter, Variant* name) = 0;
  /// Shows a message; where `question` is not 0 it is answered Yes (S_OK) or No (S_FALSE). `icon` is a MessageIcon.
  virtual Result ShowMessage(const char* text, const char* title, std::int32_t question, std::int32_t icon) = 0;
  /// Asks for a line of text.
  virtual Result AskText(const char* prompt, const char* title, Variant* text) = 0;
  /// Asks how a clip is compressed: `*codec` is the position among the `count` names of `codecs`; `*key_frame_every`
  /// (pictures) and `*kilobytes_per_second` are 0 at first, which leaves them to the codec.
  virtual Result ChooseCompression(const char* const* codecs, std::uint32_t count, std::uint32_t* codec,
                                   std::int32_t* key_frame_every, std::int32_t* kilobytes_per_second) = 0;
  virtual Result Beep() = 0;

 protected:
  ~IHostDialogs() = default;
};

/// The service that takes the host's answers to dialogs. Class factories and controls have it.
struct IDialogServices : IUnknown {
  static constexpr Guid kId{0xd11df184, 0x960d, 0x46e4, {0x94, 0xec, 0x10, 0x8a, 0x8f, 0xbe, 0xa3, 0x0e}};

  /// Lets `dialogs` answer the questions of all controls, until the last object of the library is released; null: they
  /// are cancelled, as without this call. Its reference is counted meanwhile.
  virtual Result SetDialogs(IHostDialogs* dialogs) = 0;

 protected:
  ~IDialogServices() = default;
};

// ---- The entry points -----------------------------------------------------------------------------------------------

/// `DllGetClassObject`: gives the class factory of `class_id`. CLASS_E_CLASSNOTAVAILABLE where there is no such class.
using GetClassObjectFunction = Result(const Guid* class_id, const Guid* interface_id, void** object);
/// `DllCanUnloadNow`: S_OK when no object is alive and no lock held, S_FALSE otherwise.
using CanUnloadNowFunction = Result();
/// `DllRegisterServer`, `DllUnregisterServer`: write the classes into the registry file and remove them.
/// SELFREG_E_CLASS where it cannot be written.
using RegisterServerFunction = Result();

// ---- Conveniences for C++ -------------------------------------------------------------------------------------------

/// A counted reference to an object.
template <typename Interface>
class Held {
 public:
  Held() = default;
  /// Takes over a reference that was counted already.
  explicit Held(Interface* counted) : object_(counted) {}
  Held(const Held& other) : object_(other.object_) {
    if (object_ != nullptr) object_->AddRef();
  }
  Held(Held&& other) noexcept : object_(other.object_) { other.object_ = nullptr; }
  Held& operator=(Held other) noexcept {
    Interface* const mine = object_;
    object_ = other.object_;
    other.object_ = mine;
    return *this;
  }
  ~Held() { Release(); }

  /// The place for a function to put a counted reference: `factory->CreateInstance(nullptr, &IDispatch::kId,
  /// control.Put())`.
  void** Put() {
    Release();
    return reinterpret_cast<void**>(&object_);
  }
  Interface** PutTyped() {
    Release();
    return &object_;
  }
  void Release() {
    Interface* const mine = object_;
    object_ = nullptr;
    if (mine != nullptr) mine->Release();
  }

  /// Another interface of the object; empty where it has none.
  template <typename Other>
  Held<Other> As() const {
    Held<Other> other;
    if (object_ != nullptr) object_->QueryInterface(&Other::kId, other.Put());
    return other;
  }

  Interface* Get() const { return object_; }
  Interface* operator->() const { return object_; }
  explicit operator bool() const { return object_ != nullptr; }

 private:
  Interface* object_ = nullptr;
};

/// Releases what a variant holds and makes it empty.
inline void Clear(Variant& variant) {
  IUnknown* const owner = variant.owner;
  variant = Variant{};
  if (owner != nullptr) owner->Release();
}

inline Variant MakeBoolean(bool value) {
  Variant variant{};
  variant.type = kBoolean;
  variant.i16 = value ? -1 : 0;
  return variant;
}
inline Variant MakeInteger(std::int16_t value) {
  Variant variant{};
  variant.type = kInteger;
  variant.i16 = value;
  return variant;
}
inline Variant MakeLong(std::int32_t value) {
  Variant variant{};
  variant.type = kLong;
  variant.i32 = value;
  return variant;
}
/// A text that stays where it is for as long as the variant is used.
inline Variant MakeText(std::string_view value) {
  Variant variant{};
  variant.type = kText;
  variant.size = static_cast<std::uint32_t>(value.size());
  variant.text = value.data();
  return variant;
}
inline Variant MakeMissing() {
  Variant variant{};
  variant.type = kMissing;
  return variant;
}
inline Variant MakeReference(Variant& variable) {
  Variant variant{};
  variant.type = kReference;
  variant.reference = &variable;
  return variant;
}

}  // namespace orbelcast::server

#else  // C

#include <stdint.h>

// clang-format off
// made by tools/make_reference: C
typedef struct OrbelcastGuid OrbelcastGuid;
typedef struct OrbelcastVariant OrbelcastVariant;
typedef struct OrbelcastArguments OrbelcastArguments;
typedef struct OrbelcastIUnknown OrbelcastIUnknown;
typedef struct OrbelcastIClassFactory OrbelcastIClassFactory;
typedef struct OrbelcastIDispatch OrbelcastIDispatch;
typedef struct OrbelcastArgumentInfo OrbelcastArgumentInfo;
typedef struct OrbelcastMemberInfo OrbelcastMemberInfo;
typedef struct OrbelcastIMemberList OrbelcastIMemberList;
typedef struct OrbelcastIEventSink OrbelcastIEventSink;
typedef struct OrbelcastIConnectionPoint OrbelcastIConnectionPoint;
typedef struct OrbelcastIConnectionPointContainer OrbelcastIConnectionPointContainer;
typedef struct OrbelcastPersistedProperty OrbelcastPersistedProperty;
typedef struct OrbelcastIControl OrbelcastIControl;
typedef struct OrbelcastIPicture OrbelcastIPicture;
typedef struct OrbelcastISurface OrbelcastISurface;
typedef struct OrbelcastIDataObject OrbelcastIDataObject;
typedef struct OrbelcastIHostServices OrbelcastIHostServices;
typedef struct OrbelcastLoopDescriptor OrbelcastLoopDescriptor;
typedef struct OrbelcastIHostLoop OrbelcastIHostLoop;
typedef struct OrbelcastIStarter OrbelcastIStarter;
typedef struct OrbelcastIHostDialogs OrbelcastIHostDialogs;
typedef struct OrbelcastIDialogServices OrbelcastIDialogServices;

/// Success is 0 or positive, failure negative.
typedef int32_t OrbelcastResult;

#define ORBELCAST_S_OK 0
#define ORBELCAST_S_FALSE 1  ///< It worked, and the answer is no.
#define ORBELCAST_E_UNEXPECTED ((OrbelcastResult)0x8000FFFFU)
#define ORBELCAST_E_NOTIMPL ((OrbelcastResult)0x80004001U)
#define ORBELCAST_E_NOINTERFACE ((OrbelcastResult)0x80004002U)
#define ORBELCAST_E_POINTER ((OrbelcastResult)0x80004003U)  ///< A pointer is null that must not be.
#define ORBELCAST_E_FAIL ((OrbelcastResult)0x80004005U)
#define ORBELCAST_E_OUTOFMEMORY ((OrbelcastResult)0x8007000EU)
#define ORBELCAST_E_INVALIDARG ((OrbelcastResult)0x80070057U)
#define ORBELCAST_RPC_E_WRONG_THREAD ((OrbelcastResult)0x8001010EU)
#define ORBELCAST_DISP_E_MEMBERNOTFOUND ((OrbelcastResult)0x80020003U)
#define ORBELCAST_DISP_E_PARAMNOTFOUND ((OrbelcastResult)0x80020004U)
#define ORBELCAST_DISP_E_TYPEMISMATCH ((OrbelcastResult)0x80020005U)
#define ORBELCAST_DISP_E_UNKNOWNNAME ((OrbelcastResult)0x80020006U)
#define ORBELCAST_DISP_E_BADVARTYPE ((OrbelcastResult)0x80020008U)  ///< A variant of no known type.
#define ORBELCAST_DISP_E_OVERFLOW ((OrbelcastResult)0x8002000AU)
#define ORBELCAST_DISP_E_BADPARAMCOUNT ((OrbelcastResult)0x8002000EU)
#define ORBELCAST_DISP_E_PARAMNOTOPTIONAL ((OrbelcastResult)0x8002000FU)
#define ORBELCAST_CLASS_E_NOAGGREGATION ((OrbelcastResult)0x80040110U)
#define ORBELCAST_CLASS_E_CLASSNOTAVAILABLE ((OrbelcastResult)0x80040111U)
#define ORBELCAST_CONNECT_E_NOCONNECTION ((OrbelcastResult)0x80040200U)
#define ORBELCAST_SELFREG_E_CLASS ((OrbelcastResult)0x80040201U)  ///< The registry could not be written.

/// 16 bytes that name a class or an interface.
struct OrbelcastGuid {
  uint32_t data1;
  uint16_t data2;
  uint16_t data3;
  uint8_t data4[8];
};

/// The stream viewer: shows one camera. Made "VideoServerPush" by its name.
static const OrbelcastGuid ORBELCAST_VIDEO_SERVER_PUSH_CLASS = {0x9056793e, 0xad07, 0x40a0, {0x81, 0xff, 0xb1, 0xa1,
      0x10, 0x37, 0x16, 0xf6}};

/// The viewer's events.
static const OrbelcastGuid ORBELCAST_VIDEO_SERVER_PUSH_EVENTS = {0x760451e3, 0x6366, 0x4863, {0x97, 0xe5, 0x37, 0xb2,
      0xe0, 0x94, 0xea, 0xd4}};

/// The player around a viewer; it has no events.
static const OrbelcastGuid ORBELCAST_USER_CONTROL1_CLASS = {0x118b9212, 0x7be2, 0x49c5, {0x98, 0x81, 0x31, 0xa3, 0x43,
      0x64, 0xf8, 0x47}};

/// The type of a variant's value.
enum {
  ORBELCAST_EMPTY = 0,  ///< Nothing. As an argument 0, False or an empty text.
  ORBELCAST_NULL = 1,
  ORBELCAST_INTEGER = 2,         ///< 16 bits, signed.
  ORBELCAST_LONG = 3,            ///< 32 bits, signed.
  ORBELCAST_SINGLE = 4,          ///< A float.
  ORBELCAST_DOUBLE = 5,          ///< A double.
  ORBELCAST_TEXT = 8,            ///< UTF-8.
  ORBELCAST_MISSING = 10,        ///< As an argument: left out.
  ORBELCAST_BOOLEAN = 11,        ///< In `i16`: 0 is False, −1 (or any other number) True.
  ORBELCAST_ANY = 12,            ///< In OrbelcastMemberInfo only: the variant says itself what it holds.
  ORBELCAST_OBJECT = 13,         ///< An interface: OrbelcastIPicture of a picture, OrbelcastIDataObject of dropped data. May be null.
  ORBELCAST_LONG_LONG = 20,       ///< 64 bits, signed.
  ORBELCAST_BYTES = 0x2011,      ///< An array of bytes.
  ORBELCAST_REFERENCE = 0x400C,  ///< The variable of the caller's that the callee may write to.
};

/// A value. Set all bytes to 0 before use.
///
/// Ownership. `owner` is what keeps the text, bytes or object alive. Null: the variant's maker does, for as long
/// as the call lasts that it was made for. Otherwise one reference is counted for this variant, and its holder
/// ends with Clear, which releases it. A member's result is the caller's to clear; the arguments of an
/// event belong to the control. To keep a value longer, copy it, or count a reference of your own (`owner->AddRef()`).
///
/// A callee that writes through a reference clears what was there and puts its own value in its place.
struct OrbelcastVariant {
  uint16_t type;  ///< A VariantType.
  uint16_t reserved;
  uint32_t size;  ///< Bytes in `text` (whatever it holds; no 0 at its end is needed) or `bytes`.
  union {
    int16_t i16;  ///< ORBELCAST_INTEGER, ORBELCAST_BOOLEAN.
    int32_t i32;  ///< ORBELCAST_LONG.
    int64_t i64;  ///< ORBELCAST_LONG_LONG.
    float f32;         ///< ORBELCAST_SINGLE.
    double f64;        ///< ORBELCAST_DOUBLE.
    const char* text;
    const uint8_t* bytes;
    OrbelcastIUnknown* object;
    OrbelcastVariant* reference;  ///< Never to another reference.
  };
  OrbelcastIUnknown* owner;
};

/// The arguments of a call, in the member's own order: first those by position, then those by name.
struct OrbelcastArguments {
  OrbelcastVariant* values;
  uint32_t count;        ///< All of them.
  uint32_t named_count;  ///< How many of them, the last, are given by name.
  const int32_t* names;  ///< The ids of those, as GetIDsOfNames gives them.
};

/// Reference counting, and the way to an object's other interfaces. Every object has it.
static const OrbelcastGuid ORBELCAST_IUNKNOWN_ID = {0x7a813f10, 0x089f, 0x4c3b, {0xbf, 0xd0, 0x72, 0x4c, 0x04, 0x87,
      0x3c, 0xc5}};
typedef struct OrbelcastIUnknownFunctions {
  /// Gives another interface of the object, with a reference counted for the caller. ORBELCAST_E_NOINTERFACE, and `*object` null,
  /// where it has none of that id. Asked for OrbelcastIUnknown, an object always gives the same pointer.
  OrbelcastResult (*QueryInterface)(OrbelcastIUnknown* self, const OrbelcastGuid* id, void** object);
  /// Counts one reference more, or less. The last Release ends the object. Both answer the new count.
  uint32_t (*AddRef)(OrbelcastIUnknown* self);
  uint32_t (*Release)(OrbelcastIUnknown* self);
} OrbelcastIUnknownFunctions;
struct OrbelcastIUnknown {
  const OrbelcastIUnknownFunctions* functions;
};

/// Makes the controls of one class.
static const OrbelcastGuid ORBELCAST_ICLASSFACTORY_ID = {0x97c4f441, 0x44bb, 0x482e, {0x87, 0x66, 0xdb, 0xf7, 0xd3,
      0x2c, 0xe6, 0x56}};
typedef struct OrbelcastIClassFactoryFunctions {
  OrbelcastResult (*QueryInterface)(OrbelcastIClassFactory* self, const OrbelcastGuid* id, void** object);
  uint32_t (*AddRef)(OrbelcastIClassFactory* self);
  uint32_t (*Release)(OrbelcastIClassFactory* self);
  /// Makes a control and gives its interface `id`. `outer` is null, anything else answers ORBELCAST_CLASS_E_NOAGGREGATION.
  OrbelcastResult (*CreateInstance)(OrbelcastIClassFactory* self, OrbelcastIUnknown* outer, const OrbelcastGuid* id,
      void** object);
  /// Counts one lock more (1) or less (0): a locked library does not want to be unloaded.
  OrbelcastResult (*LockServer)(OrbelcastIClassFactory* self, int32_t lock);
} OrbelcastIClassFactoryFunctions;
struct OrbelcastIClassFactory {
  const OrbelcastIClassFactoryFunctions* functions;
};

/// The kind of a call to a member. A call that may be either of two (`x.Name` in a script) adds them.
enum { ORBELCAST_METHOD = 1, ORBELCAST_PROPERTY_GET = 2, ORBELCAST_PROPERTY_PUT = 4 };

/// The name under which the new value of a property may be given.
#define ORBELCAST_PROPERTY_PUT_ID -3
/// The id that GetIDsOfNames gives for an unknown name.
#define ORBELCAST_UNKNOWN_ID -1

/// A control's properties and methods, reached by name or dispatch id.
static const OrbelcastGuid ORBELCAST_IDISPATCH_ID = {0x17ed370c, 0xfaa1, 0x454c, {0x87, 0xe7, 0x87, 0x82, 0x46, 0x99,
      0x17, 0xf5}};
typedef struct OrbelcastIDispatchFunctions {
  OrbelcastResult (*QueryInterface)(OrbelcastIDispatch* self, const OrbelcastGuid* id, void** object);
  uint32_t (*AddRef)(OrbelcastIDispatch* self);
  uint32_t (*Release)(OrbelcastIDispatch* self);
  /// Gives the ids of `names`, texts that end in a 0, in any letter case: first a member's, then those of its
  /// arguments. ORBELCAST_DISP_E_UNKNOWNNAME where one is unknown, which then has the id ORBELCAST_UNKNOWN_ID.
  OrbelcastResult (*GetIDsOfNames)(OrbelcastIDispatch* self, const char* const* names, uint32_t count, int32_t* ids);
  /// Calls a method, reads a property or writes one (its new value is the only argument).
  ///
  /// Optional arguments may be left out, at the end or as ORBELCAST_MISSING. A value of another type is converted as the
  /// platform's scripts expect: numbers to narrower numbers where they fit (halves to the even number), numbers and
  /// texts to each other, Boolean from any number and the texts "True" and "False".
  ///
  /// OrbelcastArguments by reference: the variable that a ORBELCAST_REFERENCE points to holds the control's value afterwards, in the
  /// variable's own type where that can hold it, and is untouched where the control did not change the value.
  ///
  /// `result` may be null. It need not be initialised and is ORBELCAST_EMPTY where there is no result. `wrong_argument` may be
  /// null; it gets the position in `arguments->values` of the argument that an argument's error is about.
  /// `arguments` may be null where there are none.
  ///
  /// ORBELCAST_DISP_E_MEMBERNOTFOUND: no such member, or it cannot be used that way (writing a property that can only be read).
  /// ORBELCAST_DISP_E_TYPEMISMATCH, ORBELCAST_DISP_E_OVERFLOW, ORBELCAST_DISP_E_BADVARTYPE: a value that cannot be converted. ORBELCAST_DISP_E_BADPARAMCOUNT:
  /// too many. ORBELCAST_DISP_E_PARAMNOTOPTIONAL: one too few. ORBELCAST_DISP_E_PARAMNOTFOUND: an argument's id that the member does not
  /// have, or has by position already.
  OrbelcastResult (*Invoke)(OrbelcastIDispatch* self, int32_t id, uint16_t kind, OrbelcastArguments* arguments,
      OrbelcastVariant* result, uint32_t* wrong_argument);
} OrbelcastIDispatchFunctions;
struct OrbelcastIDispatch {
  const OrbelcastIDispatchFunctions* functions;
};

enum { ORBELCAST_PROPERTY_MEMBER = 1, ORBELCAST_METHOD_MEMBER = 2, ORBELCAST_EVENT_MEMBER = 3 };

enum { ORBELCAST_OPTIONAL = 1, ORBELCAST_BY_REFERENCE = 2 };

struct OrbelcastArgumentInfo {
  const char* name;
  uint16_t type;   ///< A VariantType.
  uint16_t flags;  ///< ArgumentFlags, added.
  uint32_t reserved;
};

struct OrbelcastMemberInfo {
  const char* name;
  int32_t id;
  uint16_t kind;            ///< A MemberKind.
  uint16_t type;            ///< A property's, or what a method returns: a VariantType, ORBELCAST_EMPTY for nothing.
  uint16_t writable;        ///< Of a property: 1 where it can be written.
  uint16_t argument_count;  ///< A method's or an event's.
  const OrbelcastArgumentInfo* arguments;
};

/// Lists a class's members: properties, methods, events, in the interface's own order. Class factories and controls
/// have it.
static const OrbelcastGuid ORBELCAST_IMEMBERLIST_ID = {0x7eafa2c0, 0x58f3, 0x4165, {0x97, 0xd9, 0xcb, 0xa0, 0x0b,
      0x62, 0xdc, 0xf3}};
typedef struct OrbelcastIMemberListFunctions {
  OrbelcastResult (*QueryInterface)(OrbelcastIMemberList* self, const OrbelcastGuid* id, void** object);
  uint32_t (*AddRef)(OrbelcastIMemberList* self);
  uint32_t (*Release)(OrbelcastIMemberList* self);
  uint32_t (*GetCount)(OrbelcastIMemberList* self);
  /// Gives the member at `index`, which lives as long as the library is loaded. ORBELCAST_E_INVALIDARG beyond the last.
  OrbelcastResult (*GetMember)(OrbelcastIMemberList* self, uint32_t index, const OrbelcastMemberInfo** member);
} OrbelcastIMemberListFunctions;
struct OrbelcastIMemberList {
  const OrbelcastIMemberListFunctions* functions;
};

/// The host's object that is told a control's events.
static const OrbelcastGuid ORBELCAST_IEVENTSINK_ID = {0x1c26b791, 0x60cd, 0x43a6, {0x94, 0x14, 0x83, 0xc9, 0x55, 0x6a,
      0x55, 0xe7}};
typedef struct OrbelcastIEventSinkFunctions {
  OrbelcastResult (*QueryInterface)(OrbelcastIEventSink* self, const OrbelcastGuid* id, void** object);
  uint32_t (*AddRef)(OrbelcastIEventSink* self);
  uint32_t (*Release)(OrbelcastIEventSink* self);
  /// The event `id` was raised. OrbelcastArguments by reference are ORBELCAST_REFERENCE, and what the sink writes there the control reads
  /// (a text with no owner must stay where it is until the sink's next call); the others are plain values. It may
  /// call any member, add and remove sinks and release the control. The answer is not looked at.
  OrbelcastResult (*Invoke)(OrbelcastIEventSink* self, int32_t id, OrbelcastArguments* arguments);
} OrbelcastIEventSinkFunctions;
struct OrbelcastIEventSink {
  const OrbelcastIEventSinkFunctions* functions;
};

/// The connection point of event sinks.
static const OrbelcastGuid ORBELCAST_ICONNECTIONPOINT_ID = {0xe64049ee, 0xe8ec, 0x4711, {0x98, 0xe3, 0x9e, 0x2b, 0x4c,
      0xcc, 0xf4, 0xc6}};
typedef struct OrbelcastIConnectionPointFunctions {
  OrbelcastResult (*QueryInterface)(OrbelcastIConnectionPoint* self, const OrbelcastGuid* id, void** object);
  uint32_t (*AddRef)(OrbelcastIConnectionPoint* self);
  uint32_t (*Release)(OrbelcastIConnectionPoint* self);
  /// Calls `sink` from now on; its reference is counted until Unadvise or the control's end. `cookie` names the
  /// connection; it is never 0.
  OrbelcastResult (*Advise)(OrbelcastIConnectionPoint* self, OrbelcastIEventSink* sink, uint32_t* cookie);
  /// ORBELCAST_CONNECT_E_NOCONNECTION where there is no such connection.
  OrbelcastResult (*Unadvise)(OrbelcastIConnectionPoint* self, uint32_t cookie);
} OrbelcastIConnectionPointFunctions;
struct OrbelcastIConnectionPoint {
  const OrbelcastIConnectionPointFunctions* functions;
};

/// A control's event interfaces.
static const OrbelcastGuid ORBELCAST_ICONNECTIONPOINTCONTAINER_ID = {0x40251869, 0x5a8a, 0x44b1, {0xa7, 0xf6, 0xaf,
      0x23, 0x2a, 0x4a, 0xc6, 0xf9}};
typedef struct OrbelcastIConnectionPointContainerFunctions {
  OrbelcastResult (*QueryInterface)(OrbelcastIConnectionPointContainer* self, const OrbelcastGuid* id, void** object);
  uint32_t (*AddRef)(OrbelcastIConnectionPointContainer* self);
  uint32_t (*Release)(OrbelcastIConnectionPointContainer* self);
  /// ORBELCAST_CONNECT_E_NOCONNECTION where the control does not raise the events `id`.
  OrbelcastResult (*FindConnectionPoint)(OrbelcastIConnectionPointContainer* self, const OrbelcastGuid* id,
      OrbelcastIConnectionPoint** point);
} OrbelcastIConnectionPointContainerFunctions;
struct OrbelcastIConnectionPointContainer {
  const OrbelcastIConnectionPointContainerFunctions* functions;
};

/// A persisted property: texts that need not end in a 0.
struct OrbelcastPersistedProperty {
  const char* key;
  uint32_t key_size;
  uint32_t text_size;
  const char* text;
};

/// The calls of a container, the window that a control is placed on.
static const OrbelcastGuid ORBELCAST_ICONTROL_ID = {0xdd06299a, 0xad7a, 0x4394, {0x86, 0x6a, 0x43, 0x5a, 0x5e, 0x2d,
      0x1a, 0xbe}};
typedef struct OrbelcastIControlFunctions {
  OrbelcastResult (*QueryInterface)(OrbelcastIControl* self, const OrbelcastGuid* id, void** object);
  uint32_t (*AddRef)(OrbelcastIControl* self);
  uint32_t (*Release)(OrbelcastIControl* self);
  /// Sites the control and gives it its size in twips (15 to a pixel), which runs its layout. Again at each change.
  OrbelcastResult (*Place)(OrbelcastIControl* self, float width, float height);
  /// The control is hidden: a viewer's stream does nothing until the next successful Connect.
  OrbelcastResult (*Hide)(OrbelcastIControl* self);
  /// Hands the control its property bag, which has exactly these keys: once, after Place. The viewer has no persisted
  /// properties and reads none. The player reads "Server" and the rest, and may wait for the server.
  OrbelcastResult (*Load)(OrbelcastIControl* self, const OrbelcastPersistedProperty* properties, uint32_t count);
} OrbelcastIControlFunctions;
struct OrbelcastIControl {
  const OrbelcastIControlFunctions* functions;
};

/// A picture: what `GetPicture` returns.
static const OrbelcastGuid ORBELCAST_IPICTURE_ID = {0x4e837c2b, 0x0134, 0x4971, {0xb6, 0x3c, 0x7e, 0x08, 0x83, 0xc5,
      0x23, 0xd1}};
typedef struct OrbelcastIPictureFunctions {
  OrbelcastResult (*QueryInterface)(OrbelcastIPicture* self, const OrbelcastGuid* id, void** object);
  uint32_t (*AddRef)(OrbelcastIPicture* self);
  uint32_t (*Release)(OrbelcastIPicture* self);
  OrbelcastResult (*GetSize)(OrbelcastIPicture* self, int32_t* width, int32_t* height);
  /// Gives the pixels, width × height of them, row by row from the top: each the number 0xAARRGGBB in the machine's
  /// byte order. They stay where they are until the picture is released or, of a surface, drawn on.
  OrbelcastResult (*GetPixels)(OrbelcastIPicture* self, const uint32_t** pixels);
} OrbelcastIPictureFunctions;
struct OrbelcastIPicture {
  const OrbelcastIPictureFunctions* functions;
};

/// A surface that controls draw on, black at first.
static const OrbelcastGuid ORBELCAST_ISURFACE_ID = {0x641f5119, 0x10aa, 0x4b44, {0x9e, 0xe1, 0x35, 0xb4, 0x8b, 0xde,
      0xea, 0xd2}};
typedef struct OrbelcastISurfaceFunctions {
  OrbelcastResult (*QueryInterface)(OrbelcastISurface* self, const OrbelcastGuid* id, void** object);
  uint32_t (*AddRef)(OrbelcastISurface* self);
  uint32_t (*Release)(OrbelcastISurface* self);
  OrbelcastResult (*GetSize)(OrbelcastISurface* self, int32_t* width, int32_t* height);
  OrbelcastResult (*GetPixels)(OrbelcastISurface* self, const uint32_t** pixels);
  /// The number by which it is named as a device context (`RenderPicture`), until it is released. Never 0.
  OrbelcastResult (*GetDeviceContext)(OrbelcastISurface* self, int32_t* device_context);
} OrbelcastISurfaceFunctions;
struct OrbelcastISurface {
  const OrbelcastISurfaceFunctions* functions;
};

/// Dropped data, one format at a time, as the event `OLEDragDrop` hands it on.
static const OrbelcastGuid ORBELCAST_IDATAOBJECT_ID = {0x074fb0d9, 0x4a2c, 0x4d9b, {0x94, 0x67, 0x5a, 0x3c, 0x37,
      0x71, 0x9a, 0x17}};
typedef struct OrbelcastIDataObjectFunctions {
  OrbelcastResult (*QueryInterface)(OrbelcastIDataObject* self, const OrbelcastGuid* id, void** object);
  uint32_t (*AddRef)(OrbelcastIDataObject* self);
  uint32_t (*Release)(OrbelcastIDataObject* self);
  uint32_t (*GetCount)(OrbelcastIDataObject* self);
  /// Gives the media type (a text that ends in a 0) and the bytes of the form at `index`. ORBELCAST_E_INVALIDARG beyond the last.
  OrbelcastResult (*GetFormat)(OrbelcastIDataObject* self, uint32_t index, const char** media_type, const char** data,
      uint32_t* size);
} OrbelcastIDataObjectFunctions;
struct OrbelcastIDataObject {
  const OrbelcastIDataObjectFunctions* functions;
};

/// The message loop and what else a host without a toolkit needs. Class factories and controls have it.
static const OrbelcastGuid ORBELCAST_IHOSTSERVICES_ID = {0xcaa8d289, 0x6515, 0x41c0, {0xa0, 0xae, 0x7e, 0xf0, 0xd3,
      0xd5, 0x47, 0x77}};
typedef struct OrbelcastIHostServicesFunctions {
  OrbelcastResult (*QueryInterface)(OrbelcastIHostServices* self, const OrbelcastGuid* id, void** object);
  uint32_t (*AddRef)(OrbelcastIHostServices* self);
  uint32_t (*Release)(OrbelcastIHostServices* self);
  /// Runs the message loop for that long. ORBELCAST_E_INVALIDARG for a negative time.
  OrbelcastResult (*RunLoop)(OrbelcastIHostServices* self, int32_t milliseconds);
  /// Waits until something is due, but not longer than that, and handles it; 0 handles what is due and does not wait.
  /// ORBELCAST_S_FALSE when the time has passed. Inside an event it only yields.
  OrbelcastResult (*HandleNext)(OrbelcastIHostServices* self, int32_t milliseconds);
  /// Makes a surface of so many pixels; at most 65535 to a side and 64 megapixels, else ORBELCAST_E_INVALIDARG.
  OrbelcastResult (*CreateSurface)(OrbelcastIHostServices* self, int32_t width, int32_t height, OrbelcastISurface**
      surface);
  /// A copy of the picture that `ImageOnClipboard` left; ORBELCAST_S_FALSE, and null, where there is none.
  OrbelcastResult (*GetClipboardPicture)(OrbelcastIHostServices* self, OrbelcastIPicture** picture);
} OrbelcastIHostServicesFunctions;
struct OrbelcastIHostServices {
  const OrbelcastIHostServicesFunctions* functions;
};

/// A descriptor that the message loop waits for.
struct OrbelcastLoopDescriptor {
  int32_t descriptor;
  uint16_t readable;  ///< 1 where it is waited for until it can be read, else 0.
  uint16_t writable;  ///< The same of writing.
};

/// The waits of the message loop, for a host with a loop of its own. Class factories and controls have it.
static const OrbelcastGuid ORBELCAST_IHOSTLOOP_ID = {0x49b5523e, 0x8c75, 0x48a5, {0x99, 0x39, 0x29, 0x0c, 0xab, 0x8c,
      0x94, 0xac}};
typedef struct OrbelcastIHostLoopFunctions {
  OrbelcastResult (*QueryInterface)(OrbelcastIHostLoop* self, const OrbelcastGuid* id, void** object);
  uint32_t (*AddRef)(OrbelcastIHostLoop* self);
  uint32_t (*Release)(OrbelcastIHostLoop* self);
  /// Gives the descriptors that the loop waits for just now, at most `capacity` of them; `*count` is how many there
  /// are. `*nanoseconds` is the time until something is due without them: 0 at once, −1 never. The host calls
  /// HandleNext(0) when one of these is there. Each call into the library may change them: ask again after it.
  OrbelcastResult (*GetWaits)(OrbelcastIHostLoop* self, OrbelcastLoopDescriptor* descriptors, uint32_t capacity,
      uint32_t* count, int64_t* nanoseconds);
} OrbelcastIHostLoopFunctions;
struct OrbelcastIHostLoop {
  const OrbelcastIHostLoopFunctions* functions;
};

/// Calls that do not wait. Controls have it.
///
/// For hosts that call a member which may wait where they must not be suspended: inside an event, or on the thread of
/// another event loop. What is called runs on a stack of its own.
static const OrbelcastGuid ORBELCAST_ISTARTER_ID = {0x4fb3e6d8, 0xda93, 0x452e, {0xab, 0x21, 0x2e, 0x08, 0x8a, 0xa5,
      0x4e, 0x9c}};
typedef struct OrbelcastIStarterFunctions {
  OrbelcastResult (*QueryInterface)(OrbelcastIStarter* self, const OrbelcastGuid* id, void** object);
  uint32_t (*AddRef)(OrbelcastIStarter* self);
  uint32_t (*Release)(OrbelcastIStarter* self);
  /// As OrbelcastIDispatch::Invoke where the member ends without waiting. ORBELCAST_S_FALSE where it waits: it goes on while the loop
  /// runs, on copies of the arguments; what it returns and writes by reference then, nobody is told.
  OrbelcastResult (*Start)(OrbelcastIStarter* self, int32_t id, uint16_t kind, OrbelcastArguments* arguments,
      OrbelcastVariant* result, uint32_t* wrong_argument);
  /// As OrbelcastIControl::Load. ORBELCAST_S_FALSE where it goes on.
  OrbelcastResult (*StartLoad)(OrbelcastIStarter* self, const OrbelcastPersistedProperty* properties, uint32_t count);
} OrbelcastIStarterFunctions;
struct OrbelcastIStarter {
  const OrbelcastIStarterFunctions* functions;
};

enum { ORBELCAST_NO_ICON = 0, ORBELCAST_EXCLAMATION_ICON = 1, ORBELCAST_INFORMATION_ICON = 2 };

/// The host's object that answers the questions of controls. Texts it is given end in a 0 and stay until it returns; of
/// a text that it answers with the same holds as of one that an event sink writes. ORBELCAST_S_FALSE, as any failure, is the
/// cancelled dialog, or No.
static const OrbelcastGuid ORBELCAST_IHOSTDIALOGS_ID = {0x5144b14e, 0xdb75, 0x4a18, {0x90, 0xa0, 0x42, 0xe7, 0x9e,
      0xff, 0x8d, 0xdc}};
typedef struct OrbelcastIHostDialogsFunctions {
  OrbelcastResult (*QueryInterface)(OrbelcastIHostDialogs* self, const OrbelcastGuid* id, void** object);
  uint32_t (*AddRef)(OrbelcastIHostDialogs* self);
  uint32_t (*Release)(OrbelcastIHostDialogs* self);
  /// Asks for a file name to save under; `filter` has kinds of files with their names' endings, as pairs: "JPEG Image
  /// (*.jpg)|*.jpg".
  OrbelcastResult (*AskSaveName)(OrbelcastIHostDialogs* self, const char* title, const char* filter, OrbelcastVariant*
      name);
  /// Shows a message; where `question` is not 0 it is answered Yes (ORBELCAST_S_OK) or No (ORBELCAST_S_FALSE). `icon` is a MessageIcon.
  OrbelcastResult (*ShowMessage)(OrbelcastIHostDialogs* self, const char* text, const char* title, int32_t question,
      int32_t icon);
  /// Asks for a line of text.
  OrbelcastResult (*AskText)(OrbelcastIHostDialogs* self, const char* prompt, const char* title, OrbelcastVariant*
      text);
  /// Asks how a clip is compressed: `*codec` is the position among the `count` names of `codecs`; `*key_frame_every`
  /// (pictures) and `*kilobytes_per_second` are 0 at first, which leaves them to the codec.
  OrbelcastResult (*ChooseCompression)(OrbelcastIHostDialogs* self, const char* const* codecs, uint32_t count,
      uint32_t* codec, int32_t* key_frame_every, int32_t* kilobytes_per_second);
  OrbelcastResult (*Beep)(OrbelcastIHostDialogs* self);
} OrbelcastIHostDialogsFunctions;
struct OrbelcastIHostDialogs {
  const OrbelcastIHostDialogsFunctions* functions;
};

/// The service that takes the host's answers to dialogs. Class factories and controls have it.
static const OrbelcastGuid ORBELCAST_IDIALOGSERVICES_ID = {0xd11df184, 0x960d, 0x46e4, {0x94, 0xec, 0x10, 0x8a, 0x8f,
      0xbe, 0xa3, 0x0e}};
typedef struct OrbelcastIDialogServicesFunctions {
  OrbelcastResult (*QueryInterface)(OrbelcastIDialogServices* self, const OrbelcastGuid* id, void** object);
  uint32_t (*AddRef)(OrbelcastIDialogServices* self);
  uint32_t (*Release)(OrbelcastIDialogServices* self);
  /// Lets `dialogs` answer the questions of all controls, until the last object of the library is released; null: they
  /// are cancelled, as without this call. Its reference is counted meanwhile.
  OrbelcastResult (*SetDialogs)(OrbelcastIDialogServices* self, OrbelcastIHostDialogs* dialogs);
} OrbelcastIDialogServicesFunctions;
struct OrbelcastIDialogServices {
  const OrbelcastIDialogServicesFunctions* functions;
};

/// `DllGetClassObject`: gives the class factory of `class_id`. ORBELCAST_CLASS_E_CLASSNOTAVAILABLE where there is no such class.
typedef OrbelcastResult OrbelcastGetClassObjectFunction(const OrbelcastGuid* class_id, const OrbelcastGuid*
      interface_id, void** object);

/// `DllCanUnloadNow`: ORBELCAST_S_OK when no object is alive and no lock held, ORBELCAST_S_FALSE otherwise.
typedef OrbelcastResult OrbelcastCanUnloadNowFunction(void);

/// `DllRegisterServer`, `DllUnregisterServer`: write the classes into the registry file and remove them.
/// ORBELCAST_SELFREG_E_CLASS where it cannot be written.
typedef OrbelcastResult OrbelcastRegisterServerFunction(void);
// end of C
// clang-format on

#endif
