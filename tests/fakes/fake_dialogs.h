#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/dialogs.h"
#include "platform/message_loop.h"

namespace orbelcast::fakes {

/// A person who answers the controls' questions from lists. Where a list is empty the question is cancelled, or
/// answered No or OK, as by a program without a screen.
class FakeDialogs final : public Dialogs {
 public:
  explicit FakeDialogs(MessageLoop& loop) : loop_(loop) {}

  std::deque<std::optional<std::string>> names;
  std::deque<Answer> answers;
  std::deque<std::string> texts;
  std::deque<std::optional<Compression>> compressions;
  /// "save TITLE | FILTER", "ask TEXT | TITLE", "tell TEXT | TITLE", "input PROMPT | TITLE", "compression", "beep".
  std::vector<std::string> log;
  /// Called while a question is on the screen.
  std::function<void()> while_open;

  std::optional<std::string> AskSaveName(const SaveRequest& request) override {
    Show("save " + request.title + " | " + request.filter);
    return Take(names).value_or(std::nullopt);
  }
  Answer ShowMessage(const MessageRequest& request) override {
    const bool asks = request.buttons == Buttons::kYesNo;
    Show((asks ? "ask " : "tell ") + request.text + " | " + request.title);
    return Take(answers).value_or(asks ? Answer::kNo : Answer::kOk);
  }
  std::string AskText(const InputRequest& request) override {
    Show("input " + request.prompt + " | " + request.title);
    return Take(texts).value_or("");
  }
  std::optional<Compression> ChooseCompression(const CompressionRequest&) override {
    Show("compression");
    return Take(compressions).value_or(std::nullopt);
  }
  void Beep() override { log.emplace_back("beep"); }

 private:
  // The person takes until the loop has gone round once.
  void Show(std::string what) {
    log.push_back(std::move(what));
    if (while_open) while_open();
    const auto answered = std::make_shared<Completion>();
    loop_.Queue().Post([answered] { answered->Complete(); });
    loop_.Wait(*answered);
  }
  template <typename T>
  static std::optional<T> Take(std::deque<T>& list) {
    if (list.empty()) return std::nullopt;
    std::optional<T> first(std::move(list.front()));
    list.pop_front();
    return first;
  }

  MessageLoop& loop_;
};

}  // namespace orbelcast::fakes
