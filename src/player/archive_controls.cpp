#include "player/archive_controls.h"

#include "player/texts.h"
#include "player/toolbar.h"

namespace orbelcast {

ArchiveControls::ArchiveControls(PlayerChildren& children, PlayerLife& life, PlayerStream& stream)
    : TCR(children.TCR), Player(children.Player), stream_(stream) {
  for (std::size_t i = 0; i < TCR.size(); ++i) {
    TCR[i].OnLostFocus = [this, i, &life] { life.Start([this, i] { TCR_LostFocus(i); }); };
  }
}

// The bandwidth is shown while the single picture is requested. A press during another one's request finds it forced
// on: the last press to end restores the state that the first one found.
void ArchiveControls::ShowArchiveEnd(ArchiveStep end, bool bandwidth_was_shown) {
  if (archive_ends_awaited_++ == 0) bandwidth_before_archive_end_ = bandwidth_was_shown;
  const bool alive = stream_.ShowBandwidth(true) && stream_.Archive(end, true);
  if (--archive_ends_awaited_ == 0 && alive) stream_.ShowBandwidth(bandwidth_before_archive_end_);
}

void ArchiveControls::SearchArchive() {
  const ArchiveTime time{.day = TCR[2].Text.Get(),
                         .month = TCR[1].Text.Get(),
                         .year = TCR[0].Text.Get(),
                         .hour = TCR[3].Text.Get(),
                         .minute = TCR[4].Text.Get(),
                         .second = TCR[5].Text.Get()};
  if (stream_.Archive(time)) AllowPlay(true);
}

void ArchiveControls::AllowPlay(bool allowed) {
  Player[toolbar::kReversePlay].Enabled = allowed;
  Player[toolbar::kPlay].Enabled = allowed;
}

void ArchiveControls::VS_VigilboxTCR(const std::array<std::string, 6>& fields) {
  for (std::size_t i = 0; i < TCR.size(); ++i) TCR[i].Text = fields[i];
}

void ArchiveControls::TCR_LostFocus(std::size_t Index) {
  TCR[Index].Text = ZeroPadded(TCR[Index].Text.Get(), Index == 0 ? 4 : 2);
}

}  // namespace orbelcast
