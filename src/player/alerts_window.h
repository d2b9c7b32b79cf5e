#pragma once

#include <array>
#include <string>
#include <vector>

#include "platform/http_request.h"
#include "player/player_life.h"
#include "player/server_questions.h"
#include "toolkit/controls.h"
#include "toolkit/generation.h"

namespace orbelcast {

/// The server's alerts, of which one is activated; or its inputs and outputs, of which one output is switched. The
/// player fills it for the one or the other before it is shown. Each button sends one request and closes the window;
/// none is taken while another one's request waits for the server.
struct AlertsWindow final : Window {
  /// Twips: the inner size that the window was designed with, and the widths that it is shown in. That for alerts ends
  /// where the right list begins.
  static constexpr float kDesignWidth = 7005;
  static constexpr float kDesignHeight = 4815;
  static constexpr float kAlertsWidth = 3600;
  static constexpr float kInputsAndOutputsWidth = 7125;

  /// All outlive the window.
  AlertsWindow(HttpRequestFactory& http, ServerQuestions& questions, PlayerLife& life);

  std::array<Label, 2> BoxLabel;  ///< Headings: 0 of AlertList, 1 of OutList.
  ListBox AlertList;
  ListBox OutList;
  Button Activate;
  Button OutToogle;  ///< Its tag begins OutToogleOff's request, too.
  Button OutToogleOff;

  std::vector<NamedChild> Children() override;

 protected:
  void Load() override;

 private:
  void Activate_Click();
  void OutToogle_Click();
  void OutToogleOff_Click();
  /// Sends one request with `button` disabled, then unloads the window, unless it was closed meanwhile.
  void SendAndClose(Button& button, const std::string& url);

  HttpRequestFactory& http_;
  ServerQuestions& questions_;
  GenerationCounter openings_;
};

}  // namespace orbelcast
