// The player: one camera in a window.

#include <QApplication>
#include <QTimer>
#include <iostream>

#include "assembly_qt/qt_platform.h"
#include "player_options.h"
#include "viewer_window.h"

namespace {

/// 0: all is well; 1: the screenshot could not be written; 2: the call was wrong (CLI11's own codes are larger).
enum ExitStatus { kGood = 0, kFailed = 1, kBadUsage = 2 };

}  // namespace

// NOLINTNEXTLINE(bugprone-exception-escape): what escapes is a lack of memory, which ends the program.
int main(int argc, char** argv) {
  orbelcast::PlayerOptions options;
  CLI::App command("Shows a camera in a window. F11 full screen, F5 connect again, Escape ends.", "orbelcast-player");
  orbelcast::AddPlayerOptions(command, options);
  try {
    command.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return command.exit(error) == 0 ? kGood : kBadUsage;
  }

  QApplication application(argc, argv);
  QApplication::setApplicationName(QStringLiteral("orbelcast-player"));
  QApplication::setApplicationDisplayName(QString());
  orbelcast::QtPlatform platform;
  orbelcast::ViewerWindow window(platform.Get(), options);
  window.show();
  window.Start();
  bool screenshot_failed = false;
  if (options.quit_after) {
    QTimer::singleShot(static_cast<int>(*options.quit_after * 1000), &window, [&] {
      if (!options.screenshot.empty()) {
        screenshot_failed = !window.grab().save(QString::fromStdString(options.screenshot));
      }
      window.close();
    });
  }
  const int status = QApplication::exec();
  if (screenshot_failed) {
    std::cerr << "orbelcast-player: cannot write the screenshot to " << options.screenshot << '\n';
    return kFailed;
  }
  return status;
}
