#pragma once

#include <QDateTime>
#include <QObject>
#include <array>
#include <optional>
#include <vector>

#include "orbelcast/player_widget.h"
#include "toolkit/signal.h"
#include "widgets/text_widgets.h"

namespace orbelcast {

/// The player's six boxes of date and time, as a person uses them to search the archive.
///
/// The one that has the focus keeps its text whatever time the pictures have that come meanwhile, and once a person has
/// typed so do all, until the search, or until the focus goes elsewhere. Enter searches. The boxes, and buttons that a
/// search enables, say so in tool tips and to screen readers.
///
/// Times are those of the server's clock, and carry Qt::UTC for want of its zone.
class SearchBoxes final : public QObject {
  Q_OBJECT

 public:
  /// `player` outlives this object.
  explicit SearchBoxes(PlayerWidget& player);

  /// The time in the boxes; nothing where they hold none.
  std::optional<QDateTime> Time() const;
  /// Writes the time into the boxes and presses Search.
  void Search(const QDateTime& time);

  /// A widget between which and the boxes the focus may move without their letting go.
  void BelongsToBoxes(QWidget& widget) { others_.push_back(&widget); }

 Q_SIGNALS:
  /// The boxes tell another time.
  void Changed();

 private:
  void Explain(int box, const QString& name);
  void ExplainButton(std::int16_t index);
  void OnFocus(const QWidget* now);
  void OnEnter(LineWidget& box);
  /// All of them.
  void Hold(bool held);

  PlayerWidget& player_;
  std::array<LineWidget*, 6> boxes_{};
  std::vector<const QWidget*> others_;
  bool typed_ = false;  ///< Since the focus came, and the last search.
  std::vector<Connection> connections_;
};

}  // namespace orbelcast
