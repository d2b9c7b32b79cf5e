#pragma once

#include <QObject>
#include <optional>
#include <string>

#include "orbelcast/player_widget.h"
#include "platform/platform.h"
#include "player/archive_extent.h"
#include "toolkit/signal.h"

class QToolButton;

namespace orbelcast {

class ArchivePanel;
class SearchBoxes;

/// The search for a moment of the archive in a player's window: the boxes, and a button beside them that opens a
/// calendar. The button is shown where the toolbar leaves it room.
class ArchiveSearch final : public QObject {
  Q_OBJECT

 public:
  /// `platform` and `player` outlive this object.
  ArchiveSearch(Platform& platform, PlayerWidget& player);

  /// Opens the calendar and asks the server from when to when there are pictures.
  void Open();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void PlaceButton();
  void Ask();
  /// Whether pictures of the archive follow one another: then its position is not touched.
  bool PlaysArchive() const;

  void NotePicture(const std::string& time_code);
  void ShowAnswer(const ArchiveExtent& extent);

  Platform& platform_;
  PlayerWidget& player_;
  SearchBoxes* boxes_;
  ArchivePanel* panel_;
  QToolButton* button_;
  QWidget* toolbar_;
  std::string asked_;  ///< The archive whose answers are waited for.
  /// The archive that a picture was shown of last, and its time: where the server stands in it.
  std::string archive_;
  std::optional<QDateTime> position_;
  Connection pictures_;
};

}  // namespace orbelcast
