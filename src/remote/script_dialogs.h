#pragma once

#include <array>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "json/json.h"
#include "platform/dialogs.h"
#include "platform/message_loop.h"

namespace orbelcast {

/// The questions of the controls, answered from the script's prepared answers and printed as JSON.
///
/// A dialog whose kind has no answer waiting is cancelled: a message box that asks is answered No, one that tells OK.
/// With a loop to wait on, people answer instead: the dialog is printed without an answer and waits for the next one of
/// its kind.
class ScriptDialogs final : public Dialogs {
 public:
  /// Dialogs that wait at a time; others are cancelled.
  static constexpr std::size_t kMaxWaiting = 8;

  /// `waits_on`, where it is given, outlives this.
  explicit ScriptDialogs(std::function<void(const Json& line)> print, MessageLoop* waits_on = nullptr)
      : print_(std::move(print)), loop_(waits_on) {}

  /// Queues an answer to the next dialog of that kind ("save", "message", "input", "compression"). `codecs` are the
  /// compressions there are. Throws ScriptError for another kind, or an answer that the kind does not have.
  void Answer(std::string_view kind, const std::string& answer, const std::vector<std::string>& codecs);

  /// Cancels what waits, and all that come.
  void End();

  std::optional<std::string> AskSaveName(const SaveRequest& request) override;
  Dialogs::Answer ShowMessage(const MessageRequest& request) override;
  std::string AskText(const InputRequest& request) override;
  std::optional<Compression> ChooseCompression(const CompressionRequest& request) override;

 private:
  enum Kind : std::size_t { kSave, kMessage, kInput, kCompression };
  static constexpr std::array<std::string_view, 4> kKinds{"save", "message", "input", "compression"};

  static Json Line(Kind kind);
  /// The next answer of the kind; nothing where none waits or it is to be cancelled.
  std::optional<std::string> Next(Kind kind);
  /// The answer to the dialog that `line` describes.
  std::optional<std::string> Ask(Kind kind, const Json& line);
  void Tell(Json line, const std::optional<std::string>& answer);

  std::function<void(const Json& line)> print_;
  MessageLoop* const loop_;
  bool ended_ = false;
  std::array<std::deque<std::string>, kKinds.size()> answers_;
  std::array<std::deque<Completion*>, kKinds.size()> waiting_;  ///< The oldest first; each is on its waiter's stack.
};

}  // namespace orbelcast
