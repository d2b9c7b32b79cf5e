#include "control.h"

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "query.h"
#include "toolkit/ascii.h"

namespace orbelcast::camera_server {

namespace {

/// Whether a Host header is one that the machine itself is reached by. A page that a browser shows can lead a name of
/// its own here, and would read the answer; whoever sends none is no browser.
bool NamesThisMachine(std::string_view host) {
  const std::size_t port = host.ends_with(']') ? std::string_view::npos : host.rfind(':');
  const std::string_view name = host.substr(0, port);
  return host.empty() || name == "[::1]" || EqualIgnoringCase(name, "localhost") ||
         (name.starts_with("127.") && name.find_first_not_of("0123456789.") == std::string_view::npos);
}

Reply AnswerFaults(Rooms& rooms, std::string_view target) {
  const std::string_view place = QueryValue(target, "camera");
  const std::string_view fault = QueryValue(target, "fault");
  try {
    if (!place.empty() || !fault.empty()) PlanFault(rooms.settings, place, fault, rooms.faults);
  } catch (const std::invalid_argument& error) {
    return TextReply(400, error.what());
  }
  return TextReply(200, FaultLines(rooms.settings, rooms.faults));
}

Reply AnswerInputs(Rooms& rooms, std::string_view target) {
  const std::string_view input = QueryValue(target, "input");
  const std::string_view state = QueryValue(target, "state");
  if (!input.empty() || !state.empty()) {
    const bool is_state = state == "0" || state == "1";
    if (!is_state || !rooms.site.SwitchInput(WholeNumber(input).value_or(0), state == "1")) {
      return TextReply(400, "Give the number of an input and a state: input=1&state=1");
    }
  }
  std::string lines;
  int number = 0;
  for (const Site::Item& item : rooms.site.Inputs()) {
    lines += (lines.empty() ? "" : "\r\n") + std::to_string(++number) + "=" + (item.is_on ? "1" : "0");
  }
  return TextReply(200, lines);
}

Reply AnswerRequests(RequestLog& requests, std::string_view target) {
  Response response;
  response.headers = {{"Content-Type", "application/x-ndjson"}, {"Cache-Control", "no-store"}};
  const bool is_last_time = QueryValue(target, "clear") == "yes";
  response.body = std::make_shared<const std::string>(is_last_time ? requests.TakeLines() : requests.Lines());
  return {std::move(response), {}};
}

}  // namespace

Reply AnswerControl(Rooms& rooms, RequestLog& requests, const Request& request, const Client& client) {
  if (!client.is_local || !NamesThisMachine(request.Header("Host"))) {
    return TextReply(403, "This is for the server's own machine.");
  }
  const std::string_view path = request.Path();
  if (path == "/control/fault") return AnswerFaults(rooms, request.target);
  if (path == "/control/input") return AnswerInputs(rooms, request.target);
  if (path == "/control/requests") return AnswerRequests(requests, request.target);
  return TextReply(404, "There are /control/fault, /control/input and /control/requests.");
}

}  // namespace orbelcast::camera_server
