#pragma once

#include <optional>
#include <string>
#include <utility>

#include "orbelcast/orbelcast.h"
#include "platform/dialogs.h"

namespace orbelcast::server {

/// The dialogs of a library without a screen: answered by the host's object, cancelled while there is none.
class HostDialogs final : public Dialogs {
 public:
  /// Lets `host` answer from now on; nobody where it is empty.
  void SetHost(Held<IHostDialogs> host) { host_ = std::move(host); }

  std::optional<std::string> AskSaveName(const SaveRequest& request) override;
  Answer ShowMessage(const MessageRequest& request) override;
  std::string AskText(const InputRequest& request) override;
  std::optional<Compression> ChooseCompression(const CompressionRequest& request) override;
  void Beep() override;

 private:
  Held<IHostDialogs> host_;
};

}  // namespace orbelcast::server
