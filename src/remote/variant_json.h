#pragma once

#include <string>

#include "json/json.h"
#include "orbelcast/orbelcast.h"

namespace orbelcast {

/// How an array of bytes is printed: as {"bytes":N,"sha256":HEX}, or as {"base64":TEXT}.
enum class BulkForm { kDigest, kWhole };

/// A value as it is printed: texts, numbers and Booleans as themselves, bytes in the form that is asked for, a picture
/// as {"width":W,"height":H} in pixels, dropped data as its forms by media type, nothing as null.
Json ToJson(const server::Variant& value, BulkForm bulk = BulkForm::kDigest);

/// The size in pixels as scripts print it.
Json SizeToJson(int width, int height);

/// The word as a value of `type`, a server::VariantType. A text's characters stay the word's. Throws ScriptError where
/// the word is none; `what` tells the person what it was to be.
server::Variant ToVariant(const std::string& word, std::uint16_t type, const std::string& what);

}  // namespace orbelcast
