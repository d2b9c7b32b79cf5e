#pragma once

#include <QString>
#include <functional>

#include "platform/dialogs.h"
#include "platform/message_loop.h"
#include "toolkit/signal.h"

class QDialog;

namespace orbelcast {

/// The questions of the controls as dialogs of the desktop, each modal to the window that is active when it opens. A
/// dialog suspends only the handler that asks.
///
/// A dialog that ends with its owner, or that is open when the loop ends, counts as cancelled.
class QtDialogs final : public Dialogs {
 public:
  /// The loop that dialogs wait on. Before it is given every dialog is cancelled at once.
  void WaitOn(MessageLoop& loop) { loop_ = &loop; }

  /// Names a file to save, as people would: without a folder and an ending. Without this function, or where it gives
  /// nothing, no name is proposed.
  std::function<QString()> ProposeName;
  /// A name was chosen to save under.
  Signal<const SaveRequest&, const std::string&> NameChosen;
  /// A question opens, or was answered; of a message, too.
  Signal<> Asks;
  Signal<Answer> Answered;

  std::optional<std::string> AskSaveName(const SaveRequest& request) override;
  Answer ShowMessage(const MessageRequest& request) override;
  std::string AskText(const InputRequest& request) override;
  std::optional<Compression> ChooseCompression(const CompressionRequest& request) override;
  void Beep() override;

 private:
  /// Shows the dialog until it is answered; its result, or 0 where it was cancelled. It may be gone afterwards.
  int Run(QDialog* dialog);
  Answer ShowBox(const MessageRequest& request);

  MessageLoop* loop_ = nullptr;
  QString folder_;  // where the last file was saved
};

}  // namespace orbelcast
