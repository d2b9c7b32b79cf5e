// The player: a camera server's cameras, with everything that a person at a desk needs; or one camera in a window.
//
// player_window.h and viewer_window.h are the two windows, notice.h what both tell a person, server_dialog.h the
// question for a server where none was named, key_commands.h what their keys do, player_options.h the command line.

#include <fcntl.h>
#include <unistd.h>
#include <QApplication>
#include <QBuffer>
#include <QIcon>
#include <QTimer>
#include <algorithm>
#include <array>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "adapters/posix/named_file.h"
#include "common/command_line.h"
#include "common/exit_status.h"
#include "common/program.h"
#include "common/stop_signals.h"
#include "player/player_options.h"
#include "player/player_window.h"
#include "player/server_dialog.h"
#include "player/viewer_window.h"
#include "toolkit/version.h"
#include "widgets/qt_platform.h"

namespace {

/// Without one Qt would end the program in its own, unfriendly way.
bool HasDisplay() {
  constexpr std::array kVariables{"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"};
  return std::ranges::any_of(kVariables, [](const char* name) { return !qEnvironmentVariableIsEmpty(name); });
}

/// Files and sockets that the program needs beside its cameras' and its toolkit's; with fewer, both fail in ways of
/// their own.
constexpr int kLeastDescriptors = 64;

/// Whether the process may open so many more.
bool HasDescriptors() {
  std::vector<int> opened;
  for (int i = 0; i < kLeastDescriptors; ++i) {
    const int descriptor = ::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 0);
    if (descriptor < 0) break;
    opened.push_back(descriptor);
  }
  for (const int descriptor : opened) ::close(descriptor);
  return opened.size() == kLeastDescriptors;
}

/// The reason of a failure, for people; empty where the picture of the window is in the file.
std::string SaveScreenshot(QWidget& window, const std::string& file) {
  QByteArray png;
  QBuffer buffer(&png);
  if (!window.grab().save(&buffer, "PNG")) return "there is no memory for it";
  return orbelcast::WriteNamedFile(
      file, {reinterpret_cast<const std::uint8_t*>(png.constData()), static_cast<std::size_t>(png.size())});
}

std::unique_ptr<QMainWindow> MakeWindow(orbelcast::QtPlatform& platform, const orbelcast::PlayerOptions& options) {
  if (!options.ShowsViewer()) {
    return std::make_unique<orbelcast::PlayerWindow>(platform, options);
  }
  auto window = std::make_unique<orbelcast::ViewerWindow>(platform.Get(), options);
  window->Start();
  return window;
}

/// Ends the program whatever windows are open. One that is asked to close first, as quit() does, may refuse.
void End(QWidget& window) {
  window.close();
  QApplication::exit();
}

/// Fills the options. The status that the program is to end with, if it is to end.
std::optional<int> ReadOptions(int argc, char** argv, orbelcast::PlayerOptions& options) {
  orbelcast::CommandLine command(
      "orbelcast-player",
      "Shows a camera server's cameras, or one camera, in a window. The key ? lists its keys; F11 fills the screen and "
      "Escape goes back, F5 connects again, Ctrl+Q ends; so does Escape where the viewer is alone.");
  command.Version(orbelcast::VersionText());
  orbelcast::AddPlayerOptions(command, options);
  command.Footer(
      "Such as:\n"
      "  orbelcast-player 192.168.1.20:8080 --credentials my-login\n"
      "  orbelcast-player http://192.168.1.20:8080/live/1\n"
      "  orbelcast-player 192.168.1.20:8080 --kiosk --tour 10\n\n"
      "Exit status: 0 the window was closed; 1 there is no display, or the screenshot could\n"
      "not be written; 2 wrong usage. 'orbelcast doctor' finds out why a server or a camera cannot be seen.");
  command.OnRight([&options] {
    if (const std::string problem = orbelcast::CheckTogether(options); !problem.empty())
      throw orbelcast::UsageError(problem);
    if (options.NamesACamera() || options.ask) return;
    throw orbelcast::UsageError("a camera server, an address, --live-url, --mosaic or --ask is required");
  });
  return command.Read(argc, argv);
}

/// False where the program cannot show a window, which it tells.
bool CanShow() {
  if (!HasDisplay()) {
    std::cerr
        << "orbelcast-player: there is no display to show a window on; run it on a desktop. 'orbelcast watch' and "
           "'orbelcast snapshot' need none.\n";
    return false;
  }
  if (!HasDescriptors()) {
    std::cerr << "orbelcast-player: it may open too few files and connections; raise the limit:  ulimit -n 1024\n";
    return false;
  }
  return true;
}

void NameApplication() {
  QApplication::setOrganizationName(QStringLiteral("Orbelcast"));
  QApplication::setApplicationName(QStringLiteral("Orbelcast"));
  // Otherwise Qt appends it to the title of every window.
  QApplication::setApplicationDisplayName(QString());
  // By it desktops find the icon and the name of the window's program.
  QGuiApplication::setDesktopFileName(QStringLiteral("orbelcast-player"));
  QApplication::setWindowIcon(QIcon(QStringLiteral(":/orbelcast/player/icon.png")));
}

int Run(int argc, char** argv) {
  orbelcast::PlayerOptions options;
  if (const auto status = ReadOptions(argc, argv, options)) return *status;
  if (!CanShow()) return orbelcast::kFailed;

  QApplication application(argc, argv);
  NameApplication();
  if (!options.NamesACamera()) {
    orbelcast::ServerDialog dialog(options);
    if (dialog.exec() != QDialog::Accepted) return EXIT_SUCCESS;
    dialog.Fill(options);
  }
  orbelcast::QtPlatform platform;
  const std::unique_ptr<QMainWindow> window = MakeWindow(platform, options);
  window->show();
  const orbelcast::StopSignals stop(platform.Get().loop.Queue(), [&window] { End(*window); });
  std::string problem;
  if (options.quit_after) {
    QTimer::singleShot(static_cast<int>(*options.quit_after * 1000), window.get(), [&] {
      if (!options.screenshot.empty()) problem = SaveScreenshot(*window, options.screenshot);
      End(*window);
    });
  }
  const int status = QApplication::exec();
  if (!problem.empty()) {
    std::cerr << "orbelcast-player: cannot write the screenshot to " << options.screenshot << ": " << problem << '\n';
    return orbelcast::kFailed;
  }
  return status;
}

}  // namespace

// NOLINTNEXTLINE(bugprone-exception-escape): what escapes is a lack of memory, which ends the program.
int main(int argc, char** argv) {
  orbelcast::SurviveFailedWrites();
  return orbelcast::EndOutput("orbelcast-player", Run(argc, argv));
}
