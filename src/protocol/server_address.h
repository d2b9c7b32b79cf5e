#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Every address that the camera server is asked by, a builder each, named as the command is.
///
/// Plain concatenations: nothing is escaped, so blanks go out raw and a password that holds "/" or "?" changes what the
/// address says. The request object refuses an address with control characters.
namespace orbelcast {

/// "http://server", with ":port" where the port is not empty.
std::string Authority(std::string_view server, std::string_view port);

/// The beginning of the player's commands: authority and credentials, "http://server:port/$openlogin/user/password".
std::string LoginBase(std::string_view server, std::string_view port, std::string_view user_name,
                      std::string_view password);

/// The request for the server's information: `address` is a host, or host:port; a "/" at its end is not doubled.
std::string ServerInformationAddress(std::string_view address);

// ---- Pictures -----------------------------------------------------------------------------------------------------

/// Size in pixels, at least four digits each, and a quality figure of three digits: "0320x0240080".
std::string PictureCode(int width, int height, std::string_view quality);

/// The suffix of an address that says which picture is wanted: "?live-special" and the picture code.
std::string QualitySuffix(std::string_view picture_code);

/// A camera's live picture, without the suffix. `live_base` is the camera's, as the server's information has it.
std::string LiveAddress(std::string_view live_base, std::string_view user_name, std::string_view password);

/// The stream of a camera's live pictures.
std::string LiveStreamAddress(std::string_view live_address, std::string_view quality_suffix);

/// A mosaic tile's picture of the requested size (pixels), at the quality that suits it: the larger the tile, the
/// lower.
std::string MosaicTileAddress(std::string_view live_address, int width, int height);

// ---- Archive ------------------------------------------------------------------------------------------------------

/// The beginning of archive commands; they add their parameters directly.
std::string ArchiveAddress(std::string_view login_base, std::string_view device);

/// A step from the archive's current position; the value is the command's letter.
enum class ArchiveStep : char { kTop = 'T', kReversePlay = 'R', kPlay = 'F', kEnd = 'B' };
/// The suffix follows "Quality=", so the address holds a second "?".
std::string ArchiveStepAddress(std::string_view archive_address, ArchiveStep step, std::string_view quality_suffix);

/// A date and time as it was typed.
struct ArchiveTime {
  std::string_view day;
  std::string_view month;
  std::string_view year;
  std::string_view hour;
  std::string_view minute;
  std::string_view second;
};
std::string ArchiveSearchAddress(std::string_view archive_address, const ArchiveTime& time,
                                 std::string_view quality_suffix);
/// Whether the address asks for pictures of an archive: of a camera server's, or a step or a search in any.
bool AsksForArchive(std::string_view address);

// ---- Commands -----------------------------------------------------------------------------------------------------

std::string ActivityLogAddress(std::string_view login_base);
/// `text` goes out as it is.
std::string MessageAddress(std::string_view login_base, std::string_view text);
/// The beginning of the command that switches an output.
std::string OutputCommand(std::string_view login_base);
/// `output`: its place in the list of outputs, from 1.
std::string OutputSwitchAddress(std::string_view output_command, int output, bool on);
/// The beginning of the command that activates an alert.
std::string AlertCommand(std::string_view login_base);
/// `alert`: its place in the list of alerts, from 1.
std::string AlertActivationAddress(std::string_view alert_command, int alert);

enum class ServerCommand { kActivityLog, kMessage, kOutput, kAlert };
/// The command that an address of the ones above asks for; nothing where it is none of them.
std::optional<ServerCommand> CommandOf(std::string_view address);

// ---- Relay --------------------------------------------------------------------------------------------------------

/// The page that tells an account's server.
std::string RelayLookupAddress(std::string_view lookup_host, std::string_view account);

}  // namespace orbelcast
