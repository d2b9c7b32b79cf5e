#include "remote/script_dialogs.h"

#include <algorithm>
#include <utility>

#include "remote/script_error.h"

namespace orbelcast {

namespace {

constexpr std::string_view kCancel = "cancel";

std::string Joined(const std::vector<std::string>& names) {
  std::string joined;
  for (const std::string& name : names) joined += (joined.empty() ? "" : ", ") + name;
  return joined;
}

void CheckOneOf(const std::string& answer, const std::vector<std::string>& possible) {
  if (std::find(possible.begin(), possible.end(), answer) != possible.end()) return;
  throw ScriptError("'" + answer + "' is no answer to it; there are " + Joined(possible));
}

/// Adds a field of the dialog, unless it is empty.
void AddText(Json& line, const char* field, const std::string& text) {
  if (!text.empty()) line[field] = text;
}

}  // namespace

void ScriptDialogs::Answer(std::string_view kind, const std::string& answer, const std::vector<std::string>& codecs) {
  const auto found = std::find(kKinds.begin(), kKinds.end(), kind);
  if (found == kKinds.end()) {
    throw ScriptError("there is no dialog '" + std::string(kind) + "'; there are save, message, input and compression");
  }
  const auto index = static_cast<std::size_t>(found - kKinds.begin());
  if (index == kMessage) CheckOneOf(answer, {"Yes", "No", "OK"});
  if (index == kCompression && answer != kCancel) CheckOneOf(answer, codecs);
  answers_[index].push_back(answer);
  if (waiting_[index].empty()) return;
  Completion& oldest = *waiting_[index].front();
  waiting_[index].pop_front();
  oldest.Complete();
}

void ScriptDialogs::End() {
  ended_ = true;
  for (auto& waiting : waiting_) {
    for (Completion* each : std::exchange(waiting, {})) each->Complete();
  }
}

Json ScriptDialogs::Line(Kind kind) {
  return {{"dialog", kKinds[kind]}};
}

std::optional<std::string> ScriptDialogs::AskSaveName(const SaveRequest& request) {
  Json line = Line(kSave);
  AddText(line, "title", request.title);
  AddText(line, "filter", request.filter);
  auto answer = Ask(kSave, line);
  Tell(std::move(line), answer);
  return answer;
}

Dialogs::Answer ScriptDialogs::ShowMessage(const MessageRequest& request) {
  const bool asks = request.buttons == Buttons::kYesNo;
  Json line = Line(kMessage);
  AddText(line, "title", request.title);
  line["text"] = request.text;
  line["buttons"] = asks ? Json::Array({"Yes", "No"}) : Json::Array({"OK"});
  if (request.icon == Icon::kExclamation) line["icon"] = "exclamation";
  if (request.icon == Icon::kInformation) line["icon"] = "information";
  const auto answer = Ask(kMessage, line);
  const auto given = !asks ? Dialogs::Answer::kOk : answer == "Yes" ? Dialogs::Answer::kYes : Dialogs::Answer::kNo;
  Tell(std::move(line), given == Dialogs::Answer::kOk ? "OK" : given == Dialogs::Answer::kYes ? "Yes" : "No");
  return given;
}

std::string ScriptDialogs::AskText(const InputRequest& request) {
  Json line = Line(kInput);
  AddText(line, "title", request.title);
  line["text"] = request.prompt;
  const auto answer = Ask(kInput, line);
  Tell(std::move(line), answer);
  return answer.value_or("");
}

std::optional<Dialogs::Compression> ScriptDialogs::ChooseCompression(const CompressionRequest& request) {
  Json line = Line(kCompression);
  line["choices"] = request.codecs;
  auto answer = Ask(kCompression, line);
  Tell(std::move(line), answer);
  if (!answer) return std::nullopt;
  return Compression{.codec = *answer};
}

std::optional<std::string> ScriptDialogs::Next(Kind kind) {
  auto& waiting = answers_[kind];
  if (waiting.empty()) return std::nullopt;
  std::string answer = std::move(waiting.front());
  waiting.pop_front();
  if (answer == kCancel) return std::nullopt;
  return answer;
}

std::optional<std::string> ScriptDialogs::Ask(Kind kind, const Json& line) {
  if (loop_ == nullptr) return Next(kind);
  if (ended_ || waiting_[kind].size() >= kMaxWaiting) return std::nullopt;
  Completion answered;
  waiting_[kind].push_back(&answered);
  print_(line);
  loop_->Wait(answered);
  std::erase(waiting_[kind], &answered);  // the wait of a loop that ends returns early
  return ended_ ? std::nullopt : Next(kind);
}

void ScriptDialogs::Tell(Json line, const std::optional<std::string>& answer) {
  if (loop_ != nullptr) return;  // who answered knows
  line["answer"] = answer.value_or(std::string(kCancel));
  print_(line);
}

}  // namespace orbelcast
