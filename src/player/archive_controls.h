#pragma once

#include <array>
#include <cstddef>
#include <string>

#include "player/player_children.h"
#include "player/player_life.h"
#include "player/player_stream.h"

namespace orbelcast {

/// The toolbar's buttons that move through the camera's archive, and the boxes that show its current date and time.
class ArchiveControls {
 public:
  /// All outlive this object.
  ArchiveControls(PlayerChildren& children, PlayerLife& life, PlayerStream& stream);
  ArchiveControls(const ArchiveControls&) = delete;
  ArchiveControls& operator=(const ArchiveControls&) = delete;

  /// Shows the archive's first or last picture.
  void ShowArchiveEnd(ArchiveStep end, bool bandwidth_was_shown);
  /// Shows the picture of the time in the boxes; from then on the archive may be played.
  void SearchArchive();
  /// Whether the archive may be played forwards and backwards.
  void AllowPlay(bool allowed);
  /// A picture came with its time: year, month, day, hour, minute, second.
  void VS_VigilboxTCR(const std::array<std::string, 6>& fields);

 private:
  void TCR_LostFocus(std::size_t Index);

  std::array<TextBox, 6>& TCR;
  std::array<Button, 18>& Player;
  PlayerStream& stream_;
  int archive_ends_awaited_ = 0;  ///< Presses that wait for the archive's first or last picture.
  bool bandwidth_before_archive_end_ = false;
};

}  // namespace orbelcast
