#include "dispatch/control_server.h"

#include <gmock/gmock.h>

#include <cfenv>
#include <functional>
#include <limits>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "fakes/fake_platform.h"
#include "viewer/video_server_push.h"

namespace orbelcast::server {
namespace {

using testing::ElementsAre;

constexpr std::int32_t kFrameRate = 0x68030000;
constexpr std::int32_t kConnect = 0x6003000f;
constexpr std::int32_t kRenderPicture = 0x60030067;
constexpr std::int32_t kMotionAreaX1 = 0x6803000a;
constexpr std::int32_t kShowMotion = 0x6803000c;
constexpr std::int32_t kUsername = 0x68030004;

/// A sink that runs what the test gives it. It counts its references, so that a leak shows.
class Sink final : public IEventSink {
 public:
  explicit Sink(std::function<void(std::int32_t id, Arguments& arguments)> told) : told_(std::move(told)) {}
  ~Sink() { EXPECT_EQ(references, 0u); }

  Result QueryInterface(const Guid*, void**) override { return E_NOINTERFACE; }
  std::uint32_t AddRef() override { return ++references; }
  std::uint32_t Release() override { return --references; }
  Result Invoke(std::int32_t id, Arguments* arguments) override {
    told_(id, *arguments);
    return S_OK;
  }

  std::uint32_t references = 0;

 private:
  const std::function<void(std::int32_t id, Arguments& arguments)> told_;
};

/// A host of one viewer, on fake services.
class ControlServerTest : public testing::Test {
 protected:
  ControlServerTest() : control(Create("VideoServerPush")) {}
  ~ControlServerTest() override {
    control.Release();
    EXPECT_TRUE(server.Idle()) << "an object was not released";
  }

  Held<IDispatch> Create(std::string_view name) {
    Held<IClassFactory> factory;
    EXPECT_EQ(server.GetClassObject(&FindClass(name)->id, &IClassFactory::kId, factory.Put()), S_OK);
    Held<IDispatch> created;
    EXPECT_EQ(factory->CreateInstance(nullptr, &IDispatch::kId, created.Put()), S_OK);
    return created;
  }

  /// Hosts a viewer that the test made in place of the factory's, and so can raise its events.
  VideoServerPush& HostViewer() {
    auto viewer = VideoServerPush::Create(fakes.platform);
    VideoServerPush& made = *viewer;
    control = server.Host(*FindClass(kVideoServerPushClass), std::move(viewer));
    return made;
  }

  std::uint32_t Advise(Sink& sink) {
    std::uint32_t cookie = 0;
    EXPECT_EQ(Point()->Advise(&sink, &cookie), S_OK);
    return cookie;
  }
  Held<IConnectionPoint> Point() {
    Held<IConnectionPoint> point;
    EXPECT_EQ(control.As<IConnectionPointContainer>()->FindConnectionPoint(&kVideoServerPushEvents, point.PutTyped()),
              S_OK);
    return point;
  }

  Result Invoke(std::int32_t id, std::uint16_t kind, std::vector<Variant> values = {}, Variant* result = nullptr,
                std::vector<std::int32_t> names = {}) {
    Arguments arguments{};
    arguments.values = values.data();
    arguments.count = static_cast<std::uint32_t>(values.size());
    arguments.named_count = static_cast<std::uint32_t>(names.size());
    arguments.names = names.data();
    wrong = 99;
    return control->Invoke(id, kind, &arguments, result, &wrong);
  }
  Result Put(std::int32_t id, Variant value) { return Invoke(id, kPropertyPut, {value}); }
  std::string Get(std::int32_t id) {
    Variant value{};
    EXPECT_EQ(Invoke(id, kPropertyGet, {}, &value), S_OK);
    std::string text = value.type == kText ? std::string(value.text, value.size)
                                           : std::to_string(value.type == kLong ? value.i32 : value.i16);
    Clear(value);
    return text;
  }
  fakes::FakePlatform fakes;
  ControlServer server{fakes.platform};
  Held<IDispatch> control;
  std::uint32_t wrong = 0;  ///< The last Invoke's answer on its arguments.
};

Variant Double(double value) {
  Variant variant{};
  variant.type = kDouble;
  variant.f64 = value;
  return variant;
}

TEST_F(ControlServerTest, NamesOfMembersAndArguments) {
  const char* names[] = {"CONNECT", "msg", "url", "nothing"};
  std::int32_t ids[4];
  EXPECT_EQ(control->GetIDsOfNames(names, 3, ids), S_OK);
  EXPECT_THAT(ids, ElementsAre(kConnect, 2, 0, testing::_));
  EXPECT_EQ(control->GetIDsOfNames(names, 4, ids), DISP_E_UNKNOWNNAME);
  EXPECT_THAT(ids, ElementsAre(kConnect, 2, 0, kUnknownId));
  EXPECT_EQ(Invoke(0x12345, kMethod), DISP_E_MEMBERNOTFOUND);
}

TEST_F(ControlServerTest, ReferencesAreWrittenBackInTheVariablesOwnType) {
  Variant number = MakeLong(40);
  EXPECT_EQ(Put(kFrameRate, MakeReference(number)), S_OK);
  EXPECT_EQ(number.type, kLong);
  EXPECT_EQ(number.i32, 30);

  Variant text = MakeText("-3");
  EXPECT_EQ(Put(kFrameRate, MakeReference(text)), S_OK);
  ASSERT_EQ(text.type, kText);
  EXPECT_EQ(std::string(text.text, text.size), "1");
  Clear(text);

  Variant empty{};  // an undefined variable gets a value of the member's own type
  EXPECT_EQ(Put(kFrameRate, MakeReference(empty)), S_OK);
  EXPECT_EQ(empty.type, kInteger);
  EXPECT_EQ(empty.i16, 1);

  const char* host_text = "12.0";
  Variant unchanged = MakeText(host_text);
  EXPECT_EQ(Put(kFrameRate, MakeReference(unchanged)), S_OK);
  EXPECT_EQ(unchanged.text, host_text) << "nothing was changed, so nothing is written";
  EXPECT_EQ(Get(kFrameRate), "12");
}

TEST_F(ControlServerTest, ConvertsLikeThePlatform) {
  const auto after = [&](std::int32_t id, Variant value) {
    const Result result = Put(id, value);
    return result == S_OK ? Get(id) : "error " + std::to_string(static_cast<std::uint32_t>(result) & 0xffff);
  };
  EXPECT_EQ(after(kFrameRate, MakeText(" +7 ")), "7");
  for (const int mode : {FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO, FE_TONEAREST}) {
    std::fesetround(mode);  // Whatever the host computes with.
    EXPECT_EQ(after(kFrameRate, Double(2.5)), "2");
    EXPECT_EQ(after(kFrameRate, Double(2.75)), "3");
  }
  EXPECT_EQ(after(kMotionAreaX1, MakeBoolean(true)), "-1");
  EXPECT_EQ(after(kMotionAreaX1, Double(2147483647.4)), "2147483647");
  EXPECT_EQ(after(kShowMotion, MakeText("false")), "0");
  EXPECT_EQ(after(kShowMotion, MakeText("0.5")), "-1");
  EXPECT_EQ(after(kUsername, Double(0.1)), "0.1");
  EXPECT_EQ(after(kUsername, Double(1e20)), "1E+20");
  EXPECT_EQ(after(kUsername, MakeBoolean(true)), "True");
  EXPECT_EQ(after(kMotionAreaX1, Double(-2147483648.5)), "-2147483648");
  EXPECT_EQ(Put(kMotionAreaX1, Double(2147483647.5)), DISP_E_OVERFLOW);
  EXPECT_EQ(Put(kFrameRate, MakeLong(32768)), DISP_E_OVERFLOW);
  EXPECT_EQ(Put(kMotionAreaX1, Double(std::numeric_limits<double>::quiet_NaN())), DISP_E_OVERFLOW);
  for (const char* text : {"", "seven", "7 8", "nan", "0x10", "7e", "+-7"}) {
    EXPECT_EQ(Put(kFrameRate, MakeText(text)), DISP_E_TYPEMISMATCH) << text;
    EXPECT_EQ(wrong, 0u);
  }
  Variant odd{};
  odd.type = kNull;
  EXPECT_EQ(Put(kFrameRate, odd), DISP_E_TYPEMISMATCH);
  odd.type = 4711;
  EXPECT_EQ(Put(kFrameRate, odd), DISP_E_BADVARTYPE);
  Variant variable = MakeReference(odd);
  EXPECT_EQ(Put(kFrameRate, MakeReference(variable)), DISP_E_BADVARTYPE) << "a reference to a reference";
}

TEST_F(ControlServerTest, ArgumentsByPositionByNameAndLeftOut) {
  // Another than an http address is ignored by Connect, so only the way of the arguments is tried.
  const Variant url = MakeText("ftp://x");
  EXPECT_EQ(Invoke(kConnect, kMethod, {url, MakeMissing(), MakeText("wait")}), S_OK);
  Variant missing = MakeMissing();
  EXPECT_EQ(Invoke(kConnect, kMethod, {url, MakeReference(missing)}), S_OK);
  EXPECT_EQ(missing.type, kMissing);
  EXPECT_EQ(Invoke(kConnect, kMethod, {MakeText("wait"), url}, nullptr, {2, 0}), S_OK);
  EXPECT_EQ(Invoke(kConnect, kMethod), DISP_E_PARAMNOTOPTIONAL);
  EXPECT_EQ(Invoke(kConnect, kMethod, {url, MakeText("perhaps")}), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(wrong, 1u);
  EXPECT_EQ(Invoke(kConnect, kMethod, {url, MakeBoolean(true)}, nullptr, {0}), DISP_E_PARAMNOTFOUND) << "given twice";
  EXPECT_EQ(Invoke(kConnect, kMethod, {url, MakeBoolean(true)}, nullptr, {-1}), DISP_E_PARAMNOTFOUND);
  EXPECT_EQ(Invoke(kFrameRate, kPropertyPut, {MakeLong(5)}, nullptr, {kPropertyPutId}), S_OK);
  EXPECT_EQ(Get(kFrameRate), "5");
  EXPECT_EQ(Invoke(kFrameRate, kPropertyGet, {MakeLong(1)}), DISP_E_BADPARAMCOUNT);
  EXPECT_EQ(control->Invoke(kFrameRate, kPropertyGet, nullptr, nullptr, nullptr), S_OK);
  Arguments nonsense{};
  nonsense.named_count = 3;
  EXPECT_EQ(control->Invoke(kFrameRate, kPropertyPut, &nonsense, nullptr, nullptr), E_INVALIDARG);
}

TEST_F(ControlServerTest, ASurfaceLivesAsLongAsItsPictureIsHeld) {
  const auto services = control.As<IHostServices>();
  Held<ISurface> surface;
  EXPECT_EQ(services->CreateSurface(65535, 65535, surface.PutTyped()), E_INVALIDARG);
  ASSERT_EQ(services->CreateSurface(6, 4, surface.PutTyped()), S_OK);
  std::int32_t device_context = 0;
  EXPECT_EQ(surface->GetDeviceContext(&device_context), S_OK);
  auto picture = surface.As<IPicture>();
  surface.Release();
  EXPECT_EQ(Invoke(kRenderPicture, kMethod, {MakeLong(device_context)}), S_OK);
  const std::uint32_t* pixels = nullptr;
  EXPECT_EQ(picture->GetPixels(&pixels), S_OK);
  EXPECT_EQ(pixels[23], 0xff000000u);
  picture.Release();
  EXPECT_EQ(server.GetPlatform().device_contexts.Find(device_context), nullptr);
}

TEST_F(ControlServerTest, EventsCarryReferencesAndValuesAlsoWhereTheControlIsReleasedInOne) {
  VideoServerPush& viewer = HostViewer();
  std::string media_type;
  Sink sink([&](std::int32_t, Arguments& arguments) {
    if (arguments.count == 2) {
      *arguments.values[0].reference = MakeText("changed");
      *arguments.values[1].reference = MakeText("True");
    }
    if (arguments.count == 6) {
      Held<IDataObject> data;
      Variant& variant = *arguments.values[0].reference;
      ASSERT_EQ(variant.object->QueryInterface(&IDataObject::kId, data.Put()), S_OK);
      const char* type = nullptr;
      const char* bytes = nullptr;
      std::uint32_t size = 0;
      ASSERT_EQ(data->GetFormat(0, &type, &bytes, &size), S_OK);
      media_type = std::string(type) + "=" + std::string(bytes, size);
      *arguments.values[1].reference = MakeLong(2);
      control.Release();
    }
  });
  Sink later([&](std::int32_t id, Arguments& arguments) {
    if (id != 6) return;
    EXPECT_EQ(arguments.values[1].reference->i16, -1) << "what the first sink changed the next one finds";
  });
  Advise(sink);
  Advise(later);
  std::string url = "x";
  bool type = false;
  viewer.Events.ConnectionFailedV2(url, type);
  EXPECT_EQ(url, "changed");
  EXPECT_TRUE(type);
  DropData data{{{"text/plain", "dropped"}}};
  std::int32_t effect = 1;
  std::int16_t button = 0;
  float x = 0;
  viewer.Events.OLEDragDrop(data, effect, button, button, x, x);
  EXPECT_EQ(media_type, "text/plain=dropped");
  EXPECT_EQ(effect, 2);
}

TEST_F(ControlServerTest, SinksComeAndGoWhileTheyAreTold) {
  VideoServerPush& viewer = HostViewer();
  std::vector<std::string> told;
  std::uint32_t second_cookie = 0;
  Sink third([&](std::int32_t, Arguments&) { told.emplace_back("third"); });
  Sink second([&](std::int32_t, Arguments&) { told.emplace_back("second"); });
  Sink first([&](std::int32_t, Arguments&) {
    told.emplace_back("first");
    if (told.size() == 1) {
      EXPECT_EQ(Point()->Unadvise(second_cookie), S_OK);
      Advise(third);
    }
    throw std::runtime_error("a sink's own business");
  });
  Advise(first);
  second_cookie = Advise(second);
  viewer.Events.Connected();
  viewer.Events.Connected();
  EXPECT_THAT(told, ElementsAre("first", "first", "third"));
  EXPECT_EQ(second.references, 0u);
  control.Release();
}

}  // namespace
}  // namespace orbelcast::server
