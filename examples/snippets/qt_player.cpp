// README.md shows lines of this program: a window with the player.
#include <QApplication>

#include "adapters/qt/player_widget.h"
#include "assembly_qt/qt_platform.h"

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  orbelcast::QtPlatform platform;
  orbelcast::PlayerWidget player(platform.Get());
  player.setServer("127.0.0.1");
  player.setPort("8080");
  player.setDevice("2");
  player.show();
  return QApplication::exec();
}
