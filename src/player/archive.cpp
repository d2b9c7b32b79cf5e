// Moving through the camera's archive, and the boxes that show where it stands.

#include "player/texts.h"
#include "player/toolbar.h"
#include "player/user_control1.h"

namespace orbelcast {

// The bandwidth is shown while the one picture is on its way. A press while another one's picture is waited for finds
// it forced on: what the first of them found is what the last one to end brings back.
void UserControl1::ShowArchiveEnd(ArchiveStep end, bool bandwidth_was_shown) {
  if (archive_ends_awaited_++ == 0) bandwidth_before_archive_end_ = bandwidth_was_shown;
  const bool alive = ShowBandwidth(true) && ConnectViewer(ArchiveStepAddress(ArchiveUrl, end, QualitySuffix), true);
  if (--archive_ends_awaited_ == 0 && alive) ShowBandwidth(bandwidth_before_archive_end_);
}

void UserControl1::PlayArchive(ArchiveStep direction, bool once) {
  ConnectViewer(ArchiveStepAddress(ArchiveUrl, direction, QualitySuffix), once);
}

void UserControl1::SearchArchive() {
  const ArchiveTime time{.day = TCR[2].Text.Get(),
                         .month = TCR[1].Text.Get(),
                         .year = TCR[0].Text.Get(),
                         .hour = TCR[3].Text.Get(),
                         .minute = TCR[4].Text.Get(),
                         .second = TCR[5].Text.Get()};
  if (!ConnectViewer(ArchiveSearchAddress(ArchiveUrl, time, QualitySuffix), true, "Wait...")) return;
  Player[toolbar::kReversePlay].Enabled = true;
  Player[toolbar::kPlay].Enabled = true;
}

void UserControl1::VS_VigilboxTCR(const std::array<std::string, 6>& fields) {
  for (std::size_t i = 0; i < TCR.size(); ++i) TCR[i].Text = fields[i];
}

void UserControl1::TCR_LostFocus(std::size_t Index) {
  TCR[Index].Text = ZeroPadded(TCR[Index].Text.Get(), Index == 0 ? 4 : 2);
}

}  // namespace orbelcast
