#include "protocol/text.h"

#include <algorithm>
#include <charconv>
#include <system_error>

#include "toolkit/ascii.h"

namespace orbelcast {

namespace {

bool BeginsNumber(std::string_view text) {
  if (text.starts_with('-')) text.remove_prefix(1);
  return !text.empty() && ((text.front() >= '0' && text.front() <= '9') || text.front() == '.');
}

}  // namespace

std::string_view WithoutHttp(std::string_view text) {
  constexpr std::string_view kScheme = "http://";
  return StartsWithIgnoringCase(text, kScheme) ? text.substr(kScheme.size()) : text;
}

std::string Replaced(std::string_view text, std::string_view what, std::string_view with) {
  std::string result;
  for (std::size_t at = text.find(what); at != std::string_view::npos; at = text.find(what)) {
    result.append(text.substr(0, at)).append(with);
    text.remove_prefix(at + what.size());
  }
  return result.append(text);
}

std::vector<std::string_view> Split(std::string_view text, std::string_view separator, std::size_t at_most) {
  std::vector<std::string_view> parts;
  Parts rest(text, separator);
  for (std::string_view part; parts.size() < at_most && rest.Next(part);) parts.push_back(part);
  return parts;
}

bool Parts::Next(std::string_view& part) {
  if (at_end_) return false;
  const std::size_t end = rest_.find(separator_);
  part = rest_.substr(0, end);
  at_end_ = end == std::string_view::npos;
  if (!at_end_) rest_.remove_prefix(end + separator_.size());
  return true;
}

std::optional<double> LeadingNumber(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
  if (!BeginsNumber(text)) return 0;  // words such as "inf" are none
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error == std::errc::result_out_of_range) return std::nullopt;
  return number;
}

}  // namespace orbelcast
