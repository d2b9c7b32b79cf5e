// A Qt application that watches one camera: its picture, its rate, where something moves, whether it is dark there, and
// a button that saves the picture.
//
//     cmake -S examples/qt -B watch && cmake --build watch
//     watch/example-qt http://127.0.0.1:8080/live/1

#include <orbelcast/video_server_push_widget.h>

#include <QApplication>
#include <QFileDialog>
#include <QLabel>
#include <QMainWindow>
#include <QStatusBar>
#include <QToolBar>

using orbelcast::VideoServerPushWidget;

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  if (QApplication::arguments().size() != 2) {
    qCritical("usage: %s ADDRESS", argv[0]);
    return 2;
  }
  const QString address = QApplication::arguments().at(1);

  QMainWindow window;
  window.setWindowTitle(address);
  window.resize(640, 540);
  auto* const viewer = new VideoServerPushWidget(&window);
  window.setCentralWidget(viewer);
  const auto say = [&window](const QString& text) { window.statusBar()->showMessage(text); };

  viewer->setFrameRate(10);
  viewer->setMotionArea_x2(100);  // hundredths: the whole picture
  viewer->setMotionArea_Y2(100);
  viewer->setMotionDetector(true);

  QObject::connect(viewer, &VideoServerPushWidget::StreamInfo, &window, [say](int bytes, int pictures) {
    say(QStringLiteral("%1 pictures, %2 kB a second").arg(pictures).arg(bytes / 1000));
  });
  QObject::connect(viewer, &VideoServerPushWidget::MotionDetected, &window, [say](int x1, int y1, int x2, int y2) {
    say(QStringLiteral("Something moves between %1 %, %2 % and %3 %, %4 %").arg(x1).arg(y1).arg(x2).arg(y2));
  });
  QObject::connect(viewer, &VideoServerPushWidget::ConnectionFailed, &window, [say] { say("No answer"); });
  QObject::connect(viewer, &VideoServerPushWidget::ConnectionBroken, &window, [say] { say("The camera is gone"); });

  auto* const light = new QLabel(&window);
  window.statusBar()->addPermanentWidget(light);
  QObject::connect(viewer, &VideoServerPushWidget::NewFrame, &window, [viewer, light] {
    const QImage picture = viewer->GetPicture();
    if (!picture.isNull()) light->setText(picture.scaled(1, 1).pixelColor(0, 0).lightness() < 50 ? "dark" : "light");
  });

  window.addToolBar("Camera")->addAction("Save picture…", [&window, viewer] {
    const QString name = QFileDialog::getSaveFileName(&window, "Save picture", "picture.jpg", "JPEG (*.jpg)");
    if (!name.isEmpty()) viewer->SaveImage(name);
  });

  viewer->setUrl(address);
  window.show();
  return QApplication::exec();
}
