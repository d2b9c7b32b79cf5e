#pragma once

#include <QFrame>
#include <QString>

class QLabel;
class QProgressBar;
class QPushButton;

namespace orbelcast {

/// The choices that a person has with a problem, besides trying again.
struct NoticeChoices {
  bool log_in = false;
  bool close = true;  ///< Not where the window would be empty without it.
};

/// A notice over the upper part of a window: that something is waited for, or a problem with advice. It
/// covers a little of the window and moves nothing.
class Notice final : public QFrame {
  Q_OBJECT

 public:
  /// The delay before the notice of a request that is waited for; a faster answer needs none.
  static constexpr int kPatienceMilliseconds = 600;

  explicit Notice(QWidget* parent);

  /// Shows that `text` is going on.
  void ShowProgress(const QString& text);
  /// Shows a problem, until it is dismissed or something else is shown.
  void ShowProblem(const QString& text, NoticeChoices choices = {});
  /// Takes the progress away; a problem stays.
  void EndProgress();
  void Dismiss();

  bool ShowsProblem() const { return isVisible() && problem_; }
  /// Closes the problem as its button does; false where there is none that can be closed.
  bool Close();

 Q_SIGNALS:
  void Retried();
  void LogInWanted();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Appear(const QString& text);
  void Place();

  QLabel* icon_;
  QLabel* text_;
  QProgressBar* progress_;
  QPushButton* log_in_;
  QPushButton* retry_;
  QPushButton* dismiss_;
  bool problem_ = false;
  NoticeChoices choices_;
};

}  // namespace orbelcast
