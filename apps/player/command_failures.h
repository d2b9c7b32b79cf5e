#pragma once

#include <QObject>
#include <QTimer>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "player/status_line.h"
#include "toolkit/signal.h"
#include "widgets/qt_platform.h"

namespace orbelcast {

/// Tells in a window's status line which commands have failed that nothing else tells of: a picture that could not be
/// saved, and what the server refused.
class CommandFailures final : public QObject {
  Q_OBJECT

 public:
  /// `line` is this object's parent, and `platform` outlives it.
  CommandFailures(QtPlatform& platform, StatusLine& line);

 private:
  using FileTime = std::optional<std::filesystem::file_time_type>;

  void TellOfRequest(const YieldingHttp::Outcome& outcome);
  void WatchSnapshot(const std::string& file);
  void CheckSnapshot();

  StatusLine& line_;
  std::string file_;  ///< That a picture is being saved as, and when it was last written before.
  FileTime written_before_;
  QTimer check_;  ///< Once the command has ended; it stands still while a question is asked.
  bool asked_meanwhile_ = false;
  std::vector<Connection> connections_;
};

}  // namespace orbelcast
