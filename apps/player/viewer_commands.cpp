#include "player/viewer_commands.h"

#include <QBuffer>
#include <QDateTime>
#include <QFileDialog>
#include <QObject>
#include <algorithm>
#include <iterator>

#include "adapters/posix/named_file.h"
#include "player/camera_show.h"
#include "viewer/video_server_push.h"

namespace orbelcast {

namespace {

/// A snapshot's content: of one camera the JPEG as the server sent it, of a grid all of it as PNG.
struct Snapshot {
  QByteArray bytes;
  QString ending;
};

Snapshot TakeSnapshot(VideoServerPushWidget& viewer) {
  if (!viewer.Control().MultiCam.Enabled) return {viewer.GetPictureArray(), QStringLiteral(".jpg")};
  Snapshot grid{.bytes = {}, .ending = QStringLiteral(".png")};
  QBuffer buffer(&grid.bytes);
  viewer.findChild<QWidget*>(QStringLiteral("VideoStream"))->grab().save(&buffer, "PNG");
  return grid;
}

/// The picture of the moment of the command, however long the question for a name takes.
void SaveSnapshot(VideoServerPushWidget& viewer, const std::function<void(const QString&)>& tell) {
  const Snapshot snapshot = TakeSnapshot(viewer);
  const QString proposed =
      QObject::tr("camera %1").arg(QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH.mm.ss")));
  const QString name =
      QFileDialog::getSaveFileName(viewer.window(), QObject::tr("Snapshot"), proposed + snapshot.ending,
                                   QObject::tr("Pictures (*%1)").arg(snapshot.ending));
  if (name.isEmpty()) return;
  const std::string problem =
      WriteNamedFile(name.toStdString(), {reinterpret_cast<const std::uint8_t*>(snapshot.bytes.constData()),
                                          static_cast<std::size_t>(snapshot.bytes.size())});
  if (!problem.empty()) tell(QObject::tr("The picture could not be saved: %1.").arg(QString::fromStdString(problem)));
}

void StopOrConnect(VideoServerPushWidget& viewer, const std::function<void()>& connect) {
  if (viewer.Control().MasterTimer.Enabled) {
    viewer.StopGettingFrames();
  } else {
    connect();
  }
}

std::vector<KeyCommand> CameraCommands(const ViewerWindowActions& actions) {
  if (!actions.show_camera) return {};
  const auto show = actions.show_camera;
  return {{.keys = {Qt::Key_1, Qt::Key_2, Qt::Key_3, Qt::Key_4, Qt::Key_5, Qt::Key_6, Qt::Key_7, Qt::Key_8, Qt::Key_9},
           .name = QObject::tr("Camera"),
           .does = QObject::tr("Show that camera alone, as a double click on it does"),
           .run = [show](int camera) { show(camera); },
           .shown = QObject::tr("1 to 9")},
          {.keys = {Qt::Key_0},
           .name = QObject::tr("All cameras"),
           .does = QObject::tr("Show all cameras, as a double click on one alone does"),
           .run = [show](int) { show(CameraShow::kAll); }}};
}

KeyCommand Quit(const ViewerWindowActions& actions) {
  return {.keys = {Qt::CTRL | Qt::Key_Q},
          .name = QObject::tr("Quit"),
          .does = QObject::tr("End the viewer"),
          .run = [quit = actions.quit](int) { quit(); }};
}

}  // namespace

std::vector<KeyCommand> ViewerCommands(VideoServerPushWidget& viewer, const ViewerWindowActions& actions) {
  const auto is_grid = [&viewer] { return viewer.Control().MultiCam.Enabled.Get(); };
  std::vector<KeyCommand> commands{
      {.keys = {Qt::Key_Space},
       .name = QObject::tr("Stop / Live"),
       .does = QObject::tr("Stop the stream; show the live picture again"),
       .run = [&viewer, connect = actions.connect](int) { StopOrConnect(viewer, connect); },
       .allowed = [is_grid] { return !is_grid(); }},
      {.keys = {Qt::Key_S},
       .name = QObject::tr("Snapshot…"),
       .does = QObject::tr("Save the picture"),
       .run = [&viewer, tell = actions.tell](int) { SaveSnapshot(viewer, tell); },
       .allowed = [&viewer] { return !viewer.GetPictureArray().isEmpty(); }},
      {.keys = {Qt::Key_F},
       .name = QObject::tr("Full screen"),
       .does = QObject::tr("The window over the whole screen, and back"),
       .run = [fill = actions.fill_screen](int) { fill(); },
       .shown = QObject::tr("F, F11")},
      {.keys = {Qt::Key_I},
       .name = QObject::tr("Information"),
       .does = QObject::tr("Show or hide the strip below the picture"),
       .run = [&viewer](int) { viewer.setShowBandwidth(!viewer.ShowBandwidth()); },
       .allowed = [is_grid] { return !is_grid(); }},
  };
  std::ranges::move(CameraCommands(actions), std::back_inserter(commands));
  const std::vector<KeyCommand> rest{
      {},
      {.keys = {Qt::Key_F5},
       .name = QObject::tr("Connect again"),
       .does = QObject::tr("Connect again"),
       .run = [connect = actions.connect](int) { connect(); }},
      {.keys = {Qt::Key_Escape},
       .name = QObject::tr("Back"),
       .does = QObject::tr("Leave full screen, or end the viewer")},
      Quit(actions),
  };
  std::ranges::copy(rest, std::back_inserter(commands));
  return commands;
}

std::vector<KeyCommand> KioskCommands(const ViewerWindowActions& actions) {
  std::vector<KeyCommand> commands = CameraCommands(actions);
  commands.push_back(Quit(actions));
  return commands;
}

}  // namespace orbelcast
