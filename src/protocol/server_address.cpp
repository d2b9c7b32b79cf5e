#include "protocol/server_address.h"

#include <array>
#include <cstdint>
#include <initializer_list>
#include <utility>

namespace orbelcast {

namespace {

std::string Join(std::initializer_list<std::string_view> pieces) {
  std::string joined;
  for (const std::string_view piece : pieces) joined += piece;
  return joined;
}

std::string AtLeastFourDigits(int number) {
  const std::string digits = std::to_string(number);
  return digits.size() < 4 ? std::string(4 - digits.size(), '0') + digits : digits;
}

}  // namespace

std::string Authority(std::string_view server, std::string_view port) {
  return port.empty() ? Join({"http://", server}) : Join({"http://", server, ":", port});
}

std::string LoginBase(std::string_view server, std::string_view port, std::string_view user_name,
                      std::string_view password) {
  return Join({Authority(server, port), "/$openlogin/", user_name, "/", password});
}

std::string ServerInformationAddress(std::string_view address) {
  return Join({"http://", address, address.ends_with('/') ? "" : "/", "secure/srv_vigilbox$rdxviewer"});
}

std::string PictureCode(int width, int height, std::string_view quality) {
  return Join({AtLeastFourDigits(width), "x", AtLeastFourDigits(height), quality});
}

std::string QualitySuffix(std::string_view picture_code) {
  return Join({"?live-special", picture_code});
}

std::string LiveAddress(std::string_view live_base, std::string_view user_name, std::string_view password) {
  return Join({live_base, "/", user_name, ":", password});
}

std::string LiveStreamAddress(std::string_view live_address, std::string_view quality_suffix) {
  return Join({live_address, quality_suffix});
}

std::string MosaicTileAddress(std::string_view live_address, int width, int height) {
  const std::int64_t area = std::int64_t{width} * height;
  // Above a mosaic's largest tile: a fixed code, as the server's own viewers send it.
  if (area > 64000) return "0320x0200055";
  std::string_view quality = "050";
  if (area <= 20000) quality = "070";
  if (area < 10000) quality = "080";
  return Join({live_address, QualitySuffix(PictureCode(width, height, quality))});
}

std::string ArchiveAddress(std::string_view login_base, std::string_view device) {
  return Join({login_base, "/srv_vigilbox$img?Device=", device});
}

std::string ArchiveStepAddress(std::string_view archive_address, ArchiveStep step, std::string_view quality_suffix) {
  const char letter = static_cast<char>(step);
  return Join({archive_address, "&Day=0&Month=0&Year=0&Hour=0&Minute=0&Second=0&", std::string_view(&letter, 1),
               "=0&Quality=", quality_suffix});
}

std::string ArchiveSearchAddress(std::string_view archive_address, const ArchiveTime& time,
                                 std::string_view quality_suffix) {
  return Join({archive_address, "&Day=", time.day, "&Month=", time.month, "&Year=", time.year, "&Hour=", time.hour,
               "&Minute=", time.minute, "&Second=", time.second, "&P=0&Quality=", quality_suffix});
}

bool AsksForArchive(std::string_view address) {
  const auto has = [address](std::string_view part) { return address.find(part) != std::string_view::npos; };
  return has("$img?Device=") || (has("&Day=") && has("&Quality="));
}

std::string ActivityLogAddress(std::string_view login_base) {
  return Join({login_base, "/srv_vigilbox$activitylogfile"});
}

std::string MessageAddress(std::string_view login_base, std::string_view text) {
  return Join({login_base, "/srv_vigilbox$message?msg=", text, "&Send=Send+Message"});
}

std::string OutputCommand(std::string_view login_base) {
  return Join({login_base, "/srv_vigilbox$output="});
}

std::string OutputSwitchAddress(std::string_view output_command, int output, bool on) {
  return Join({output_command, std::to_string(output), on ? "+1" : "+0"});
}

std::string AlertCommand(std::string_view login_base) {
  return Join({login_base, "/srv_vigilbox$activatealert="});
}

std::string AlertActivationAddress(std::string_view alert_command, int alert) {
  return Join({alert_command, std::to_string(alert)});
}

// By what stands behind the login, where a user's name or a message cannot stand.
std::optional<ServerCommand> CommandOf(std::string_view address) {
  constexpr std::array<std::pair<std::string_view, ServerCommand>, 4> kCommands{
      {{"activitylogfile", ServerCommand::kActivityLog},
       {"message?", ServerCommand::kMessage},
       {"output=", ServerCommand::kOutput},
       {"activatealert=", ServerCommand::kAlert}}};
  constexpr std::string_view kBefore = "/srv_vigilbox$";
  const std::size_t at = address.find(kBefore);
  if (at == std::string_view::npos) return std::nullopt;
  const std::string_view command = address.substr(at + kBefore.size());
  for (const auto& [name, value] : kCommands) {
    if (command.starts_with(name)) return value;
  }
  return std::nullopt;
}

std::string RelayLookupAddress(std::string_view lookup_host, std::string_view account) {
  return Join({"http://", lookup_host, "/cgi-bin/relaypost.exe?op=rdxviewer&account=", account});
}

}  // namespace orbelcast
