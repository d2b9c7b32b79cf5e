// A dialog that was made in Qt Designer: a player beside a viewer. The form names the player's server and the viewer's
// camera, so that both show something without code; they hold where the command line gives no others.
//
//     cmake -S examples/form -B form && cmake --build form
//     form/example-form [HOST PORT]

#include <QApplication>
#include <QDialog>

#include "ui_entrance.h"

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  QDialog dialog;
  Ui::Entrance form;
  form.setupUi(&dialog);

  const QStringList arguments = QApplication::arguments();
  if (arguments.size() == 3) {
    form.player->setServer(arguments[1]);
    form.player->setPort(arguments[2]);
    form.door->setUrl(QStringLiteral("http://%1:%2/live/2").arg(arguments[1], arguments[2]));
  }
  // A login, which no form should hold.
  form.player->setUsername(qEnvironmentVariable("ORBELCAST_USER"));
  form.player->setPassword(qEnvironmentVariable("ORBELCAST_PASSWORD"));

  QObject::connect(form.door, &orbelcast::VideoServerPushWidget::MotionDetected, &dialog,
                   [&form] { form.news->setText("Somebody is at the door"); });
  QObject::connect(form.door, &orbelcast::VideoServerPushWidget::ConnectionFailed, &dialog,
                   [&form] { form.news->setText("The door's camera does not answer"); });

  dialog.show();
  return QApplication::exec();
}
