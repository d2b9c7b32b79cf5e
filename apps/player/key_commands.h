#pragma once

#include <QKeyCombination>
#include <QObject>
#include <QString>
#include <functional>
#include <vector>

class QMenu;
class QPoint;
class QWidget;

namespace orbelcast {

/// Something that a window does at a key, from its menu, or both.
struct KeyCommand {
  std::vector<QKeyCombination> keys{};  ///< Each runs it. Shift does not count: on some keyboards digits need it.
  QString name{};                       ///< In the menu. Empty: a line between groups.
  QString does{};                       ///< On the page of keys, a sentence without its stop.
  /// Given the place of the key among `keys`, 0 from the menu. Empty: the key is somebody else's and only listed.
  std::function<void(int key)> run{};
  std::function<bool()> allowed{};  ///< Empty: always.
  QString shown{};                  ///< How the keys are written; empty: as the first of them.

  bool Allowed() const { return run && (!allowed || allowed()); }
  QString ShownKeys() const;
};

/// Runs a window's commands by their keys, shows them as a menu over its picture, and as a page that explains them.
///
/// A key comes here only when the part that has the focus makes nothing of it: a box keeps its digits, a list its
/// letters, a button its space. A part that was merely clicked gives the focus to the picture.
class KeyCommands final : public QObject {
  Q_OBJECT

 public:
  enum class Offers { kMenuAndPage, kKeysAlone };

  /// `picture` is in `window`, which owns this object.
  KeyCommands(QWidget& window, QWidget& picture, std::vector<KeyCommand> commands,
              Offers offers = Offers::kMenuAndPage);

  void ShowPage();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool Run(QKeyCombination pressed, bool repeated);
  bool ShowMenu(const QPoint& at);
  /// Whether `at`, in the picture, belongs to a part with a menu of its own.
  bool HasOwnMenu(const QPoint& at) const;
  void GiveFocusBack(QWidget& clicked);

  QWidget& window_;
  QWidget& picture_;
  std::vector<KeyCommand> commands_;
  const Offers offers_;
  QWidget* page_ = nullptr;
};

}  // namespace orbelcast
