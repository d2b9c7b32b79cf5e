#include "viewer/status_strip.h"

#include <limits>

#include "toolkit/rounding.h"
#include "viewer/time_code.h"

namespace orbelcast {

namespace {

void AddUnlessOverflow(std::int32_t& counter, std::size_t amount) {
  if (amount <= static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max() - counter)) {
    counter += static_cast<std::int32_t>(amount);
  }
}

}  // namespace

StatusStrip::StatusStrip(Children children, VideoServerPushEvents& events, const Undertakings& undertakings,
                         TextMapper& text_mapper, Clock& clock)
    : on_(children), events_(events), undertakings_(undertakings), text_mapper_(text_mapper), clock_(clock) {}

void StatusStrip::RaiseStatus() {
  std::string text = on_.lStatus.Caption;
  events_.Status(text);
}

void StatusStrip::DrawStatusIcon(StatusIcon Kind) {
  const Surface& picture = on_.icons[static_cast<std::size_t>(Kind)]->Picture();
  PaintStatusIcon(on_.StatusDisplay.Canvas(), on_.StatusDisplay.BackColor, Kind, picture);
  on_.StatusDisplay.Refresh();
}

void StatusStrip::ShowRecording(std::string_view recording) {
  if (recording == "Yes") {
    DrawStatusIcon(StatusIcon::kRecording);
  } else {
    EraseActivityIcon(on_.StatusDisplay.Canvas(), on_.StatusDisplay.BackColor);
  }
}

void StatusStrip::CountFrame(std::size_t bytes) {
  AddUnlessOverflow(BytesThisSecond, bytes);
  AddUnlessOverflow(FramesThisSecond, 1);
}

bool StatusStrip::UpdateOncePerSecond(const TickTexts& texts, const Undertakings::Generation& mine) {
  if (TimeOfDay(clock_.Now()) == LastSecondText) return true;
  ShowRecording(texts.recording);
  on_.TimeRetrieve.Caption = std::string(texts.server_information);
  KeepDrawing();
  KilobytesPerSecond = RoundToEven(BytesThisSecond / 1024.0);
  if (KilobytesPerSecond != 0) PublishRates();
  if (!mine.IsCurrent()) return false;
  BytesThisSecond = 0;
  FramesThisSecond = 0;
  LastSecondText = TimeOfDay(clock_.Now());
  return undertakings_.Yield(mine);
}

void StatusStrip::PublishRates() {
  SetStatus(std::to_string(KilobytesPerSecond) + " KB/s (" + std::to_string(std::int64_t{KilobytesPerSecond} * 8) +
            "Kbps) -> " + std::to_string(FramesThisSecond) + " fps");
  std::int32_t bytes = BytesThisSecond;
  std::int32_t frames = FramesThisSecond;
  events_.StreamInfo(bytes, frames);
}

void StatusStrip::ChooseMode(std::int16_t Index) {
  for (MenuItem& item : on_.Menux) item.Checked = false;
  on_.Menux[static_cast<std::size_t>(Index)].Checked = true;
  StatusLineMode = Index;
}

std::string_view StatusStrip::ServerInformation(HttpRequest& request) const {
  switch (StatusLineMode) {
    case 0:
      return request.GetResponseHeader("Date");
    case 1:
      return request.GetResponseHeader("Server");
    case 2:
      return request.GetResponseHeader("HolmvaneStatus");
    default:
      return {};
  }
}

}  // namespace orbelcast
