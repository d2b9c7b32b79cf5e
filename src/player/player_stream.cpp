#include "player/player_stream.h"

namespace orbelcast {

void PlayerStream::TakeAddresses(const std::string& live, const std::string& archive) {
  LiveUrl = live;
  ArchiveUrl = archive;
}

void PlayerStream::TakeQuality(std::string_view code) {
  QualitySuffix = orbelcast::QualitySuffix(code);
}

bool PlayerStream::Live() {
  return Connect(LiveUrl + QualitySuffix, false);
}

bool PlayerStream::Archive(ArchiveStep step, bool once) {
  return Connect(ArchiveStepAddress(ArchiveUrl, step, QualitySuffix), once);
}

bool PlayerStream::Archive(const ArchiveTime& time) {
  return Connect(ArchiveSearchAddress(ArchiveUrl, time, QualitySuffix), true, "Wait...");
}

bool PlayerStream::ShowBandwidth(bool show) {
  if (life_.Ended()) return false;
  VS->ShowBandwidth(show);
  return !life_.Ended();
}

bool PlayerStream::Connect(const std::string& url, bool once, const std::string& message) {
  if (life_.Ended()) return false;
  VS->Connect(url, once, message);
  return !life_.Ended();
}

}  // namespace orbelcast
