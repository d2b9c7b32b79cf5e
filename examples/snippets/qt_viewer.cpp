// README.md shows this program: a window with one camera.
#include <orbelcast/video_server_push_widget.h>

#include <QApplication>

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  orbelcast::VideoServerPushWidget viewer;
  viewer.resize(640, 480);
  viewer.show();
  viewer.setFrameRate(25);
  viewer.setUrl("http://127.0.0.1:8080/live/1");
  return QApplication::exec();
}
