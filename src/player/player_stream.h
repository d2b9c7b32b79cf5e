#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "player/player_life.h"
#include "protocol/server_address.h"
#include "viewer/video_server_push.h"

namespace orbelcast {

/// The stream that the player has its viewer show: the current camera's live pictures or archive, in the size and
/// quality that was chosen.
///
/// A step returns false where the host has released the player before or meanwhile; the caller ends then.
class PlayerStream {
 public:
  /// Both outlive this object. `vs` becomes null when the player has ended.
  PlayerStream(const PlayerLife& life, const std::shared_ptr<VideoServerPush>& vs) : life_(life), VS(vs) {}
  PlayerStream(const PlayerStream&) = delete;
  PlayerStream& operator=(const PlayerStream&) = delete;

  /// The camera's addresses from the next step on, without size and quality.
  void TakeAddresses(const std::string& live, const std::string& archive);
  /// The picture code that is asked for from the next step on.
  void TakeQuality(std::string_view code);

  /// The address that the archive's steps are added to.
  const std::string& ArchiveAddress() const { return ArchiveUrl; }

  bool Live();
  bool Archive(ArchiveStep step, bool once);
  /// The picture at that time.
  bool Archive(const ArchiveTime& time);
  bool ShowBandwidth(bool show);

 private:
  bool Connect(const std::string& url, bool once, const std::string& message = {});

  const PlayerLife& life_;
  const std::shared_ptr<VideoServerPush>& VS;
  std::string LiveUrl;
  std::string ArchiveUrl;
  std::string QualitySuffix;
};

}  // namespace orbelcast
