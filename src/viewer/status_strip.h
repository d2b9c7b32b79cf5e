#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "imaging/status_icons.h"
#include "platform/clock.h"
#include "platform/http_request.h"
#include "platform/text_mapper.h"
#include "toolkit/controls.h"
#include "viewer/events.h"
#include "viewer/undertakings.h"

namespace orbelcast {

/// The strip below the picture: the status line, its icons, the line under it that shows what the menu chose, and the
/// counters that it shows once a second.
class StatusStrip {
 public:
  struct Children {
    PictureBox& StatusDisplay;
    Label& lStatus;
    Label& TimeRetrieve;
    std::array<PictureBox*, 4> icons;  ///< By StatusIcon.
    std::array<MenuItem, 5>& Menux;
  };

  /// The header texts of one tick's answer, shown once a second: views, empty where the tick fetched nothing.
  struct TickTexts {
    std::string_view recording;
    std::string_view server_information;
  };

  StatusStrip(Children children, VideoServerPushEvents& events, const Undertakings& undertakings,
              TextMapper& text_mapper, Clock& clock);

  // ---- The status line --------------------------------------------------------------------------------------------

  void SetStatus(const std::string& text) { on_.lStatus.Caption = text; }
  void SetToolTip(const std::string& text) { on_.lStatus.ToolTipText = text; }
  /// A status text in the language of the text mapper.
  std::string Map(const std::string& text) const { return text_mapper_.Map(text, 0); }
  /// Raises Status with the line's text.
  void RaiseStatus();
  void Show(bool visible) { on_.StatusDisplay.Visible = visible; }

  // ---- Icons ------------------------------------------------------------------------------------------------------

  void DrawStatusIcon(StatusIcon Kind);
  /// Draws the recording icon where `recording`, an answer's header, is exactly "Yes"; erases it elsewhere.
  void ShowRecording(std::string_view recording);
  /// Keeps the drawing; the front end paints it.
  void KeepDrawing() { on_.StatusDisplay.Refresh(); }
  void ClearDrawing() { on_.StatusDisplay.Cls(); }

  // ---- Once a second ----------------------------------------------------------------------------------------------

  /// Counts a frame of `bytes` bytes. A counter that would overflow keeps its value.
  void CountFrame(std::size_t bytes);
  /// Frames that were counted in this second.
  std::int32_t Frames() const { return FramesThisSecond; }
  /// The once-a-second work, where a new clock second has begun. False where `mine` is void.
  bool UpdateOncePerSecond(const TickTexts& texts, const Undertakings::Generation& mine);

  // ---- The menu's choice ------------------------------------------------------------------------------------------

  /// From the next second on TimeRetrieve shows 0 the server's date, 1 its name, 2 its status.
  void ChooseMode(std::int16_t Index);
  /// The header of the answer that the mode names.
  std::string_view ServerInformation(HttpRequest& request) const;
  void ClearServerInformation() { on_.TimeRetrieve.Caption = ""; }

 private:
  void PublishRates();

  const Children on_;
  VideoServerPushEvents& events_;
  const Undertakings& undertakings_;
  TextMapper& text_mapper_;
  Clock& clock_;

  std::int16_t StatusLineMode = 0;
  std::int32_t BytesThisSecond = 0;
  std::int32_t FramesThisSecond = 0;
  std::int32_t KilobytesPerSecond = 0;
  std::string LastSecondText;  ///< hh:mm:ss of the last once-a-second work.
};

}  // namespace orbelcast
