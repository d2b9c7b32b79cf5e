#pragma once

#include <cstdint>
#include <string_view>

/// Orbelcast's controls for any host: C++ that links nothing, Python's ctypes, or whatever else can call a table of
/// functions. This header is all that a host needs, one file to copy; it depends on nothing and declares nothing that
/// has to be linked.
///
/// Getting in. Load `liborbelcast.so` and look up its four entry points, `DllGetClassObject` first. It gives the class
/// factory of a control, the factory makes controls, and a control gives its other interfaces by QueryInterface.
/// Members are reached late-bound: GetIDsOfNames turns a name into a dispatch id, Invoke calls it. Ids never change.
///
/// Threads and the loop. Everything happens on the thread that made the first object, until all objects are released:
/// from another one DllGetClassObject, and every method of IClassFactory, IDispatch, IConnectionPointContainer,
/// IConnectionPoint, IControl and IHostServices, answer RPC_E_WRONG_THREAD. Methods that only count or read may be
/// called on any thread: QueryInterface, AddRef, Release, and the methods of IMemberList, IPicture, ISurface and
/// IDataObject (the pixels of a surface not while a control may draw on it). An object whose last Release comes on
/// another thread ends when its own one next calls into the library. Event sinks are called on the objects' thread
/// alone. There are no threads of the library's own that a host could notice. Pictures arrive only while the message
/// loop runs: inside IHostServices::RunLoop and HandleNext (a host with a loop of its own calls HandleNext(0) every 10
/// ms or so) and inside members that wait.
///
/// Blocking. `Connect` waits for the server, at most about a minute. The player's `Connect2Server` and camera
/// choices wait at most about ten seconds for each question to the server. Everything else returns at once, apart from
/// a yield to the loop. Called on the host's own stack, a member that waits runs the loop, so events come meanwhile.
/// Called inside an event, it suspends that event's handler, which has a stack of its own (1 MiB), and all else goes
/// on; a host whose language keeps books about its stack (Python does) therefore calls nothing that waits from inside
/// an event, and does not run the loop there.
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
