#include "camera_server/commands.h"

#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

#include "camera_server/addresses.h"
#include "camera_server/content.h"
#include "common/http_status.h"
#include "toolkit/ascii.h"

namespace orbelcast::camera_server {

namespace {

/// What follows `word`, or nothing when `text` begins otherwise.
std::optional<std::string_view> After(std::string_view text, std::string_view word) {
  if (!text.starts_with(word)) return std::nullopt;
  return text.substr(word.size());
}

Response AnswerArchive(Services& services, const Actor& actor, std::string_view text) {
  static const std::map<char, const char*> doings{
      {'T', "first picture"}, {'R', "play backwards"}, {'F', "play"}, {'B', "last picture"}, {'P', "search"}};
  const Settings& settings = services.settings;
  const auto query = ParseArchiveQuery(text, settings.form);
  if (!query) return TextResponse(kBadRequest, "One of T=0, R=0, F=0, B=0 and P=0 tells where to go in the archive.");
  const int camera = WholeNumber(query->device).value_or(0);
  if (!settings.HasCamera(camera)) return TextResponse(kVideoNotFound, "There is no such camera.");
  const std::string device = std::to_string(camera);
  const std::string visitor = actor.address + '\n' + actor.user + '\n' + device;
  const WallClock::time_point time = services.archive.Move(visitor, *query, WallClock::now());
  const std::string moment = LocalDate(time) + " " + LocalTime(time);
  const std::string doing = doings.at(query->move) + (query->move == 'P' ? " " + moment : "");
  services.activity.RecordBeginning(actor, "Archive", settings.NameOf(camera), doing);
  const Picture picture = services.pictures->TakeArchived(camera, query->form, time);
  return services.faults.Apply(device, PictureResponse(settings, camera, picture, "archive of " + moment));
}

/// The message is what stands between "msg=" and the last "&Send=": it may hold a "&".
Response AnswerMessage(Services& services, const Actor& actor, std::string_view message) {
  message = message.substr(0, message.rfind("&Send="));
  if (message.empty()) return TextResponse(kBadRequest, "There is no message.");
  services.activity.Record(actor, "Message", message);
  return TextResponse(200, "The message is in the activity log.");
}

/// Switches what `number` names. `event` is what the activity log calls it; ": on", say, follows the name there.
Response AnswerSwitch(Services& services, const Actor& actor, Site::Kind kind, std::string_view number, bool is_on) {
  const bool is_alert = kind == Site::Kind::kAlert;
  const std::string event = is_alert ? "Alert" : "Output";
  const int index = WholeNumber(number).value_or(0);
  if (!services.site.Switch(kind, index, is_on)) {
    services.activity.Record(actor, event, "there is none '" + std::string(number) + "'");
    return TextResponse(kNotFound, "There is no such " + LowerCase(event) + ".");
  }
  const std::string name = services.site.All(kind).at(static_cast<std::size_t>(index - 1)).name;
  services.activity.Record(actor, event, is_alert ? name : name + (is_on ? ": on" : ": off"));
  return TextResponse(200, name + (is_alert ? " is active." : is_on ? " is on." : " is off."));
}

/// `text` is "3+1" or "3+0".
Response AnswerOutput(Services& services, const Actor& actor, std::string_view text) {
  if (!text.ends_with("+1") && !text.ends_with("+0")) {
    return TextResponse(kBadRequest, "An output is switched on by NUMBER+1 and off by NUMBER+0.");
  }
  return AnswerSwitch(services, actor, Site::Kind::kOutput, text.substr(0, text.size() - 2), text.ends_with('1'));
}

Response CarryOut(Services& services, const Actor& actor, std::string_view command) {
  if (command == "activitylogfile") {
    return FreshResponse("text/plain; charset=utf-8", std::make_shared<const std::string>(services.activity.Text()));
  }
  if (const auto message = After(command, "message?msg=")) return AnswerMessage(services, actor, *message);
  if (const auto output = After(command, "output=")) return AnswerOutput(services, actor, *output);
  if (const auto alert = After(command, "activatealert=")) {
    return AnswerSwitch(services, actor, Site::Kind::kAlert, *alert, true);
  }
  return TextResponse(kNotFound, "There is no such command.");
}

/// Whether a Host header is one that the machine itself is reached by. A page that a browser shows can lead a name of
/// its own here, and would read the answer; whoever sends none is no browser.
bool NamesThisMachine(std::string_view host) {
  const std::size_t port = host.ends_with(']') ? std::string_view::npos : host.rfind(':');
  const std::string_view name = host.substr(0, port);
  return host.empty() || name == "[::1]" || EqualIgnoringCase(name, "localhost") ||
         (name.starts_with("127.") && name.find_first_not_of("0123456789.") == std::string_view::npos);
}

Response AnswerFaults(FaultPlan& faults, std::string_view target) {
  const std::string_view place = QueryValue(target, "camera");
  const std::string_view fault = QueryValue(target, "fault");
  try {
    if (!place.empty() || !fault.empty()) faults.Set(place, fault);
  } catch (const std::invalid_argument& error) {
    return TextResponse(kBadRequest, error.what());
  }
  return TextResponse(200, faults.Lines());
}

Response AnswerInputs(Site& site, std::string_view target) {
  const std::string_view input = QueryValue(target, "input");
  const std::string_view state = QueryValue(target, "state");
  const bool is_state = state == "0" || state == "1";
  const bool is_question = input.empty() && state.empty();
  if (!is_question && (!is_state || !site.Switch(Site::Kind::kInput, WholeNumber(input).value_or(0), state == "1"))) {
    return TextResponse(kBadRequest, "Give the number of an input and a state: input=1&state=1");
  }
  std::string lines;
  int number = 0;
  for (const Contact& contact : site.All(Site::Kind::kInput)) {
    lines += (lines.empty() ? "" : "\r\n") + std::to_string(++number) + "=" + (contact.is_on ? "1" : "0");
  }
  return TextResponse(200, lines);
}

}  // namespace

Response AnswerCommand(Services& services, const Actor& actor, std::string_view command) {
  services.activity.RecordBeginning(actor, "Login");
  if (const auto query = After(command, "img?")) return AnswerArchive(services, actor, *query);
  return services.faults.Apply(kCommandPlace, CarryOut(services, actor, command));
}

Response AnswerControl(Services& services, const Request& request, const Client& client) {
  if (!client.is_local || !NamesThisMachine(request.Header("Host"))) {
    return TextResponse(kForbidden, "This is for the server's own machine.");
  }
  const std::string_view path = request.Path();
  if (path == "/control/fault") return AnswerFaults(services.faults, request.target);
  if (path == "/control/input") return AnswerInputs(services.site, request.target);
  if (path == "/control/requests") {
    const bool is_last_time = QueryValue(request.target, "clear") == "yes";
    return FreshResponse("application/x-ndjson",
                         std::make_shared<const std::string>(services.requests.Lines(is_last_time)));
  }
  return TextResponse(kNotFound, "There are /control/fault, /control/input and /control/requests.");
}

}  // namespace orbelcast::camera_server
