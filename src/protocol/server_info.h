#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/configuration.h"
#include "platform/http_request.h"

namespace orbelcast {

/// A camera server's description of itself.
struct ServerInfo {
  /// The cameras' or alerts' values, or every line, by the mode; each followed by CR LF.
  std::string Lines;
  std::string ServerHeader;
  std::int32_t Status = 0;  ///< HTTP status of the answer; 404 where there was none.
  std::string RelayAnswer;  ///< The relay service's own words, where the address named an account.
  bool ViaRelay = false;    ///< The relay service told the address.
  std::string RelayHost;
  std::string RelayPort;
  std::string GpsLat;
  std::string GpsLon;
  std::string GpsAlt;
  std::string AllHeaders;
  std::string Spare;  ///< Always empty.
  bool CstFlag = false;
  std::string ServerVersion;
  std::string SystemName;
  bool ViewerMarker = false;  ///< The answer begins as a camera server's does.
  std::string SynValue;
  std::string DateHeader;
  std::string AmeValue;
  std::string RamValue;
  std::string CpuValue;
  std::string CpnValue;
  std::string CpsValue;
  std::int16_t UpsValue = 0;
  bool AdmFlag = false;
  std::string DirectFileKey;  ///< The key by which the server serves files: "getdirectfile2=" or "getdirectfile=".
  bool AesFlag = false;
  /// Bytes of the answer's text beyond the bounds that are read of it (protocol/limits.h); 0 where all was read.
  std::size_t UnreadBytes = 0;
};

/// The lines that `ServerInfo::Lines` is to hold. With any other value the lines are not looked at.
enum class InfoMode : int { kCameras = 1, kAlerts = 2, kAllLines = 3 };

/// Asks the server at `address` (a host, host:port, either after "http://", or a relay account's address) what it is.
/// Blocks the thread until the answer is there or one of the time-outs has ended it: `time_out` (milliseconds, 0 is
/// none) limits resolving, connecting, sending and the answer, each. Asking the relay service has no limit.
///
/// `user_name` and `password` are sent with the request where either is not empty. Never fails: the record tells what
/// went wrong.
ServerInfo QueryServerInfo(HttpRequestFactory& http, const Configuration& configuration, std::string_view address,
                           std::string_view user_name, std::string_view password, std::int32_t time_out, InfoMode mode);

}  // namespace orbelcast
