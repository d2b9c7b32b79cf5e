#pragma once

#include <array>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/dialogs.h"
#include "remote/json.h"

namespace orbelcast {

/// The questions of the controls, answered from the script's prepared answers and printed as JSON.
///
/// A dialog whose kind has no answer waiting is cancelled: a message box that asks is answered No, one that tells OK.
class ScriptDialogs final : public Dialogs {
 public:
  explicit ScriptDialogs(std::function<void(const Json& line)> print) : print_(std::move(print)) {}

  /// Queues an answer to the next dialog of that kind ("save", "message", "input", "compression"). `codecs` are the
  /// compressions there are. Throws ScriptError for another kind, or an answer that the kind does not have.
  void Answer(std::string_view kind, const std::string& answer, const std::vector<std::string>& codecs);

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
  void Tell(Json line, const std::optional<std::string>& answer);

  std::function<void(const Json& line)> print_;
  std::array<std::deque<std::string>, kKinds.size()> answers_;
};

}  // namespace orbelcast
