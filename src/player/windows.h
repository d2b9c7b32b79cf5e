#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/http_request.h"
#include "player/server_questions.h"
#include "toolkit/controls.h"
#include "toolkit/generation.h"
#include "viewer/video_server_push.h"

namespace orbelcast {

/// The windows that the player opens. They belong to it and live as long as it does; each is opened by `ShowModal`,
/// which the player alone calls.

/// Starts a handler of the message loop that keeps the windows' player alive until it ends.
using HandlerStarter = std::function<void(std::function<void()> handler)>;

/// The server's alerts, of which one is activated; or its inputs and outputs, of which one output is switched. The
/// player fills it for the one or the other before it is shown. Each button sends one request and closes the window;
/// none is taken while another one's request waits for the server.
struct AlertsWindow final : Window {
  AlertsWindow(HttpRequestFactory& http, ServerQuestions& questions, const HandlerStarter& start);

  std::array<Label, 2> BoxLabel;  ///< Headings: 0 of AlertList, 1 of OutList.
  ListBox AlertList;
  ListBox OutList;
  Button Activate;
  Button OutToogle;  ///< Its tag is what OutToogleOff's request begins with, too.
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

/// Chooses the cameras that are shown together.
struct MultiCamsWindow final : Window {
  explicit MultiCamsWindow(const HandlerStarter& start);

  ListBox Cameras;  ///< Several may be selected.
  Button Go;
  Button Bye;

  /// The live addresses of the chosen cameras, each followed by CR LF; stays readable after the window has closed.
  std::string SelectionResult;
  /// Keeps `d` as the live address of camera `X` of the list; a negative one is ignored.
  void CamerasMatrix(std::int16_t X, const std::string& d);

  std::vector<NamedChild> Children() override;

 protected:
  void Load() override;

 private:
  void Go_Click();
  void Bye_Click();

  std::vector<std::string> CameraMatrix;
};

/// Shows the server's activity log.
struct LogWindow final : Window {
  LogWindow();

  TextBox Log;

  std::vector<NamedChild> Children() override;

 protected:
  void Load() override;
};

/// Shows one stream, or several cameras together, over the whole screen until a mouse button is pressed on it.
///
/// Its tag says what to show: an address, or "*" and the text that VideoServerPush::MultiCamView takes. That starts
/// whenever the window has got a size, so again at each later one.
struct FullScreenWindow final : Window {
  FullScreenWindow(Platform& platform, const HandlerStarter& start);

  /// The viewer that fills the window, from the moment that the player prepares the window until it is unloaded; null
  /// otherwise. It is there when `Opened` is told, and gone when `Closed` is.
  std::shared_ptr<VideoServerPush> vs;

  /// Makes the viewer, where there is none.
  VideoServerPush& Viewer();
  /// It was made. Who listens to it from here on is told of its events before the window acts on them.
  Signal<VideoServerPush&> ViewerMade;

 protected:
  void Load() override;

 private:
  void Form_Resize();
  void vs_MouseDown();

  Platform& platform_;
};

}  // namespace orbelcast
