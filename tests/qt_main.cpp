// The Qt tests need an application; no screen.

#include <gmock/gmock.h>

#include <QApplication>
#include <QTemporaryDir>

#ifdef ORBELCAST_ASAN
#include <sanitizer/lsan_interface.h>
#endif

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  // The settings that the tests store are not the user's.
  const QTemporaryDir settings;
  qputenv("XDG_CONFIG_HOME", settings.path().toLocal8Bit());
  testing::InitGoogleMock(&argc, argv);
  int result = 0;
  {
    const QApplication application(argc, argv);
    result = RUN_ALL_TESTS();
  }
#ifdef ORBELCAST_ASAN
  // Now rather than at the process's end: there the toolkit's pooled threads may still hold what they are about to
  // free.
  __lsan_do_leak_check();
#endif
  return result;
}
