#include "protocol/server_info.h"

#include "protocol/base64.h"
#include "protocol/info_text.h"
#include "protocol/relay.h"
#include "protocol/server_address.h"
#include "protocol/text.h"

namespace orbelcast {

namespace {

constexpr int kNoAnswer = 404;
constexpr std::string_view kUserAgent = "HOLMVANE SOFTWARE";
constexpr std::string_view kMarker = "RDXVIEWER";
/// The port of a camera server reached by the relay, unless the relay names one.
constexpr std::string_view kRelayPort = "1001";

/// The server's address in place of the account's; empty where the relay service does not tell it.
std::string AskRelay(HttpRequestFactory& http, const Configuration& configuration, const std::string& account_address,
                     ServerInfo& info) {
  const std::string answer = LookupRelayAddress(http, configuration, account_address, 0);
  info.ViaRelay = !answer.empty();
  if (!info.ViaRelay) return {};
  info.RelayAnswer = answer;
  std::string address = ServerOfRelayAnswer(answer);
  const std::size_t colon = address.find(':');
  info.RelayPort = colon == std::string::npos ? kRelayPort : address.substr(colon + 1);
  info.RelayHost = address.substr(0, colon);
  return address;
}

void ReadHeaders(HttpRequest& request, ServerInfo& info) {
  info.GpsLat = request.GetResponseHeader("GPS-Lat");
  info.GpsLon = request.GetResponseHeader("GPS-Lon");
  info.GpsAlt = request.GetResponseHeader("GPS-Alt");
  info.ServerHeader = request.GetResponseHeader("Server");
  info.DateHeader = request.GetResponseHeader("Date");
  info.DirectFileKey = request.GetResponseHeader("RC_QUERY") == "2" ? "getdirectfile2=" : "getdirectfile=";
}

}  // namespace

ServerInfo QueryServerInfo(HttpRequestFactory& http, const Configuration& configuration, std::string_view address,
                           std::string_view user_name, std::string_view password, std::int32_t time_out,
                           InfoMode mode) {
  ServerInfo info;
  info.Status = kNoAnswer;
  info.AesFlag = false;
  std::string server(WithoutHttp(address));
  if (IsRelayAddress(configuration, server)) server = AskRelay(http, configuration, server, info);

  const auto request = http.Create();
  bool worked = request->Open("GET", ServerInformationAddress(server), false);
  if (!user_name.empty() || !password.empty()) {
    // The blank before "Basic" is the servers' habit, over and above the header's own.
    worked &= request->SetRequestHeader("Authorization",
                                        " Basic " + EncodeBase64(std::string(user_name) + ":" + std::string(password)));
  }
  worked &= request->SetRequestHeader("User-Agent", kUserAgent);
  worked &= request->SetTimeouts(time_out, time_out, time_out, time_out);
  worked &= request->Send();
  worked &= request->WaitForResponse();
  info.AllHeaders = request->GetAllResponseHeaders();
  if (const int status = request->Status(); status != 0) info.Status = status;
  if (!worked) return info;

  if (request->Status() != kHttpOk) {
    info.ViewerMarker = false;
    return info;
  }
  ReadHeaders(*request, info);
  const FrameBytes body = request->ResponseBody();
  const std::string_view text(reinterpret_cast<const char*>(body.Bytes().data()), body.Size());
  info.ViewerMarker = text.starts_with(kMarker);
  ParseInfoText(text, mode, info);
  return info;
}

}  // namespace orbelcast
