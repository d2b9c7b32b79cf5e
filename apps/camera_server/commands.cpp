#include "commands.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "archive_query.h"
#include "http_status.h"
#include "picture_answer.h"
#include "query.h"

namespace orbelcast::camera_server {

namespace {

/// What follows `word`, or nothing when `text` begins otherwise.
std::optional<std::string_view> After(std::string_view text, std::string_view word) {
  if (!text.starts_with(word)) return std::nullopt;
  return text.substr(word.size());
}

std::string Quoted(std::string_view text) {
  return "'" + std::string(text) + "'";
}

Reply AnswerArchive(Rooms& rooms, const Actor& actor, std::string_view text) {
  const auto query = ParseArchiveQuery(text, rooms.settings.form);
  if (!query) return TextReply(kBadRequest, "One of T=0, R=0, F=0, B=0 and P=0 tells where to go in the archive.");
  const int camera = WholeNumber(query->device).value_or(0);
  if (!rooms.settings.HasCamera(camera)) return TextReply(kVideoNotFound, "There is no such camera.");
  const std::string visitor = actor.address + '\n' + actor.user + '\n' + std::to_string(camera);
  const WallClock::time_point time = rooms.archive.Move(visitor, *query, WallClock::now());
  std::string doing(MoveName(query->move));
  if (query->move == ArchiveMove::kPosition) doing += " " + LocalDate(time) + " " + LocalTime(time);
  rooms.activity.RecordBeginning(actor, "Archive", rooms.settings.NameOf(camera), doing);
  return Misbehave(rooms.faults.Next(camera),
                   {PictureAnswer(rooms.settings, camera, rooms.pictures.TakeArchived(camera, query->form, time),
                                  "archive of " + LocalDate(time) + " " + LocalTime(time)),
                    {}});
}

Reply AnswerActivityLog(Rooms& rooms) {
  Response response;
  response.headers = {{"Content-Type", "text/plain; charset=utf-8"}, {"Cache-Control", "no-store"}};
  response.body = std::make_shared<const std::string>(rooms.activity.Text());
  return {std::move(response), {}};
}

/// The message is what stands between "msg=" and the last "&Send=": it may hold a "&".
Reply AnswerMessage(Rooms& rooms, const Actor& actor, std::string_view message) {
  message = message.substr(0, message.rfind("&Send="));
  if (message.empty()) return TextReply(kBadRequest, "There is no message.");
  rooms.activity.Record(actor, "Message", message);
  return TextReply(200, "The message is in the activity log.");
}

/// `text` is "3+1" or "3+0".
Reply AnswerOutput(Rooms& rooms, const Actor& actor, std::string_view text) {
  const bool is_on = text.ends_with("+1");
  if (!is_on && !text.ends_with("+0")) {
    return TextReply(kBadRequest, "An output is switched on by NUMBER+1 and off by NUMBER+0.");
  }
  text.remove_suffix(2);
  const auto number = WholeNumber(text);
  if (!number || !rooms.site.SwitchOutput(*number, is_on)) {
    rooms.activity.Record(actor, "Output", "there is none " + Quoted(text));
    return TextReply(kNotFound, "There is no such output.");
  }
  const std::string& name = rooms.settings.outputs.at(static_cast<std::size_t>(*number - 1)).name;
  rooms.activity.Record(actor, "Output", name + (is_on ? ": on" : ": off"));
  return TextReply(200, name + (is_on ? " is on." : " is off."));
}

Reply AnswerAlert(Rooms& rooms, const Actor& actor, std::string_view text) {
  const auto number = WholeNumber(text);
  if (!number || !rooms.site.ActivateAlert(*number)) {
    rooms.activity.Record(actor, "Alert", "there is none " + Quoted(text));
    return TextReply(kNotFound, "There is no such alert.");
  }
  const std::string& name = rooms.settings.alerts.at(static_cast<std::size_t>(*number - 1));
  rooms.activity.Record(actor, "Alert", name);
  return TextReply(200, name + " is active.");
}

Reply CarryOut(Rooms& rooms, const Actor& actor, std::string_view command) {
  if (command == "activitylogfile") return AnswerActivityLog(rooms);
  if (const auto message = After(command, "message?msg=")) return AnswerMessage(rooms, actor, *message);
  if (const auto output = After(command, "output=")) return AnswerOutput(rooms, actor, *output);
  if (const auto alert = After(command, "activatealert=")) return AnswerAlert(rooms, actor, *alert);
  return TextReply(kNotFound, "There is no such command.");
}

}  // namespace

Reply AnswerCommand(Rooms& rooms, const Actor& actor, std::string_view command) {
  rooms.activity.RecordBeginning(actor, "Login", "", "");
  if (const auto query = After(command, "img?")) return AnswerArchive(rooms, actor, *query);
  return Misbehave(rooms.faults.Next(kCommandPlace), CarryOut(rooms, actor, command));
}

}  // namespace orbelcast::camera_server
