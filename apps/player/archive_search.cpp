#include "player/archive_search.h"

#include <QEvent>
#include <QPointer>
#include <QToolButton>
#include <utility>

#include "player/archive_panel.h"
#include "player/search_boxes.h"
#include "player/toolbar.h"
#include "player/user_control1.h"

namespace orbelcast {

namespace {

/// Pixels between the toolbar and the button.
constexpr int kGap = 4;

QWidget* SearchButton(PlayerWidget& player) {
  return player.findChild<QWidget*>(QStringLiteral("Player(%1)").arg(toolbar::kSearch));
}

}  // namespace

ArchiveSearch::ArchiveSearch(Platform& platform, PlayerWidget& player)
    : QObject(&player),
      platform_(platform),
      player_(player),
      boxes_(new SearchBoxes(player)),
      panel_(new ArchivePanel(*boxes_, &player)),
      button_(new QToolButton(&player)),
      toolbar_(player.findChild<QWidget*>(QStringLiteral("PlayerControls"))) {
  button_->setText(tr("Calendar"));
  button_->setToolTip(tr("Choose a day and a time of the archive (C)"));
  button_->setFont(SmallFont(Label().Font));
  button_->setFocusPolicy(Qt::StrongFocus);
  QObject::connect(button_, &QToolButton::clicked, this, &ArchiveSearch::Open);
  boxes_->BelongsToBoxes(*button_);
  QWidget::setTabOrder(SearchButton(player), button_);
  toolbar_->installEventFilter(this);
  pictures_ = player.Control().VS->Events.VigilboxTCR.Connect(
      [this](auto&, auto&, auto&, auto&, auto&, auto&, auto&, std::string& code) { NotePicture(code); });
  PlaceButton();
}

bool ArchiveSearch::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::Show:
    case QEvent::Hide:
      PlaceButton();
      break;
    default:
      break;
  }
  return QObject::eventFilter(watched, event);
}

void ArchiveSearch::PlaceButton() {
  const QWidget& search = *SearchButton(player_);
  const QPoint corner = search.mapTo(&player_, QPoint(search.width() + kGap, 0));
  button_->setGeometry(corner.x(), corner.y(), button_->sizeHint().width(), search.height());
  button_->setVisible(!toolbar_->isHidden() && button_->geometry().right() < player_.width());
}

void ArchiveSearch::NotePicture(const std::string& time_code) {
  const std::string& archive = player_.Control().ArchiveAddress();
  if (archive.empty() || !player_.Control().VS->URL().starts_with(archive)) return;
  archive_ = archive;
  position_ = TimeOfCode(time_code);
}

void ArchiveSearch::Open() {
  const bool over_toolbar = !toolbar_->isHidden();
  Ask();
  panel_->Open(over_toolbar ? toolbar_->mapToGlobal(QPoint(0, 0)) : player_.mapToGlobal(QPoint(0, player_.height())));
}

bool ArchiveSearch::PlaysArchive() const {
  const VideoServerPush& viewer = *player_.Control().VS;
  const std::string& archive = player_.Control().ArchiveAddress();
  return viewer.MasterTimer.Enabled && !archive.empty() && viewer.URL().starts_with(archive);
}

void ArchiveSearch::Ask() {
  const std::string archive = player_.Control().ArchiveAddress();
  if (archive.empty()) return panel_->ShowExtent({}, tr("No camera is chosen."));
  if (PlaysArchive()) return panel_->ShowExtent({}, tr("From when to when there are pictures is asked after Stop."));
  panel_->ShowExtent({}, tr("Asking the server for the first and the last picture…"));
  if (std::exchange(asked_, archive) == archive) return;
  player_.RunHandler([this, &http = platform_.http, archive, watch = QPointer(this)] {
    const ArchiveExtent extent = AskForExtent(http, archive, [&]() -> std::optional<QDateTime> {
      return watch && archive_ == archive ? position_ : std::nullopt;
    });
    // Another camera may have been chosen meanwhile.
    if (watch && asked_ == archive) ShowAnswer(extent);
  });
}

void ArchiveSearch::ShowAnswer(const ArchiveExtent& extent) {
  asked_.clear();
  panel_->ShowExtent(extent, tr("The server does not tell from when to when there are pictures."));
}

}  // namespace orbelcast
