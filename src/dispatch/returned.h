#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "dispatch/object.h"
#include "dispatch/value.h"
#include "orbelcast/orbelcast.h"
#include "toolkit/controls.h"
#include "toolkit/surface.h"

/// Results of members, as objects that the host releases.
namespace orbelcast::server {

/// A text in memory of its own.
Variant OwnedText(std::string text, ObjectCount& count);
/// A member's result in memory of its own.
Variant OwnedResult(ResultValue value, ValueType type, ObjectCount& count);

/// A picture as members return it; `Interface` is IPicture or an interface built on it.
template <typename Interface>
class PictureObject : public Object<Interface> {
 public:
  PictureObject(ObjectCount& count, Surface surface) : Object<Interface>(count), surface_(std::move(surface)) {}

  Result GetSize(std::int32_t* width, std::int32_t* height) override {
    if (width == nullptr || height == nullptr) return E_POINTER;
    *width = surface_.Width();
    *height = surface_.Height();
    return S_OK;
  }
  Result GetPixels(const std::uint32_t** pixels) override {
    if (pixels == nullptr) return E_POINTER;
    *pixels = std::as_const(surface_).Pixels().data();
    return S_OK;
  }

 protected:
  void* Find(const Guid& id) override {
    if (id == IPicture::kId) return static_cast<IPicture*>(this);
    return Object<Interface>::Find(id);
  }
  Surface& Drawn() { return surface_; }

 private:
  Surface surface_;
};

/// Dropped data: a copy, which the host may keep.
class DataObject final : public Object<IDataObject> {
 public:
  DataObject(ObjectCount& count, DropData data) : Object(count), data_(std::move(data)) {}

  std::uint32_t GetCount() override { return static_cast<std::uint32_t>(data_.formats.size()); }
  Result GetFormat(std::uint32_t index, const char** media_type, const char** data, std::uint32_t* size) override {
    if (media_type == nullptr || data == nullptr || size == nullptr) return E_POINTER;
    if (index >= data_.formats.size()) return E_INVALIDARG;
    const auto& [type, bytes] = data_.formats[index];
    *media_type = type.c_str();
    *data = bytes.data();
    *size = static_cast<std::uint32_t>(bytes.size());
    return S_OK;
  }

 private:
  const DropData data_;
};

}  // namespace orbelcast::server
