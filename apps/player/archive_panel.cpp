#include "player/archive_panel.h"

#include <QCalendarWidget>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QSignalBlocker>
#include <QTextCharFormat>
#include <QVBoxLayout>
#include <algorithm>

#include "player/time_line.h"

namespace orbelcast {

namespace {

/// The calendar's while nothing is known.
const QDate kFirstDay{1970, 1, 1};
const QDate kLastDay{9999, 12, 31};

QString Shown(const QDateTime& time) {
  return QLocale().toString(time, QStringLiteral("d MMM yyyy HH:mm:ss"));
}

}  // namespace

ArchivePanel::ArchivePanel(SearchBoxes& boxes, QWidget* parent)
    : QFrame(parent, Qt::Popup),
      boxes_(boxes),
      known_(new QLabel),
      calendar_(new QCalendarWidget),
      line_(new TimeLine),
      moment_(new QLabel) {
  setFrameStyle(QFrame::StyledPanel | QFrame::Raised);
  setWindowTitle(tr("Search the archive"));
  setAccessibleName(windowTitle());
  calendar_->setVerticalHeaderFormat(QCalendarWidget::NoVerticalHeader);
  calendar_->setDateEditEnabled(false);
  calendar_->setAccessibleName(tr("Day"));
  known_->setWordWrap(true);
  auto* const search = new QPushButton(tr("&Search"));
  auto* const bottom = new QHBoxLayout;
  bottom->addWidget(moment_, 1);
  bottom->addWidget(search);
  auto* const layout = new QVBoxLayout(this);
  for (QWidget* each :
       {static_cast<QWidget*>(known_), static_cast<QWidget*>(calendar_), static_cast<QWidget*>(line_)}) {
    layout->addWidget(each);
  }
  layout->addLayout(bottom);

  // Not red whatever the theme's colours are.
  for (const Qt::DayOfWeek day : {Qt::Saturday, Qt::Sunday}) calendar_->setWeekdayTextFormat(day, {});
  QObject::connect(calendar_, &QCalendarWidget::currentPageChanged, this, &ArchivePanel::MarkDays);
  QObject::connect(calendar_, &QCalendarWidget::selectionChanged, this, &ArchivePanel::ShowDay);
  QObject::connect(calendar_, &QCalendarWidget::clicked, this, &ArchivePanel::Search);
  QObject::connect(calendar_, &QCalendarWidget::activated, this, &ArchivePanel::Search);
  QObject::connect(line_, &TimeLine::valueChanged, this, &ArchivePanel::ShowMoment);
  QObject::connect(line_, &TimeLine::Chosen, this, &ArchivePanel::Search);
  QObject::connect(search, &QPushButton::clicked, this, &ArchivePanel::Search);
  QObject::connect(&boxes_, &SearchBoxes::Changed, this, [this] {
    if (searched_ && isVisible()) FollowBoxes();
  });
}

void ArchivePanel::Open(const QPoint& corner) {
  searched_ = false;
  FollowBoxes();
  adjustSize();
  const QRect room = parentWidget()->screen()->availableGeometry();
  const QPoint wanted(corner.x(), corner.y() - height());
  move(std::clamp(wanted.x(), room.left(), std::max(room.left(), room.right() - width())),
       std::clamp(wanted.y(), room.top(), std::max(room.top(), room.bottom() - height())));
  show();
  calendar_->setFocus();
}

void ArchivePanel::ShowExtent(const ArchiveExtent& extent, const QString& text) {
  extent_ = extent;
  calendar_->setDateRange(kFirstDay, kLastDay);
  known_->setText(text);
  if (extent_.Known()) {
    known_->setText(tr("Pictures from %1 to %2").arg(Shown(*extent_.first), Shown(*extent_.last)));
    calendar_->setDateRange(extent_.first->date(), extent_.last->date());
    if (!boxes_.Time()) ShowTime(*extent_.last);
  }
  MarkDays();
  ShowDay();
}

void ArchivePanel::FollowBoxes() {
  if (const auto time = boxes_.Time()) ShowTime(*time);
}

void ArchivePanel::ShowTime(const QDateTime& time) {
  calendar_->setSelectedDate(time.date());
  line_->setValue(QTime(0, 0).secsTo(time.time()));
  ShowDay();
}

void ArchivePanel::MarkDays() {
  const QDate first(calendar_->yearShown(), calendar_->monthShown(), 1);
  calendar_->setDateTextFormat(QDate(), {});
  for (QDate day = first; extent_.Known() && day.month() == first.month(); day = day.addDays(1)) {
    const bool has_pictures = day >= extent_.first->date() && day <= extent_.last->date();
    QTextCharFormat format;
    if (has_pictures) format.setFontWeight(QFont::Bold);
    format.setForeground(palette().brush(has_pictures ? QPalette::Active : QPalette::Disabled, QPalette::Text));
    calendar_->setDateTextFormat(day, format);
  }
}

void ArchivePanel::ShowDay() {
  line_->ShowDay(calendar_->selectedDate(), extent_);
  ShowMoment();
}

void ArchivePanel::ShowMoment() {
  moment_->setText(Shown(QDateTime(calendar_->selectedDate(), line_->Time(), Qt::UTC)));
}

void ArchivePanel::Search() {
  searched_ = true;
  boxes_.Search(QDateTime(calendar_->selectedDate(), line_->Time(), Qt::UTC));
}

}  // namespace orbelcast
