#include "player/key_commands.h"

#include <QContextMenuEvent>
#include <QDialog>
#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QKeySequence>
#include <QLabel>
#include <QMenu>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

namespace orbelcast {

namespace {

/// Pixels between a key and what it does.
constexpr int kColumnGap = 24;

QString TableOf(const std::vector<KeyCommand>& commands) {
  QString rows;
  for (const KeyCommand& each : commands) {
    const QString row = QStringLiteral("<tr><td style='padding-right:%1px'><b>%2</b></td><td>%3</td></tr>");
    if (each.name.isEmpty()) {
      rows += QStringLiteral("<tr><td>&nbsp;</td></tr>");
    } else {
      rows += row.arg(QString::number(kColumnGap), each.ShownKeys().toHtmlEscaped(), each.does.toHtmlEscaped());
    }
  }
  return QStringLiteral("<table>%1</table>").arg(rows);
}

QWidget* MakePage(QWidget& window, const std::vector<KeyCommand>& commands) {
  auto* const page = new QDialog(&window);
  page->setWindowTitle(QObject::tr("Keys – Orbelcast"));
  auto* const text = new QLabel(TableOf(commands));
  text->setTextFormat(Qt::RichText);
  text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  text->setAccessibleName(QObject::tr("Keys"));
  auto* const note = new QLabel(QObject::tr("A box, list or button that has the focus keeps its own keys."));
  auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close);
  QObject::connect(buttons, &QDialogButtonBox::rejected, page, &QDialog::reject);
  auto* const layout = new QVBoxLayout(page);
  layout->addWidget(text);
  layout->addWidget(note);
  layout->addWidget(buttons);
  layout->setSizeConstraint(QLayout::SetFixedSize);
  return page;
}

}  // namespace

QString KeyCommand::ShownKeys() const {
  if (!shown.isEmpty() || keys.empty()) return shown;
  return QKeySequence(keys.front()).toString(QKeySequence::NativeText);
}

KeyCommands::KeyCommands(QWidget& window, QWidget& picture, std::vector<KeyCommand> commands, Offers offers)
    : QObject(&window), window_(window), picture_(picture), commands_(std::move(commands)), offers_(offers) {
  if (offers_ == Offers::kMenuAndPage) {
    commands_.push_back(
        {.keys = {Qt::Key_Question}, .name = tr("Keys…"), .does = tr("Show this page"), .run = [this](int) {
           ShowPage();
         }});
  }
  window_.installEventFilter(this);
  picture_.installEventFilter(this);
  picture_.setFocusPolicy(Qt::ClickFocus);
  for (QToolButton* button : window_.findChildren<QToolButton*>()) {
    if (button->window() == &window_) button->installEventFilter(this);
  }
}

bool KeyCommands::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress && watched == &window_) {
    const auto& key = static_cast<const QKeyEvent&>(*event);
    if (Run(key.keyCombination(), key.isAutoRepeat())) return true;
  }
  if (event->type() == QEvent::ContextMenu && offers_ == Offers::kMenuAndPage) {
    const auto& menu = static_cast<const QContextMenuEvent&>(*event);
    const bool by_keyboard = menu.reason() == QContextMenuEvent::Keyboard;
    if (by_keyboard && watched == &window_) return ShowMenu(picture_.mapToGlobal(picture_.rect().center()));
    if (!by_keyboard && watched == &picture_ && !HasOwnMenu(menu.pos())) return ShowMenu(menu.globalPos());
  }
  auto* const button = qobject_cast<QToolButton*>(watched);
  if (event->type() == QEvent::MouseButtonRelease && button != nullptr) GiveFocusBack(*button);
  return QObject::eventFilter(watched, event);
}

bool KeyCommands::Run(QKeyCombination pressed, bool repeated) {
  const auto modifiers = pressed.keyboardModifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier);
  const QKeyCombination wanted(modifiers, pressed.key());
  for (const KeyCommand& each : commands_) {
    const auto key = std::ranges::find(each.keys, wanted);
    if (key == each.keys.end() || !each.run) continue;
    // A copy: it may end the window.
    const auto run = each.run;
    if (!repeated && each.Allowed()) run(static_cast<int>(key - each.keys.begin()));
    return true;
  }
  return false;
}

bool KeyCommands::ShowMenu(const QPoint& at) {
  auto* const menu = new QMenu(&window_);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  for (const KeyCommand& each : commands_) {
    if (each.name.isEmpty()) menu->addSeparator();
    // One of several keys has to be pressed for it.
    if (!each.run || each.keys.size() > 1) continue;
    QAction* const action = menu->addAction(each.name + QLatin1Char('\t') + each.ShownKeys());
    action->setEnabled(each.Allowed());
    QObject::connect(action, &QAction::triggered, this, [run = each.run] { run(0); });
  }
  menu->popup(at);
  return true;
}

bool KeyCommands::HasOwnMenu(const QPoint& at) const {
  const QWidget* part = picture_.childAt(at);
  while (part != nullptr && part != &picture_ && part->objectName() != QLatin1String("StatusDisplay")) {
    part = part->parentWidget();
  }
  return part != nullptr && part != &picture_;
}

// Later: the release is what presses the button.
void KeyCommands::GiveFocusBack(QWidget& clicked) {
  QTimer::singleShot(0, &clicked, [this, &clicked] {
    if (clicked.window()->focusWidget() == &clicked) picture_.setFocus(Qt::OtherFocusReason);
  });
}

void KeyCommands::ShowPage() {
  if (page_ == nullptr) page_ = MakePage(window_, commands_);
  page_->show();
  page_->raise();
  page_->activateWindow();
}

}  // namespace orbelcast
