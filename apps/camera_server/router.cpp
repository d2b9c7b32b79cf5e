#include "camera_server/router.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>
#include <span>
#include <sstream>
#include <stdexcept>
#include <thread>
#include <tuple>
#include <vector>

#include "camera_server/addresses.h"
#include "camera_server/home_page.h"
#include "common/http_status.h"
#include "toolkit/ascii.h"

namespace orbelcast::camera_server {

namespace {

constexpr std::string_view kInfoPath = "/secure/srv_vigilbox$rdxviewer";
constexpr std::string_view kLookupPath = "/cgi-bin/relaypost.exe";

/// Host and port under which the client reached this server: as it says itself, since it may have come through a
/// forwarded port, unless that is nothing that an address could hold.
std::string AuthorityOf(const Request& request, const Client& client) {
  constexpr std::string_view kFit = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-._:[]";
  const std::string_view host = request.Header("Host");
  const bool is_good =
      !host.empty() && host.size() <= kMaxHostBytes && host.find_first_not_of(kFit) == std::string_view::npos;
  return is_good ? std::string(host) : client.reached;
}

/// The answer that carries a picture: its time code, whether the camera records now, and `status` for people.
Response PictureResponse(const Settings& settings, int camera, const Picture& picture, const std::string& status) {
  Response response = FreshResponse("image/jpeg", picture.jpeg);
  response.headers.emplace_back("RC_TCR", TimeCode(picture.time));
  response.headers.emplace_back("Recording", settings.IsRecording(camera, WallClock::now()) ? "Yes" : "No");
  response.headers.emplace_back("HolmvaneStatus", settings.NameOf(camera) + ": " + status);
  if (!settings.vigilbox_info.empty()) response.headers.emplace_back("VigilboxInfo", settings.vigilbox_info);
  if (!settings.plug_ins.empty()) response.headers.emplace_back("PlugIns", settings.plug_ins);
  return response;
}

/// Sends one picture after the other as the parts of one answer, until the client goes. One that takes them slowly gets
/// fewer. A part has the headers that a single picture has.
bool SendStream(Connection& connection, const std::function<Response()>& take, std::chrono::milliseconds interval) {
  const Response head = FreshResponse("multipart/x-mixed-replace; boundary=picture", MakeBody({}));
  bool is_open = connection.Send(HeadLines(head) + "Connection: close\r\n\r\n--picture\r\n");
  while (is_open) {
    const auto next = std::chrono::steady_clock::now() + interval;
    const Response part = take();
    const std::string lines = HeadBytes(part, true);
    is_open = connection.Send(lines.substr(lines.find('\n') + 1) + *part.body + "\r\n--picture\r\n") &&
              connection.Pause(std::chrono::ceil<std::chrono::milliseconds>(next - std::chrono::steady_clock::now()));
  }
  return false;
}

/// A number, a name and a state, as alerts, inputs and outputs have them.
void WriteContacts(std::ostream& text, const char* key, const std::vector<Contact>& contacts) {
  int number = 0;
  for (const Contact& contact : contacts) {
    text << key << ++number << '\t' << contact.name << '\t' << (contact.is_on ? 1 : 0) << "\r\n";
  }
}

/// The number behind the first line of `file` that begins with `name`, such as "MemTotal:  8000000 kB"; 0 without one.
double NumberAt(const char* file, const std::string& name) {
  std::ifstream lines(file);
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with(name)) return std::strtod(line.c_str() + std::min(line.size(), line.find(':') + 1), nullptr);
  }
  return 0;
}

/// The state of the machine: its load of the last minute and its memory in use in per cent, its free memory in
/// megabytes, its processors and their megahertz. A figure that cannot be read is 0.
std::vector<std::pair<std::string, double>> MachineFigures() {
  const int processors = std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
  double load = 0;
  getloadavg(&load, 1);
  const double total = NumberAt("/proc/meminfo", "MemTotal");
  const double available = NumberAt("/proc/meminfo", "MemAvailable");
  return {{"CPU", std::min(100.0, 100 * load / processors)},
          {"RAM", total > 0 ? 100 * (total - available) / total : 0},
          {"AME", available / 1024},
          {"CPN", processors},
          {"CPS", NumberAt("/proc/cpuinfo", "cpu MHz")}};
}

/// The server's description of itself: lines of a key and a value, each with CR LF. `authority` is the host and port
/// under which the client reached the server; `running` is for how long it has run.
std::string InfoText(const Services& services, const std::string& authority, std::chrono::seconds running) {
  const Settings& settings = services.settings;
  std::ostringstream text;
  text << "RDXVIEWER\r\n";
  for (int camera = 1; settings.HasCamera(camera); ++camera) {
    text << "CAM:" << camera << '\t' << settings.NameOf(camera) << "\thttp://" << authority << kLivePath << camera
         << "\r\n";
  }
  WriteContacts(text, "ALT:", services.site.All(Site::Kind::kAlert));
  WriteContacts(text, "HWO:", services.site.All(Site::Kind::kOutput));
  WriteContacts(text, "HWI:", services.site.All(Site::Kind::kInput));

  const auto write = [&](const std::string& key, const std::string& value) {
    const auto given = settings.info_values.find(key);
    text << key << ':' << (given == settings.info_values.end() ? value : given->second) << "\r\n";
  };
  write("SNM", settings.system_name);
  write("SVR", kServerName);
  write("SYN", TimeCode(WallClock::now()));
  for (const auto& [key, figure] : MachineFigures()) write(key, std::to_string(static_cast<long>(figure)));
  const auto tenths_of_hours = running.count() / 360;
  write("UPS", std::to_string(tenths_of_hours / 10) + "." + std::to_string(tenths_of_hours % 10));
  for (const std::string& flag : settings.info_flags) text << flag << ":1\r\n";
  return text.str();
}

/// The text behind `word`; nothing when it begins otherwise.
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
  const std::string moment = LocalText(time, "%F %T");
  const std::string doing = doings.at(query->move) + (query->move == 'P' ? " " + moment : "");
  services.activity.RecordBeginning(actor, "Archive", settings.NameOf(camera), doing);
  const Picture picture = services.pictures->Take(camera, query->form, time);
  return services.faults.Apply(device, PictureResponse(settings, camera, picture, "archive of " + moment));
}

/// The message stands between "msg=" and the last "&Send=": it may hold a "&".
Response AnswerMessage(Services& services, const Actor& actor, std::string_view message) {
  message = message.substr(0, message.rfind("&Send="));
  if (message.empty()) return TextResponse(kBadRequest, "There is no message.");
  services.activity.Record(actor, "Message", message);
  return TextResponse(200, "The message is in the activity log.");
}

/// Switches the output or alert that `number` names.
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
  if (command == "activitylogfile") return FreshResponse(kPlainText, MakeBody(services.activity.Text()));
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

/// Carries out the command behind a login base, such as "output=3+1", for somebody who was let in.
///
///   img?Device=…                      a picture of the archive
///   activitylogfile                   the activity log
///   message?msg=TEXT&Send=Send+Message
///   output=N+1, output=N+0            switches an output
///   activatealert=N
Response AnswerCommand(Services& services, const Actor& actor, std::string_view command) {
  services.activity.RecordBeginning(actor, "Login");
  if (const auto query = After(command, "img?")) return AnswerArchive(services, actor, *query);
  return services.faults.Apply(kCommandPlace, CarryOut(services, actor, command));
}

/// The means by which a test steers and watches the server, for clients on this machine alone:
///   /control/fault     how all places stand; ?camera=PLACE&fault=FAULT plans one
///   /control/input     how the inputs stand; ?input=N&state=1 or 0 switches one
///   /control/requests  what was asked; ?clear=yes forgets what it shows
Response AnswerControl(Services& services, const Request& request, const Client& client) {
  if (!client.is_local || !NamesThisMachine(request.Header("Host"))) {
    return TextResponse(kForbidden, "This is for the server's own machine.");
  }
  const std::string_view path = request.Path();
  if (path == "/control/fault") return AnswerFaults(services.faults, request.target);
  if (path == "/control/input") return AnswerInputs(services.site, request.target);
  if (path == "/control/requests") {
    const bool is_last_time = QueryValue(request.target, "clear") == "yes";
    return FreshResponse("application/x-ndjson", MakeBody(services.requests.Lines(is_last_time)));
  }
  return TextResponse(kNotFound, "There are /control/fault, /control/input and /control/requests.");
}

}  // namespace

Response Router::Answer(const Request& request, const Client& client) {
  const std::string_view path = request.Path();
  if (path.starts_with("/control/")) return AnswerControl(services_, request, client);
  if (path.starts_with(kLivePath) || path.starts_with(kStreamPath)) return AnswerLive(request, client);
  if (request.target.starts_with(kLoginBase)) return AnswerLoginBase(request, client);
  if (path == kInfoPath) return AnswerInfo(request, client);
  if (path == kLookupPath) return services_.faults.Apply(kRelayPlace, AnswerRelayLookup(request, client));
  return AnswerPage(request, client);
}

void Router::Gone(const Client& client) {
  const std::lock_guard lock(watches_mutex_);
  watches_.erase(client.id);
}

int Router::CountViewers(std::uint64_t client, int camera) {
  // A stream slower than this is somebody looking now and then.
  constexpr std::chrono::seconds kForgottenAfter{10};
  const std::lock_guard lock(watches_mutex_);
  const Clock::time_point now = Clock::now();
  watches_[client] = {.camera = camera, .last = now};
  return static_cast<int>(std::ranges::count_if(watches_, [&](const auto& entry) {
    return entry.second.camera == camera && now - entry.second.last < kForgottenAfter;
  }));
}

Response Router::Refuse(Refusal refusal, const Actor& actor, std::string_view what) {
  if (refusal.was_wrong) services_.activity.Record(actor, "Refused", what);
  return std::move(refusal.response);
}

Response Router::AnswerPage(const Request& request, const Client& client) {
  if (auto refusal = authenticator_.Refuse(request)) {
    return Refuse(std::move(*refusal), {client.address, Authenticator::UserOf(request)}, "page");
  }
  if (request.Path() == "/")
    return FreshResponse("text/html; charset=utf-8", MakeBody(HomePage(services_, AuthorityOf(request, client))));
  return TextResponse(
      kNotFound, "There is nothing here. The cameras are at /live/1 and /stream/1, /live/2, and so on; / lists them.");
}

Response Router::AnswerLive(const Request& request, const Client& client) {
  const Settings& settings = services_.settings;
  const LiveAddress address = ParseLiveAddress(request.target, settings.form).value_or(LiveAddress{});
  Actor actor{client.address, authenticator_.NameIn(address.login, ':')};
  if (actor.user.empty()) actor.user = Authenticator::UserOf(request);
  if (authenticator_.FindUser(address.login, ':') == nullptr) {
    if (auto refusal = authenticator_.Refuse(request)) {
      refusal->was_wrong |= !address.login.empty();
      return Refuse(std::move(*refusal), actor, "live picture");
    }
  }
  if (!settings.HasCamera(address.camera)) return TextResponse(kVideoNotFound, "There is no such camera.");
  services_.activity.RecordBeginning(actor, "Live", settings.NameOf(address.camera));
  const auto take = [this, address, id = client.id] {
    const int viewers = CountViewers(id, address.camera);
    const Picture picture = services_.pictures->Take(address.camera, address.form);
    const char* const word = viewers == 1 ? " viewer" : " viewers";
    return PictureResponse(services_.settings, address.camera, picture, std::to_string(viewers) + word);
  };
  Response response = take();
  if (address.rate && request.method == "GET") {
    response.delivery = [take, interval = std::chrono::milliseconds(1000 / *address.rate)](
                            Connection& to, const Request&, const Response&) { return SendStream(to, take, interval); };
  }
  return services_.faults.Apply(std::to_string(address.camera), std::move(response));
}

Response Router::AnswerLoginBase(const Request& request, const Client& client) {
  const LoginBaseAddress address = ParseLoginBase(request.target).value_or(LoginBaseAddress{});
  const Actor actor{client.address, authenticator_.NameIn(address.login, '/')};
  auto refusal = authenticator_.RefuseLoginBase(address.login);
  if (refusal) return Refuse(std::move(*refusal), actor, "command");
  return AnswerCommand(services_, actor, address.command);
}

Response Router::AnswerInfo(const Request& request, const Client& client) {
  const Actor actor{client.address, Authenticator::UserOf(request)};
  auto refusal = authenticator_.RefuseUnlessBasic(request);
  if (refusal) return Refuse(std::move(*refusal), actor, "information");
  services_.activity.RecordBeginning(actor, "Login");
  const Settings& settings = services_.settings;
  const auto running = std::chrono::duration_cast<std::chrono::seconds>(Clock::now() - start_);
  Response response = FreshResponse(kPlainText, settings.info_text);
  if (!response.body) response.body = MakeBody(InfoText(services_, AuthorityOf(request, client), running));
  for (std::size_t i = 0; i < settings.gps.size(); ++i) {
    static constexpr std::array kNames{"GPS-Lat", "GPS-Lon", "GPS-Alt"};
    if (!settings.gps.at(i).empty()) response.headers.emplace_back(kNames.at(i), settings.gps.at(i));
  }
  if (!settings.rc_query.empty()) response.headers.emplace_back("RC_QUERY", settings.rc_query);
  return services_.faults.Apply(kInfoPlace, std::move(response));
}

Response Router::AnswerRelayLookup(const Request& request, const Client& client) {
  if (QueryValue(request.target, "op") != "rdxviewer") return TextResponse(kBadRequest, "The lookup is op=rdxviewer.");
  const auto& accounts = services_.settings.accounts;
  const auto account = std::ranges::find(accounts, QueryValue(request.target, "account"), &Account::name);
  if (account == accounts.end()) return TextResponse(kNotFound, "There is no such account.");
  services_.activity.RecordBeginning({client.address, ""}, "Relay lookup", account->name);
  const std::string authority = account->address.empty() ? AuthorityOf(request, client) : account->address;
  return TextResponse(200, "http://" + authority + "/");
}

}  // namespace orbelcast::camera_server
