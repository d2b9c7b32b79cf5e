// README.md shows lines of this program: a window with the player.
#include <orbelcast/player_widget.h>

#include <QApplication>

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  orbelcast::PlayerWidget player;
  player.setServer("127.0.0.1");
  player.setPort("8080");
  player.setDevice("2");
  player.show();
  return QApplication::exec();
}
