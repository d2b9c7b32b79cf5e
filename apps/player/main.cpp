// The player: a camera server's cameras, with everything that a person at a desk needs; or one camera in a window.

#include <QApplication>
#include <QTimer>
#include <iostream>
#include <memory>

#include "assembly_qt/qt_platform.h"
#include "player_options.h"
#include "player_window.h"
#include "viewer_window.h"

namespace {

/// 0: all is well; 1: the screenshot could not be written; 2: the call was wrong (CLI11's own codes are larger).
enum ExitStatus { kGood = 0, kFailed = 1, kBadUsage = 2 };

std::unique_ptr<QMainWindow> MakeWindow(orbelcast::QtPlatform& platform, const orbelcast::PlayerOptions& options) {
  if (!options.ShowsOnePicture()) {
    return std::make_unique<orbelcast::PlayerWindow>(platform.Get(), platform.Requests(), options);
  }
  auto window = std::make_unique<orbelcast::ViewerWindow>(platform.Get(), options);
  window->Start();
  return window;
}

}  // namespace

// NOLINTNEXTLINE(bugprone-exception-escape): what escapes is a lack of memory, which ends the program.
int main(int argc, char** argv) {
  orbelcast::PlayerOptions options;
  CLI::App command(
      "Shows a camera server's cameras, or one camera, in a window. F11 fills the screen and Escape goes back, F5 "
      "connects again, Ctrl+Q ends; so does Escape where the viewer is alone.",
      "orbelcast-player");
  orbelcast::AddPlayerOptions(command, options);
  try {
    command.parse(argc, argv);
    if (options.camera.empty() && options.live_url.empty() && options.mosaic.empty()) {
      throw CLI::RequiredError("a camera server, an address, --live-url or --mosaic");
    }
  } catch (const CLI::ParseError& error) {
    return command.exit(error) == 0 ? kGood : kBadUsage;
  }

  QApplication application(argc, argv);
  QApplication::setOrganizationName(QStringLiteral("Orbelcast"));
  QApplication::setApplicationName(QStringLiteral("Orbelcast"));
  // Otherwise Qt writes it behind the title of every window.
  QApplication::setApplicationDisplayName(QString());
  orbelcast::QtPlatform platform;
  const std::unique_ptr<QMainWindow> window = MakeWindow(platform, options);
  window->show();
  bool screenshot_failed = false;
  if (options.quit_after) {
    QTimer::singleShot(static_cast<int>(*options.quit_after * 1000), window.get(), [&] {
      if (!options.screenshot.empty()) {
        screenshot_failed = !window->grab().save(QString::fromStdString(options.screenshot));
      }
      QApplication::quit();
    });
  }
  const int status = QApplication::exec();
  if (screenshot_failed) {
    std::cerr << "orbelcast-player: cannot write the screenshot to " << options.screenshot << '\n';
    return kFailed;
  }
  return status;
}
