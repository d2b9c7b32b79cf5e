#include "live_address.h"

#include <algorithm>

#include "query.h"

namespace orbelcast::camera_server {

namespace {

void ReadQuery(std::string_view query, PictureForm& form) {
  while (!query.empty()) {
    const std::string_view item = query.substr(0, query.find('&'));
    query.remove_prefix(std::min(query.size(), item.size() + 1));
    const std::size_t equals = item.find('=');
    if (equals == std::string_view::npos) continue;
    const std::optional<int> number = WholeNumber(item.substr(equals + 1));
    if (!number) continue;
    const std::string_view name = item.substr(0, equals);
    if (name == "width") form.width = *number;
    if (name == "height") form.height = *number;
    if (name == "quality") form.quality = *number;
  }
}

}  // namespace

std::optional<PictureForm> ParsePictureCode(std::string_view code) {
  constexpr std::size_t kLength = 12;
  if (code.size() < kLength || code[4] != 'x') return std::nullopt;
  const auto width = WholeNumber(code.substr(0, 4));
  const auto height = WholeNumber(code.substr(5, 4));
  const auto quality = WholeNumber(code.substr(9, 3));
  if (!width || !height || !quality) return std::nullopt;
  return PictureForm{.width = *width, .height = *height, .quality = *quality};
}

std::optional<LiveAddress> ParseLiveAddress(std::string_view target, const PictureForm& form) {
  if (!target.starts_with(kLivePath)) return std::nullopt;
  LiveAddress address{.camera = 0, .login = {}, .form = form};
  std::string_view path = target.substr(kLivePath.size());
  // The last code counts: a password may hold anything.
  if (const std::size_t mark = path.rfind(kPictureCodeMark); mark != std::string_view::npos) {
    address.form = ParsePictureCode(path.substr(mark + kPictureCodeMark.size())).value_or(form);
    path = path.substr(0, mark);
  } else if (const std::size_t query = path.find('?'); query != std::string_view::npos) {
    ReadQuery(path.substr(query + 1), address.form);
    path = path.substr(0, query);
  }
  address.form = address.form.Bounded();
  const std::size_t slash = path.find('/');
  address.camera = WholeNumber(path.substr(0, slash)).value_or(0);
  if (slash != std::string_view::npos) address.login = path.substr(slash + 1);
  return address;
}

}  // namespace orbelcast::camera_server
