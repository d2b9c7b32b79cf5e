#include "qt_common/qt_texts.h"

namespace orbelcast {

QString ToText(const std::string& text) {
  QString shown = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
  shown.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  for (QChar& character : shown) {
    const bool kept = character == QLatin1Char('\n') || character == QLatin1Char('\t');
    if (character.category() == QChar::Other_Control && !kept) {
      character = QChar::ReplacementCharacter;
    }
  }
  return shown;
}

QString ToLine(const std::string& text) {
  return ToText(text).replace(QLatin1Char('\n'), QLatin1Char(' ')).replace(QLatin1Char('\t'), QLatin1Char(' '));
}

std::string FromText(const QString& text) {
  return text.toStdString();
}

}  // namespace orbelcast
