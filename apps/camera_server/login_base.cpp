#include "login_base.h"

namespace orbelcast::camera_server {

std::optional<LoginBaseAddress> ParseLoginBase(std::string_view target) {
  if (!target.starts_with(kLoginBase)) return std::nullopt;
  target.remove_prefix(kLoginBase.size());
  const std::size_t mark = target.find(kCommandMark);
  if (mark == std::string_view::npos) return LoginBaseAddress{.login = target, .command = {}};
  return LoginBaseAddress{.login = target.substr(0, mark), .command = target.substr(mark + kCommandMark.size())};
}

}  // namespace orbelcast::camera_server
