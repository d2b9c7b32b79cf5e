// The first picture in a Qt window: qt ADDRESS
#include <orbelcast/video_server_push_widget.h>

#include <QApplication>

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  orbelcast::VideoServerPushWidget viewer;
  viewer.show();
  viewer.RunHandler([&] { viewer.Connect(argv[1]); });
  return QApplication::exec();
}
