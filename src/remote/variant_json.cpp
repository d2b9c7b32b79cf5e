#include "remote/variant_json.h"

#include <openssl/evp.h>

#include <array>
#include <span>

#include "protocol/base64.h"
#include "remote/numbers.h"
#include "toolkit/hexadecimal.h"

namespace orbelcast {

namespace {

using server::Variant;

std::string Sha256(std::span<const std::uint8_t> bytes) {
  std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
  unsigned int size = 0;
  if (EVP_Digest(bytes.data(), bytes.size(), digest.data(), &size, EVP_sha256(), nullptr) != 1) return {};
  return Hexadecimal(std::span(digest).first(size));
}

template <typename Interface>
server::Held<Interface> Ask(server::IUnknown* object) {
  server::Held<Interface> asked;
  if (object != nullptr) object->QueryInterface(&Interface::kId, asked.Put());
  return asked;
}

Json ObjectToJson(server::IUnknown* object) {
  if (const auto picture = Ask<server::IPicture>(object)) {
    std::int32_t width = 0;
    std::int32_t height = 0;
    picture->GetSize(&width, &height);
    return SizeToJson(width, height);
  }
  if (const auto data = Ask<server::IDataObject>(object)) {
    Json forms = Json::Object();
    for (std::uint32_t i = 0; i < data->GetCount(); ++i) {
      const char* media_type = nullptr;
      const char* bytes = nullptr;
      std::uint32_t size = 0;
      if (server::Succeeded(data->GetFormat(i, &media_type, &bytes, &size)))
        forms[media_type] = std::string(bytes, size);
    }
    return forms;
  }
  return nullptr;
}

}  // namespace

Json SizeToJson(int width, int height) {
  return {{"width", width}, {"height", height}};
}

Json ToJson(const Variant& value, BulkForm bulk) {
  switch (value.type) {
    case server::kReference:
      return ToJson(*value.reference, bulk);
    case server::kInteger:
      return value.i16;
    case server::kLong:
      return value.i32;
    case server::kLongLong:
      return value.i64;
    case server::kSingle:
      return NumberToJson(value.f32);
    case server::kDouble:
      return value.f64;
    case server::kBoolean:
      return value.i16 != 0;
    case server::kText:
      return std::string(value.text, value.size);
    case server::kBytes:
      if (bulk == BulkForm::kWhole) {
        return {{"base64", EncodeBase64(std::string_view(reinterpret_cast<const char*>(value.bytes), value.size))}};
      }
      return {{"bytes", value.size}, {"sha256", Sha256({value.bytes, value.size})}};
    case server::kObject:
      return ObjectToJson(value.object);
    default:
      return nullptr;
  }
}

Variant ToVariant(const std::string& word, std::uint16_t type, const std::string& what) {
  switch (type) {
    case server::kBoolean:
      if (word != "true" && word != "false") {
        throw ScriptError(what + " is to be true or false, not '" + word + "'");
      }
      return server::MakeBoolean(word == "true");
    case server::kInteger:
      return server::MakeInteger(ParseWhole<std::int16_t>(word, what));
    case server::kLong:
      return server::MakeLong(ParseWhole<std::int32_t>(word, what));
    case server::kSingle: {
      Variant number{};
      number.type = server::kSingle;
      number.f32 = ParseSingle(word, what);
      return number;
    }
    case server::kText:
      return server::MakeText(word);
    default:
      throw ScriptError(what + " is of a type that a script cannot write");
  }
}

}  // namespace orbelcast
