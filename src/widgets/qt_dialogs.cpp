#include "widgets/qt_dialogs.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QInputDialog>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QScopeGuard>
#include <QSpinBox>
#include <QStandardPaths>
#include <algorithm>

#include "qt_common/qt_texts.h"

namespace orbelcast {

namespace {

/// The compression dialog's numbers when its boxes are checked: a key frame every second at 25 pictures a second, and
/// the data rate of a picture of 640 × 480 in good quality.
constexpr int kUsualKeyFrameEvery = 25;
constexpr int kMostKeyFrameEvery = 10'000;  ///< The largest value of its box.
constexpr int kUsualKilobytesPerSecond = 300;
constexpr int kMostKilobytesPerSecond = 1'000'000;  ///< The largest value of its box.

/// The codec to begin with: clips of it are small, and everything plays them.
constexpr const char* kUsualCodec = "MPEG-4";

/// Pixels: room for a sentence.
constexpr int kTextDialogWidth = 360;

QString TitleOr(const std::string& title) {
  return title.empty() ? QApplication::applicationName() : ToLine(title);
}

/// The window that a question belongs to: the active one; where the desktop tells none, the one opened last.
QWidget* Asker() {
  if (QWidget* active = QApplication::activeWindow()) return active;
  if (QWidget* modal = QApplication::activeModalWidget()) return modal;
  const QWidgetList windows = QApplication::topLevelWidgets();
  const auto shown = std::ranges::find_if(windows, [](QWidget* each) { return each->isVisible(); });
  return shown == windows.end() ? nullptr : *shown;
}

/// Qt's filters of pairs of a description and a pattern, and the ending of the first pattern.
struct Filters {
  QStringList names;
  QString ending;
};

Filters FiltersOf(const std::string& filter) {
  Filters filters;
  const QStringList parts = ToLine(filter).split(QLatin1Char('|'));
  for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
    const QString& pattern = parts[i + 1];
    const bool named = parts[i].contains(QLatin1Char('('));
    filters.names.push_back(named ? parts[i] : QStringLiteral("%1 (%2)").arg(parts[i], pattern));
    if (filters.ending.isEmpty()) filters.ending = QFileInfo(pattern).suffix();
  }
  return filters;
}

/// The longest name that is proposed, in characters: with an ending a valid name of a file, whatever its bytes.
constexpr int kProposedNameLength = 80;

/// A text as the name of a file, on this system and on those that a file may be taken to.
QString FileNameOf(QString text) {
  for (QChar& each : text) {
    if (!each.isPrint() || QStringLiteral("/\\:*?\"<>|").contains(each)) each = QLatin1Char('-');
  }
  text = text.simplified().left(kProposedNameLength);
  // Otherwise hidden.
  return text.startsWith(QLatin1Char('.')) ? QLatin1Char('-') + text : text;
}

/// A number that takes part only while its box is checked.
class OptionalNumber final : public QWidget {
 public:
  OptionalNumber(const QString& question, const QString& unit, int usual, int most) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    wanted_ = new QCheckBox(question);
    number_ = new QSpinBox;
    number_->setRange(1, most);
    number_->setValue(usual);
    number_->setSuffix(QLatin1Char(' ') + unit);
    number_->setEnabled(false);
    number_->setAccessibleName(question);
    row->addWidget(wanted_, 1);
    row->addWidget(number_);
    QObject::connect(wanted_, &QCheckBox::toggled, number_, &QWidget::setEnabled);
  }

  int Value() const { return wanted_->isChecked() ? number_->value() : 0; }

 private:
  QCheckBox* wanted_;
  QSpinBox* number_;
};

}  // namespace

int QtDialogs::Run(QDialog* dialog) {
  if (loop_ == nullptr) return QDialog::Rejected;
  const QPointer watch(dialog);
  Completion closed;
  int result = QDialog::Rejected;
  // The listeners end with this call, however it ends.
  const QObject here;
  QObject::connect(dialog, &QDialog::finished, &here, [&](int code) {
    result = code;
    closed.Complete();
  });
  QObject::connect(dialog, &QObject::destroyed, &here, [&] { closed.Complete(); });
  dialog->open();
  loop_->Wait(closed);
  return watch ? result : QDialog::Rejected;
}

std::optional<std::string> QtDialogs::AskSaveName(const SaveRequest& request) {
  if (!QFileInfo(folder_).isDir()) folder_ = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
  if (!QFileInfo(folder_).isDir()) folder_ = QStandardPaths::writableLocation(QStandardPaths::HomeLocation);
  const Filters filters = FiltersOf(request.filter);
  const QPointer dialog(new QFileDialog(Asker(), TitleOr(request.title), folder_));
  const auto end = qScopeGuard([&] { delete dialog; });
  dialog->setAcceptMode(QFileDialog::AcceptSave);
  dialog->setFileMode(QFileDialog::AnyFile);
  dialog->setOption(QFileDialog::DontConfirmOverwrite);
  dialog->setNameFilters(filters.names);
  dialog->setDefaultSuffix(filters.ending);
  const QString proposed = ProposeName ? FileNameOf(ProposeName()) : QString();
  if (!proposed.isEmpty()) dialog->selectFile(proposed + QLatin1Char('.') + filters.ending);
  if (Run(dialog) != QDialog::Accepted || dialog->selectedFiles().isEmpty()) return std::nullopt;
  const QString chosen = dialog->selectedFiles().first();
  folder_ = QFileInfo(chosen).absolutePath();
  std::string name = FromText(chosen);
  NameChosen(request, name);
  return name;
}

Dialogs::Answer QtDialogs::ShowMessage(const MessageRequest& request) {
  Asks();
  const Answer answer = ShowBox(request);
  Answered(answer);
  return answer;
}

Dialogs::Answer QtDialogs::ShowBox(const MessageRequest& request) {
  const bool asks = request.buttons == Buttons::kYesNo;
  const QPointer dialog(new QMessageBox(Asker()));
  const auto end = qScopeGuard([&] { delete dialog; });
  dialog->setWindowTitle(TitleOr(request.title));
  dialog->setTextFormat(Qt::PlainText);
  dialog->setText(ToText(request.text));
  dialog->setIcon(request.icon == Icon::kExclamation   ? QMessageBox::Warning
                  : request.icon == Icon::kInformation ? QMessageBox::Information
                                                       : QMessageBox::NoIcon);
  dialog->setStandardButtons(asks ? QMessageBox::Yes | QMessageBox::No : QMessageBox::Ok);
  const int result = Run(dialog);
  if (!asks) return Answer::kOk;
  return result == QMessageBox::Yes ? Answer::kYes : Answer::kNo;
}

std::string QtDialogs::AskText(const InputRequest& request) {
  const QPointer dialog(new QInputDialog(Asker()));
  const auto end = qScopeGuard([&] { delete dialog; });
  dialog->setWindowTitle(TitleOr(request.title));
  dialog->setLabelText(ToText(request.prompt).toHtmlEscaped());
  dialog->resize(kTextDialogWidth, dialog->sizeHint().height());
  return Run(dialog) == QDialog::Accepted ? FromText(dialog->textValue()) : std::string();
}

std::optional<Dialogs::Compression> QtDialogs::ChooseCompression(const CompressionRequest& request) {
  const QPointer dialog(new QDialog(Asker()));
  const auto end = qScopeGuard([&] { delete dialog; });
  dialog->setWindowTitle(QObject::tr("Video compression"));
  auto* codecs = new QComboBox;
  for (const std::string& codec : request.codecs) codecs->addItem(ToLine(codec));
  // The first one where it is not offered.
  codecs->setCurrentText(QLatin1String(kUsualCodec));
  auto* key_frames = new OptionalNumber(QObject::tr("&Key frame every"), QObject::tr("frames"), kUsualKeyFrameEvery,
                                        kMostKeyFrameEvery);
  key_frames->setVisible(request.key_frames);
  auto* data_rate = new OptionalNumber(QObject::tr("&Data rate"), QObject::tr("KB/s"), kUsualKilobytesPerSecond,
                                       kMostKilobytesPerSecond);
  data_rate->setVisible(request.data_rate);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
  buttons->button(QDialogButtonBox::Ok)->setEnabled(codecs->count() > 0);
  auto* layout = new QFormLayout(dialog);
  layout->setSizeConstraint(QLayout::SetFixedSize);
  layout->addRow(QObject::tr("&Compressor:"), codecs);
  layout->addRow(key_frames);
  layout->addRow(data_rate);
  layout->addRow(buttons);
  QObject::connect(buttons, &QDialogButtonBox::accepted, dialog, &QDialog::accept);
  QObject::connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
  if (Run(dialog) != QDialog::Accepted || codecs->currentIndex() < 0) return std::nullopt;
  // The codec's name as it was given, not as it is shown.
  return Compression{.codec = request.codecs[static_cast<std::size_t>(codecs->currentIndex())],
                     .key_frame_every = key_frames->Value(),
                     .kilobytes_per_second = data_rate->Value()};
}

void QtDialogs::Beep() {
  QApplication::beep();
}

}  // namespace orbelcast
