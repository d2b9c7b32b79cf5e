#include "player/search_boxes.h"

#include <QApplication>
#include <QToolButton>
#include <algorithm>

#include "player/toolbar.h"
#include "player/user_control1.h"

namespace orbelcast {

namespace {

/// In the order of the boxes.
constexpr std::array kNames{QT_TR_NOOP("Year"), QT_TR_NOOP("Month"),  QT_TR_NOOP("Day"),
                            QT_TR_NOOP("Hour"), QT_TR_NOOP("Minute"), QT_TR_NOOP("Second")};

template <typename Widget>
Widget* Find(PlayerWidget& player, const char* name, int index) {
  return dynamic_cast<Widget*>(
      player.findChild<QWidget*>(QStringLiteral("%1(%2)").arg(QLatin1String(name)).arg(index)));
}

QString ToolTip(const QString& text) {
  return QStringLiteral("<p style='white-space:pre'>%1</p>").arg(text.toHtmlEscaped());
}

}  // namespace

SearchBoxes::SearchBoxes(PlayerWidget& player) : QObject(&player), player_(player) {
  for (int i = 0; i < 6; ++i) {
    boxes_[static_cast<std::size_t>(i)] = Find<LineWidget>(player, "TCR", i);
    Explain(i, tr(kNames[static_cast<std::size_t>(i)]));
  }
  auto* const search = Find<QToolButton>(player, "Player", toolbar::kSearch);
  BelongsToBoxes(*search);
  // After the press itself, which reads the boxes.
  QObject::connect(search, &QToolButton::clicked, this, [this] { Hold(false); });
  QObject::connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) { OnFocus(now); });
  ExplainButton(toolbar::kReversePlay);
  ExplainButton(toolbar::kPlay);
}

void SearchBoxes::Explain(int box, const QString& name) {
  LineWidget* const widget = boxes_[static_cast<std::size_t>(box)];
  const QString use = tr("%1: type another one, then Enter searches the archive").arg(name);
  widget->setToolTip(ToolTip(use));
  widget->setAccessibleDescription(use);
  QObject::connect(widget, &QLineEdit::returnPressed, this, [this, widget] { OnEnter(*widget); });
  QObject::connect(widget, &QLineEdit::textEdited, this, [this] { Hold(true); });
  QObject::connect(widget, &QLineEdit::textChanged, this, &SearchBoxes::Changed);
}

void SearchBoxes::ExplainButton(std::int16_t index) {
  auto* const widget = Find<QToolButton>(player_, "Player", index);
  const auto explain = [widget](bool enabled) {
    const QString why = tr("search for a time first");
    widget->setToolTip(ToolTip(enabled ? widget->text() : QStringLiteral("%1: %2").arg(widget->text(), why)));
    widget->setAccessibleDescription(enabled ? QString() : why);
  };
  Property<bool>& enabled = player_.Control().Player[static_cast<std::size_t>(index)].Enabled;
  explain(enabled);
  connections_.push_back(enabled.Changed.Connect(explain));
}

// Nothing has the focus while another window is active.
void SearchBoxes::OnFocus(const QWidget* now) {
  if (now == nullptr || now->window() != player_.window()) return;
  const bool is_box = std::ranges::find(boxes_, now) != boxes_.end();
  if (!is_box && std::ranges::find(others_, now) == others_.end()) typed_ = false;
  for (LineWidget* box : boxes_) box->Hold(typed_ || box == now);
}

// As a press on Search: the box is left first.
void SearchBoxes::OnEnter(LineWidget& box) {
  UserControl1& player = player_.Control();
  Hold(false);
  const auto index = std::ranges::find(boxes_, &box) - boxes_.begin();
  Call(player.TCR[static_cast<std::size_t>(index)].OnLostFocus);
  box.selectAll();
  Call(player.Player[toolbar::kSearch].OnClick);
}

void SearchBoxes::Hold(bool held) {
  typed_ = held;
  for (LineWidget* box : boxes_) box->Hold(held);
}

std::optional<QDateTime> SearchBoxes::Time() const {
  const auto part = [this](std::size_t box) { return boxes_[box]->text().toInt(); };
  const QDate date(part(0), part(1), part(2));
  const QTime time(part(3), part(4), part(5));
  if (!date.isValid() || !time.isValid()) return std::nullopt;
  return QDateTime(date, time, Qt::UTC);
}

void SearchBoxes::Search(const QDateTime& time) {
  UserControl1& player = player_.Control();
  Hold(false);
  const QStringList parts = time.toString(QStringLiteral("yyyy MM dd HH mm ss")).split(QLatin1Char(' '));
  for (std::size_t i = 0; i < boxes_.size(); ++i) player.TCR[i].Text = parts[static_cast<qsizetype>(i)].toStdString();
  Call(player.Player[toolbar::kSearch].OnClick);
}

}  // namespace orbelcast
