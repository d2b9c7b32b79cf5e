#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "server/control_access.h"
#include "server/control_server.h"
#include "viewer/video_server_push.h"

namespace orbelcast::server {

/// A registry file of the test's own, for as long as it lives.
class OwnRegistry {
 public:
  OwnRegistry() { ::setenv("ORBELCAST_REGISTRY", (folder_ + "/registry.json").c_str(), 1); }
  ~OwnRegistry() {
    ::unsetenv("ORBELCAST_REGISTRY");
    std::filesystem::remove_all(folder_);
  }
  OwnRegistry(const OwnRegistry&) = delete;
  OwnRegistry& operator=(const OwnRegistry&) = delete;

 private:
  const std::string folder_ = testing::TempDir() + "control_server_" + std::to_string(::getpid());
};

/// A host with one control, the class's name being the fixture's.
class HostTest : public testing::Test {
 protected:
  explicit HostTest(std::string_view name) : control(Create(name)) {}
  ~HostTest() override {
    control.Release();
    EXPECT_TRUE(server.Idle()) << "an object was not released";
  }

  Held<IDispatch> Create(std::string_view name) {
    Held<IClassFactory> factory;
    EXPECT_EQ(server.GetClassObject(FindClass(name), &IClassFactory::kId, factory.Put()), S_OK);
    Held<IDispatch> created;
    EXPECT_EQ(factory->CreateInstance(nullptr, &IDispatch::kId, created.Put()), S_OK);
    return created;
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
  const OwnRegistry registry;
  ControlServer server;
  Held<IDispatch> control;
  std::uint32_t wrong = 0;  ///< What the last Invoke said of its arguments.
};

}  // namespace orbelcast::server
