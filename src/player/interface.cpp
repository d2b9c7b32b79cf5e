#include "player/interface.h"

namespace orbelcast {

namespace {

using enum ValueType;

constexpr ArgumentEntry kRefreshUrls[] = {{"l", kText}, {"i", kText}};
constexpr ArgumentEntry kDoResize[] = {{"X", kBoolean}};
constexpr ArgumentEntry kConnect2Server[] = {{"xServer", kText}, {"xUsername", kText}, {"xPassword", kText}};

constexpr PropertyEntry kProperties[] = {
    {"SystemName", 0x6803002b, kText, false},
    {"ShowExtendedFeatures", 0x6803002c, kBoolean, true},
};

constexpr MethodEntry kMethods[] = {
    {"AviStart", 0x60030008, {}, kNone},
    {"StopAvi", 0x60030011, {}, kNone},
    {"RefreshURLs", 0x60030018, kRefreshUrls, kNone},
    {"DoResize", 0x60030022, kDoResize, kNone},
    {"Connect2Server", 0x6003002a, kConnect2Server, kNone},
    {"SetMultiCams", 0x60030037, {}, kNone},
};

}  // namespace

std::span<const PropertyEntry> user_control1_interface::Properties() {
  return kProperties;
}
std::span<const MethodEntry> user_control1_interface::Methods() {
  return kMethods;
}

}  // namespace orbelcast
