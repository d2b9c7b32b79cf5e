#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "orbelcast/orbelcast.h"

extern "C" orbelcast::server::GetClassObjectFunction DllGetClassObject;

/// The controls as classes, for C++ programs without a screen that link liborbelcast.so: in one header, so that a
/// program needs no other. All of this is inline over `orbelcast/orbelcast.h`, whose binary form does not change: a
/// program goes on with later libraries as it is.
///
/// Threads, the loop, and what may be called inside an event are as told there. A call that cannot be made (another
/// thread, a control that has ended) throws an Error; failures of the network are events. What an event's handler
/// throws ends the program.
namespace orbelcast::headless {

/// A call was refused.
class Error : public std::runtime_error {
 public:
  explicit Error(server::Result result)
      : std::runtime_error("Orbelcast refused a call: " + std::to_string(result)), code(result) {}

  const server::Result code;
};

inline void Check(server::Result result) {
  if (!server::Succeeded(result)) throw Error(result);
}

// ---- Values of calls and events -------------------------------------------------------------------------------------

inline server::Variant ToVariant(bool value) {
  return server::MakeBoolean(value);
}
inline server::Variant ToVariant(std::int16_t value) {
  return server::MakeInteger(value);
}
inline server::Variant ToVariant(std::int32_t value) {
  return server::MakeLong(value);
}
inline server::Variant ToVariant(std::string_view value) {
  return server::MakeText(value);
}
template <typename T>
server::Variant ToVariant(const std::optional<T>& value) {
  return value ? ToVariant(*value) : server::MakeMissing();
}

/// A copy of what a variant holds.
template <typename T>
T FromVariant(const server::Variant& variant) {
  if (variant.type == server::kReference) return FromVariant<T>(*variant.reference);
  if constexpr (std::is_same_v<T, bool>) {
    return variant.i16 != 0;
  } else if constexpr (std::is_same_v<T, std::int16_t>) {
    return variant.i16;
  } else if constexpr (std::is_same_v<T, std::int32_t>) {
    return variant.i32;
  } else if constexpr (std::is_same_v<T, float>) {
    return variant.f32;
  } else if constexpr (std::is_same_v<T, std::string>) {
    return std::string(variant.text, variant.text != nullptr ? variant.size : 0);
  } else if constexpr (std::is_same_v<T, std::vector<std::uint8_t>>) {
    return std::vector<std::uint8_t>(variant.bytes, variant.bytes + variant.size);
  } else {
    if (variant.object != nullptr) variant.object->AddRef();
    return T(static_cast<decltype(std::declval<T>().Get())>(variant.object));
  }
}

// ---- What both controls have ----------------------------------------------------------------------------------------

/// A control of the library, which ends with this object, also inside one of its own events.
class Control {
 public:
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  /// Gives the control its size, in twips: 15 a pixel. A player reads what `Load` gives it after that.
  void Resize(float width, float height) { Check(control_.As<server::IControl>()->Place(width, height)); }
  /// Hands a player what its container keeps for it, by key ("Server"). It may wait for the server.
  void Load(const std::vector<std::pair<std::string_view, std::string_view>>& kept) {
    std::vector<server::PersistedProperty> properties;
    properties.reserve(kept.size());
    for (const auto& [key, text] : kept) {
      properties.push_back(
          {key.data(), static_cast<std::uint32_t>(key.size()), static_cast<std::uint32_t>(text.size()), text.data()});
    }
    Check(control_.As<server::IControl>()->Load(properties.data(), static_cast<std::uint32_t>(properties.size())));
  }

  /// Runs the loop of all controls for that long.
  void RunLoop(std::chrono::milliseconds time) const {
    Check(control_.As<server::IHostServices>()->RunLoop(static_cast<std::int32_t>(time.count())));
  }
  /// Waits until something is due, at most that long, and handles it. False where the time has passed.
  bool HandleNext(std::chrono::milliseconds longest = std::chrono::hours(1)) const {
    const server::Result result =
        control_.As<server::IHostServices>()->HandleNext(static_cast<std::int32_t>(longest.count()));
    Check(result);
    return result == server::S_OK;
  }

  /// The control by its other interfaces.
  const server::Held<server::IDispatch>& Dispatch() const { return control_; }

 protected:
  explicit Control(const server::Guid& class_id) {
    server::Held<server::IClassFactory> factory;
    Check(DllGetClassObject(&class_id, &server::IClassFactory::kId, factory.Put()));
    Check(factory->CreateInstance(nullptr, &server::IDispatch::kId, control_.Put()));
  }
  ~Control() = default;

  template <typename T>
  T Get(std::int32_t id) const {
    return Invoke<T>(id, server::kPropertyGet, nullptr, 0);
  }
  template <typename T>
  void Put(std::int32_t id, T value) {
    server::Variant given = ToVariant(value);
    Invoke<void>(id, server::kPropertyPut, &given, 1);
  }
  /// Puts a number and gives what the control wrote back.
  template <typename T>
  T PutBack(std::int32_t id, T value) {
    server::Variant variable = ToVariant(value);
    server::Variant given = server::MakeReference(variable);
    Invoke<void>(id, server::kPropertyPut, &given, 1);
    return FromVariant<T>(variable);
  }
  template <typename T, typename... Values>
  T Call(std::int32_t id, const Values&... values) const {
    std::array<server::Variant, sizeof...(Values) + 1> given{ToVariant(values)...};
    return Invoke<T>(id, server::kMethod, given.data(), sizeof...(Values));
  }

  /// Has the events told to `handlers`, by a class's `Raise`.
  template <typename Class, typename Handlers>
  void Listen(const server::Guid& events, const std::shared_ptr<Handlers>& handlers) {
    server::Held<server::IConnectionPoint> point;
    Check(control_.As<server::IConnectionPointContainer>()->FindConnectionPoint(&events, point.PutTyped()));
    const server::Held<server::IEventSink> sink(new Sink<Class, Handlers>(handlers));
    std::uint32_t cookie = 0;
    Check(point->Advise(sink.Get(), &cookie));
  }
  /// Calls a handler, where there is one, which may end the control and itself with it.
  template <typename... Values>
  static void Tell(const std::function<void(Values...)>& handler, const server::Arguments& arguments) {
    if (!handler) return;
    const auto kept = handler;
    [&]<std::size_t... I>(std::index_sequence<I...>) {
      kept(FromVariant<std::decay_t<Values>>(arguments.values[I])...);
    }
    (std::index_sequence_for<Values...>());
  }

 private:
  template <typename Class, typename Handlers>
  class Sink final : public server::IEventSink {
   public:
    explicit Sink(std::shared_ptr<Handlers> handlers) : handlers_(std::move(handlers)) {}

    server::Result QueryInterface(const server::Guid*, void** object) override {
      *object = nullptr;
      return server::E_NOINTERFACE;
    }
    std::uint32_t AddRef() override { return ++references_; }
    std::uint32_t Release() override {
      const std::uint32_t left = --references_;
      if (left == 0) delete this;
      return left;
    }
    server::Result Invoke(std::int32_t id, server::Arguments* arguments) noexcept override {
      const auto kept = handlers_;
      Class::Raise(*kept, id, *arguments);
      return server::S_OK;
    }

   private:
    ~Sink() = default;

    const std::shared_ptr<Handlers> handlers_;
    std::uint32_t references_ = 1;
  };

  template <typename T>
  T Invoke(std::int32_t id, std::uint16_t kind, server::Variant* values, std::uint32_t count) const {
    server::Arguments arguments{values, count, 0, nullptr};
    server::Variant result{};
    Check(control_->Invoke(id, kind, &arguments, &result, nullptr));
    if constexpr (std::is_void_v<T>) {
      server::Clear(result);
    } else {
      T value = FromVariant<T>(result);
      server::Clear(result);
      return value;
    }
  }

  server::Held<server::IDispatch> control_;
};

// ---- The controls ---------------------------------------------------------------------------------------------------

// clang-format off
// made by tools/make_reference: C++
/// Orbelcast stream viewer
class VideoServerPush : public Control {
 public:
  /// Handlers of the events; what is not set is not told.
  struct EventHandlers {
    /// Once a clock second while pictures come: bytes received and frames shown since the last time. A second in which
    /// less than half a kilobyte came has none. Of a mosaic once a round, as (0, 1).
    std::function<void(std::int32_t BytesPerSecond, std::int32_t FrameRate)> StreamInfo;
    /// Motion, with `MotionDetector` on: its bounding box in hundredths of the picture's width and height; X1 is the
    /// column of the first sample found, not the leftmost one.
    std::function<void(std::int32_t X1, std::int32_t Y1, std::int32_t X2, std::int32_t Y2)> MotionDetected;
    /// The server has answered with status 200 and the stream runs; for a stream once more with its second new frame.
    std::function<void()> Connected;
    /// `Disconnect` has ended the stream, also the one that a failed `Connect` makes.
    std::function<void()> Disconnected;
    /// `Connect` got no answer, or another status than 200; the `Status` before it tells which. Not with
    /// `AutoReconnect`.
    std::function<void()> ConnectionFailed;
    /// The same, right after it: the address that failed, and whether a single picture was asked for.
    std::function<void(std::string xUrl, bool xType)> ConnectionFailedV2;
    /// Five frame requests in a row have failed; raised again after each further five. The viewer goes on trying. Not
    /// with `AutoReconnect`.
    std::function<void()> ConnectionBroken;
    /// The status line's new text, in the language of the text mapper.
    std::function<void(std::string xDesc)> Status;
    /// The first answer's header "VigilboxInfo", whatever the answer's status, where it begins with "1".
    std::function<void(std::string rX)> VigilboxInfo;
    /// Each frame's time, and the first answer's: the parts of the header "RC_TCR" by their position, whatever they
    /// hold, and the header as a whole; `xDs` is "00". A frame without that header has this machine's clock.
    std::function<void(std::string xYear, std::string xMonth, std::string xDay, std::string xHour, std::string xMinute, std::string xSecond, std::string xDs, std::string xTCR)> VigilboxTCR;
    /// A mouse button was pressed over the picture: 1 left, 2 right, 4 middle. Over the video the left one alone, over
    /// the test card any.
    std::function<void(std::int16_t Button)> MouseDown;
    /// Declared; nothing raises it.
    std::function<void(std::string Rc_Query)> RCQueryMethod;
    /// The first answer's header "PlugIns", where there is one.
    std::function<void(std::string Plugin)> Plugin;
    /// Something was dropped on the picture: what it holds by media type, the effect that the source expects (a
    /// listener may change it), the buttons and keys held, and the place in twips of the control that was dropped on.
    std::function<void(server::Held<server::IDataObject> Data, std::int32_t Effect, std::int16_t Button, std::int16_t Shift, float X, float y)> OLEDragDrop;
    /// Right before `MotionDetected`, with the same box.
    std::function<void(std::int32_t X1, std::int32_t Y1, std::int32_t X2, std::int32_t Y2)> MotionArea;
    /// Right after `MotionDetected`: the zone of the first sample found, 1 to 25; −1 where the rectangle is watched.
    std::function<void(std::int16_t Area)> MotionDetectedArea;
  };

  VideoServerPush() : Control(server::kVideoServerPushClass) { Listen<VideoServerPush>(server::kVideoServerPushEvents, handlers_); }

 private:
  const std::shared_ptr<EventHandlers> handlers_ = std::make_shared<EventHandlers>();

 public:
  EventHandlers& Events = *handlers_;

  static void Raise(const EventHandlers& handlers, std::int32_t event, const server::Arguments& arguments) {
    switch (event) {
      case 1: return Tell(handlers.StreamInfo, arguments);
      case 2: return Tell(handlers.MotionDetected, arguments);
      case 3: return Tell(handlers.Connected, arguments);
      case 4: return Tell(handlers.Disconnected, arguments);
      case 5: return Tell(handlers.ConnectionFailed, arguments);
      case 6: return Tell(handlers.ConnectionFailedV2, arguments);
      case 7: return Tell(handlers.ConnectionBroken, arguments);
      case 8: return Tell(handlers.Status, arguments);
      case 9: return Tell(handlers.VigilboxInfo, arguments);
      case 10: return Tell(handlers.VigilboxTCR, arguments);
      case 11: return Tell(handlers.MouseDown, arguments);
      case 12: return Tell(handlers.RCQueryMethod, arguments);
      case 13: return Tell(handlers.Plugin, arguments);
      case 14: return Tell(handlers.OLEDragDrop, arguments);
      case 15: return Tell(handlers.MotionArea, arguments);
      case 16: return Tell(handlers.MotionDetectedArea, arguments);
    }
  }

  /// Pictures asked for a second, 1 to 30; 1 at first. What is beyond becomes the nearest, which the let writes back
  /// into `value`.
  std::int16_t FrameRate() const { return Get<std::int16_t>(0x68030000); }
  std::int16_t FrameRate(std::int16_t value) { return PutBack<std::int16_t>(0x68030000, value); }

  /// Always empty.
  std::string Server() const { return Get<std::string>(0x68030001); }

  /// Shows the status strip. Connecting, disconnecting and `ShowStatus` show it as well.
  bool ShowBandwidth() const { return Get<bool>(0x68030002); }
  void ShowBandwidth(bool value) { Put<bool>(0x68030002, value); }

  /// Looks for motion in each frame: in the rectangle `MotionArea_…`, or in zones with `MotionByZones`.
  bool MotionDetector() const { return Get<bool>(0x68030003); }
  void MotionDetector(bool value) { Put<bool>(0x68030003, value); }

  /// The user's name, sent once the server asks for one (Basic or Digest), and from then on at once.
  std::string Username() const { return Get<std::string>(0x68030004); }
  void Username(std::string_view value) { Put<std::string_view>(0x68030004, value); }

  /// The user's password, sent together with the name.
  std::string Password() const { return Get<std::string>(0x68030005); }
  void Password(std::string_view value) { Put<std::string_view>(0x68030005, value); }

  /// Kept for the host; it changes nothing.
  bool DirectToDisk() const { return Get<bool>(0x68030006); }
  void DirectToDisk(bool value) { Put<bool>(0x68030006, value); }

  /// The lower edge of the watched rectangle, in hundredths of the picture's height. What lies below it is watched
  /// all the same. Any number is stored; with all four edges 0, as they are at first, nothing is watched.
  std::int32_t MotionArea_Y2() const { return Get<std::int32_t>(0x68030007); }
  std::int32_t MotionArea_Y2(std::int32_t value) { return PutBack<std::int32_t>(0x68030007, value); }

  /// The upper edge of the watched rectangle, in hundredths of the picture's height.
  std::int32_t MotionArea_y1() const { return Get<std::int32_t>(0x68030008); }
  std::int32_t MotionArea_y1(std::int32_t value) { return PutBack<std::int32_t>(0x68030008, value); }

  /// The right edge of the watched rectangle, in hundredths of the picture's width.
  std::int32_t MotionArea_x2() const { return Get<std::int32_t>(0x68030009); }
  std::int32_t MotionArea_x2(std::int32_t value) { return PutBack<std::int32_t>(0x68030009, value); }

  /// The left edge of the watched rectangle, in hundredths of the picture's width.
  std::int32_t MotionArea_x1() const { return Get<std::int32_t>(0x6803000a); }
  std::int32_t MotionArea_x1(std::int32_t value) { return PutBack<std::int32_t>(0x6803000a, value); }

  /// Write: how small a change counts as motion, in percent (100 takes any, what is beyond counts as 100); the let
  /// writes 100 minus it back into `value`. Read: the threshold that it was made into, a difference of grey levels in
  /// percent of 256, 0 to 255.
  std::int32_t MotionSensivity() const { return Get<std::int32_t>(0x6803000b); }
  std::int32_t MotionSensivity(std::int32_t value) { return PutBack<std::int32_t>(0x6803000b, value); }

  /// Shows what the motion detection sees in a corner of the picture, while `MotionDetector` is on.
  bool ShowMotion() const { return Get<bool>(0x6803000c); }
  void ShowMotion(bool value) { Put<bool>(0x6803000c, value); }

  /// Kept for the host; it changes nothing.
  bool AlwaysSmooth() const { return Get<bool>(0x6803000d); }
  void AlwaysSmooth(bool value) { Put<bool>(0x6803000d, value); }

  /// When true, `Connect` leaves the last picture on screen while it connects, instead of the test card.
  bool DisableTestScreen() const { return Get<bool>(0x6803000e); }
  void DisableTestScreen(bool value) { Put<bool>(0x6803000e, value); }

  /// Watches the zones of `MotionString` instead of the rectangle. Yields.
  bool MotionByZones() const { return Get<bool>(0x6803004d); }
  void MotionByZones(bool value) { Put<bool>(0x6803004d, value); }

  /// One character a zone, 25 zones in five rows from the top; "0" excludes the zone, anything else, and a text that
  /// is too short, includes it. Yields.
  std::string MotionString() const { return Get<std::string>(0x6803004e); }
  void MotionString(std::string_view value) { Put<std::string_view>(0x6803004e, value); }

  /// The address of the stream that is connected; empty after `Disconnect`. It may hold a password, as it was given.
  std::string URL() const { return Get<std::string>(0x6803004f); }

  /// Retries silently and for ever instead of reporting failures.
  bool AutoReconnect() const { return Get<bool>(0x68030050); }
  void AutoReconnect(bool value) { Put<bool>(0x68030050, value); }

  /// Opens a stream, or with `OnlyOnce` fetches and shows one picture. `URL` is the whole address and begins with
  /// "http://" in any letter case; any other is ignored. `msg` is shown in a box while the first request is under
  /// way. Waits for the first answer, 20 seconds for the connection and 60 for the picture at most. What becomes of
  /// it is told by `Connected`, or `ConnectionFailed`; a newer `Connect` takes over.
  void Connect(std::string_view URL, std::optional<bool> OnlyOnce = {}, std::optional<std::string_view> msg = {}) { return Call<void>(0x6003000f, URL, OnlyOnce, msg); }

  /// Puts the picture that is shown on the clipboard, at the size at which it is shown.
  void ImageOnClipboard() { return Call<void>(0x60030010); }

  /// Saves the picture that is shown as the file `Filename`, replacing it: of a stream the server's JPEG byte for
  /// byte, of a mosaic or the test card a bitmap, whatever the name ends in. A name that cannot be written leaves no
  /// file.
  void SaveImage(std::string_view Filename) { return Call<void>(0x60030011, Filename); }

  /// Ends the stream and shows the test card. With `NoNewStatus` the status texts stay as they are.
  void Disconnect(std::optional<bool> NoNewStatus = {}) { return Call<void>(0x60030012, NoNewStatus); }

  /// Lets one more tick fetch its picture, then stops; the last picture stays on screen.
  void StopGettingFrames() { return Call<void>(0x6003001b); }

  /// Shows `X` on the status line, and the status strip. Yields.
  void ShowStatus(std::string_view X) { return Call<void>(0x6003001d, X); }

  /// Pauses (false) or resumes (true) the frame loop without touching the connection.
  void ToogleClock(bool X) { return Call<void>(0x60030033, X); }

  /// Steps one frame with the frame loop switched off. Nothing before the first frame.
  void Pulse() { return Call<void>(0x6003003f); }

  /// Treats the answer that the request object holds as a frame.
  void RequestEnd() { return Call<void>(0x6003004c); }

  /// Shows several cameras as a grid, one tile every half second, until the next `Connect`. `inpString` holds the
  /// cameras' live addresses, each followed by CR LF; an empty one does nothing. A tile's request blocks the thread
  /// until the picture is there, for five seconds at most; a tile without an answer is black. `StreamInfo` (0, 1) is
  /// raised once a round.
  void MultiCamView(std::string_view inpString) { return Call<void>(0x60030064, inpString); }

  /// A copy of the newest answer's bytes, a JPEG as the server sent it; empty before the first.
  std::vector<std::uint8_t> GetPictureArray() { return Call<std::vector<std::uint8_t>>(0x60030065); }

  /// The newest picture at its own size, in pixels; nothing where there is none or it cannot be read.
  server::Held<server::IPicture> GetPicture() { return Call<server::Held<server::IPicture>>(0x60030066); }

  /// Draws the newest picture at the top-left corner of the host's surface that `PictureHdc` stands for, stretched to
  /// `sX` × `sY` pixels; 0 is the picture's own size. Nothing where there is no such surface or no picture.
  void RenderPicture(std::int32_t PictureHdc, std::optional<std::int32_t> sX = {}, std::optional<std::int32_t> sY = {}) { return Call<void>(0x60030067, PictureHdc, sX, sY); }
};

/// Orbelcast player
class UserControl1 : public Control {
 public:
  UserControl1() : Control(server::kUserControl1Class) {}

  /// The name that the server gives itself; its address where it gave none.
  std::string SystemName() const { return Get<std::string>(0x6803002b); }

  /// Whether the toolbar has its extended buttons: log, alerts, inputs and outputs, message, several cameras.
  bool ShowExtendedFeatures() const { return Get<bool>(0x6803002c); }
  void ShowExtendedFeatures(bool value) { Put<bool>(0x6803002c, value); }

  /// Begins a clip: asks for a file and a compression, then takes a picture at each `StreamInfo` of the viewer. Ends
  /// a clip that is being recorded. Where an answer is cancelled, or there is no picture, none begins.
  void AviStart() { return Call<void>(0x60030008); }

  /// Ends the clip and tells "Total frames" in a message box: the clip's next position, one more than its pictures.
  /// The box is shown where none is being recorded, too.
  void StopAvi() { return Call<void>(0x60030011); }

  /// Takes `l` as the camera's live address and `i` as its archive address, each beginning with "http://", and shows
  /// the live stream.
  void RefreshURLs(std::string_view l, std::string_view i) { return Call<void>(0x60030018, l, i); }

  /// Whether the children follow the control's size, from the next resize on.
  void DoResize(bool X) { return Call<void>(0x60030022, X); }

  /// Loads the camera list of a server, a host or host:port; the port that was set before is forgotten. Waits for the
  /// answer, at most 10 seconds for the connection and 10 for the answer. A server that does not answer gives an
  /// empty list; an empty `xServer` changes nothing but what the host has kept. A newer call takes over: what an
  /// older one, or a button of the toolbar, still waits for is not looked at any more.
  void Connect2Server(std::string_view xServer, std::string_view xUsername, std::string_view xPassword) { return Call<void>(0x6003002a, xServer, xUsername, xPassword); }

  /// Opens the chooser of cameras, a modal window, and shows those that were chosen together.
  void SetMultiCams() { return Call<void>(0x60030037); }
};
// end of C++
// clang-format on

}  // namespace orbelcast::headless
