#include "player/player_mosaic.h"

#include "player/tile_clicks.h"
#include "player/user_control1.h"
#include "protocol/text.h"

namespace orbelcast {

PlayerMosaic::PlayerMosaic(PlayerWidget& player) : QObject(&player), player_(player) {
  const auto* const clicks = new TileClicks(player.VS(), [this] { return Count(); });
  QObject::connect(clicks, &TileClicks::DoubleClicked, this, &PlayerMosaic::OnDoubleClick);
}

// The last part follows the last camera's line end.
int PlayerMosaic::Count() const {
  if (!player_.Control().VS->MultiCam.Enabled) return 0;
  const auto parts = Split(player_.Control().Together(), kCrLf);
  return parts.empty() ? 0 : static_cast<int>(parts.size()) - 1;
}

void PlayerMosaic::OnDoubleClick(int tile) {
  UserControl1& player = player_.Control();
  if (tile >= 0) {
    ShowAlone(tile);
  } else if (!player.VS->MultiCam.Enabled && !together_.empty() && player.VS->URL().starts_with(alone_address_)) {
    player_.RunHandler([&player, together = together_] { player.ShowTogether(together); });
  }
}

void PlayerMosaic::ShowAlone(int tile) {
  UserControl1& player = player_.Control();
  const std::string together = player.Together();
  const std::string address(Split(together, kCrLf)[static_cast<std::size_t>(tile)]);
  for (int camera = 0; camera < player.CamList.ListCount(); ++camera) {
    if (player.LiveAddressOf(camera) != address) continue;
    together_ = together;
    alone_address_ = address;
    player.CamList.Choose(camera);
    return;
  }
}

}  // namespace orbelcast
