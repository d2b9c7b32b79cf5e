#include "player/save_name.h"

#include <QCoreApplication>

#include "player/user_control1.h"

namespace orbelcast {

QString SaveName(PlayerWidget& player, const QString& camera, const Badges& badges) {
  const VideoServerPush& viewer = *player.Control().VS;
  // Pictures of several cameras have no time of their own.
  const bool several = viewer.MultiCam.Enabled;
  const QDateTime now = QDateTime::currentDateTime();
  const QDateTime time = several ? now : badges.PictureTime().value_or(now);
  return QStringLiteral("%1 %2").arg(several ? QCoreApplication::translate("SaveName", "Several cameras") : camera,
                                     time.toString(QStringLiteral("yyyy-MM-dd HH-mm-ss")));
}

}  // namespace orbelcast
