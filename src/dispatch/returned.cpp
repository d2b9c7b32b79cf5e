#include "dispatch/returned.h"

#include <limits>
#include <memory>

namespace orbelcast::server {

namespace {

Variant OwnedBytes(std::vector<std::uint8_t> bytes, ObjectCount& count) {
  auto* const owner = new Owner<std::vector<std::uint8_t>>(count, std::move(bytes));
  Variant variant{};
  variant.type = kBytes;
  variant.size = static_cast<std::uint32_t>(owner->value.size());
  variant.bytes = owner->value.data();
  variant.owner = owner;
  return variant;
}

Variant OwnedPicture(std::optional<Surface> picture, ObjectCount& count) {
  Variant variant{};
  variant.type = kObject;
  variant.object = nullptr;
  if (picture) variant.object = variant.owner = new PictureObject<IPicture>(count, *std::move(picture));
  return variant;
}

}  // namespace

Variant OwnedText(std::string text, ObjectCount& count) {
  auto* const owner = new Owner<std::string>(count, std::move(text));
  Variant variant = MakeText(owner->value);
  variant.owner = owner;
  return variant;
}

Variant OwnedResult(ResultValue value, ValueType type, ObjectCount& count) {
  if (type == ValueType::kPicture) {
    auto* const picture = std::get_if<std::optional<Surface>>(&value);
    return OwnedPicture(picture != nullptr ? std::move(*picture) : std::nullopt, count);
  }
  if (auto* const bytes = std::get_if<std::vector<std::uint8_t>>(&value)) return OwnedBytes(std::move(*bytes), count);
  if (auto* const text = std::get_if<std::string>(&value)) return OwnedText(std::move(*text), count);
  if (const auto* boolean = std::get_if<bool>(&value)) return MakeBoolean(*boolean);
  if (const auto* integer = std::get_if<std::int16_t>(&value)) return MakeInteger(*integer);
  if (const auto* number = std::get_if<std::int32_t>(&value)) return MakeLong(*number);
  if (const auto* single = std::get_if<float>(&value)) return BorrowingVariant(*single);
  return {};
}

}  // namespace orbelcast::server
