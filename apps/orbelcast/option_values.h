#pragma once

#include <CLI/CLI.hpp>
#include <charconv>
#include <cstdint>
#include <filesystem>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

#include "common/access.h"
#include "common/within.h"
#include "orbelcast/picture_file.h"

/// What the commands' options have in common. What is wrong with a value is a CLI::ValidationError that says what is
/// expected.
namespace orbelcast {

/// Declares what a command needs to reach one camera: URL, and who asks.
void AddCameraOptions(CLI::App& command, std::string& url, Access& access);

/// Declares --frame-rate, whose default is what `frame_rate` holds, and --auto-reconnect.
void AddStreamOptions(CLI::App& command, std::int16_t& frame_rate, bool& auto_reconnect);

/// The longest time that an option takes where it is counted in milliseconds of 32 bits: a request's limit, and when
/// the player's window is to end.
inline constexpr double kLongestTimeOut = 1'000'000;
/// The longest other one, some thirty years: in nanoseconds the queue can still count it.
inline constexpr double kLongestTime = 1'000'000'000;
/// Declares an option that is a time in seconds, more than 0, which may have decimals.
template <typename Time>
CLI::Option* AddSecondsOption(CLI::App& command, const std::string& name, Time& seconds, const std::string& description,
                              double longest = kLongestTime) {
  return command.add_option(name, seconds, description)->check(Within(0.001, longest))->type_name("S");
}

/// Seconds that a first picture may take, where not told otherwise: enough for a camera that wakes up.
inline constexpr double kFirstPictureWithin = 10;
/// Declares --timeout, the time that a first picture may take. `of` says where 10 is the default.
void AddTimeOutOption(CLI::App& command, std::optional<double>& seconds, const std::string& of);

/// Declares an option that is a number of something, 1 or more.
template <typename Count>
CLI::Option* AddCountOption(CLI::App& command, const std::string& name, Count& count, const std::string& description) {
  return command.add_option(name, count, description)->check(Within(1, 1'000'000'000))->type_name("N");
}

/// Empty for a camera's address; else what is wrong with it.
std::string CheckAddress(const std::string& url);

/// A whole number and nothing else.
template <typename Number>
bool ParseWhole(std::string_view text, Number& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size();
}

struct PixelSize {
  int width = 0;
  int height = 0;
};
/// The largest side that makes sense to ask for: that of an 8K screen.
inline constexpr int kMaxSide = 8192;
/// WIDTHxHEIGHT, each side 1 to kMaxSide.
PixelSize ParsePixelSize(const std::string& option, const std::string& text);

/// Whether a file of that name can be written.
void CheckWritable(const std::string& option, const std::string& file);
/// The name of a file that can be written, in one of these formats.
std::filesystem::path ParsePictureFile(const std::string& option, const std::string& text,
                                       std::initializer_list<PictureFormat> formats);

}  // namespace orbelcast
