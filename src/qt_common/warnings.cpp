#include "qt_common/warnings.h"

#include <QLoggingCategory>
#include <QString>

#include "qt_common/qt_texts.h"

namespace orbelcast {

namespace {

Q_LOGGING_CATEGORY(viewer_log, "orbelcast.viewer")

/// The scheme and the server of an address, whatever it looks like.
QString WithoutSecrets(const QString& address) {
  const auto scheme = address.indexOf(QLatin1String("://"));
  const auto server = scheme < 0 ? 0 : scheme + 3;
  const auto end = address.indexOf(QLatin1Char('/'), server);
  const QString authority = address.mid(server, end < 0 ? -1 : end - server);
  return address.left(server) + authority.mid(authority.lastIndexOf(QLatin1Char('@')) + 1) +
         (end < 0 ? QString() : QStringLiteral("/…"));
}

}  // namespace

Connection WarnOfIgnoredAddresses(VideoServerPush& control) {
  return control.Events.AddressIgnored.Connect([](const std::string& address) {
    if (address.empty()) {
      qCWarning(viewer_log, "Nothing is connected: there is no address.");
    } else if (!QString::fromStdString(address).startsWith(QLatin1String("http://"), Qt::CaseInsensitive)) {
      qCWarning(viewer_log, "The address \"%s\" is ignored: it does not begin with \"http://\".",
                qUtf8Printable(WithoutSecrets(ToLine(address))));
    } else {
      qCWarning(viewer_log, "The address \"%s\" is ignored: no line end (CR LF) follows it.",
                qUtf8Printable(WithoutSecrets(ToLine(address))));
    }
  });
}

}  // namespace orbelcast
