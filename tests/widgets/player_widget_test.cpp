// The player in a window, driven with keys and mouse against a server on the loopback; no screen.

#include "orbelcast/player_widget.h"

#include <gmock/gmock.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QFile>
#include <QFileDialog>
#include <QInputDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>
#include <QVBoxLayout>
#include <QWheelEvent>
#include <algorithm>
#include <atomic>

#include "fakes/scripted_server.h"
#include "fakes/small_jpeg.h"
#include "player/user_control1.h"
#include "widgets/full_screen_widget.h"
#include "widgets/qt_platform.h"

namespace orbelcast {
namespace {

using fakes::AnswerBytes;
using fakes::ScriptedServer;
using fakes::TargetOf;
using testing::HasSubstr;

/// Waits for what `done` tells; far longer than anything here takes.
bool Until(const std::function<bool()>& done) {
  constexpr int kMilliseconds = 20'000;
  return QTest::qWaitFor(done, kMilliseconds);
}

/// A place of its own for what the player keeps.
struct OwnFolder {
  OwnFolder() {
    qputenv("ORBELCAST_REGISTRY", folder.filePath(QStringLiteral("registry.json")).toLocal8Bit());
    qputenv("ORBELCAST_MODULE_FOLDER", folder.path().toLocal8Bit());
  }
  QTemporaryDir folder;
};

class PlayerWidgetTest : public testing::Test {
 protected:
  /// A camera server with three cameras.
  void Answer(const std::string& request, ScriptedServer::Connection& to) {
    const std::string target = TargetOf(request);
    if (target.find("$rdxviewer") != std::string::npos) {
      if (slow) to.Never();
      std::string text = "RDXVIEWER\r\nSNM:Harbour\r\n";
      for (const char* camera : {"d1\tDoor\t", "d2\tYard\t", "d3\tRoof\t"}) {
        text += "CAM:" + std::string(camera) + server.Url("/live/") + camera[1] + "\r\n";
      }
      text += "ALT:1\tFire\r\nALT:2\tFlood\r\nHWO:\tLamp\t1\r\nHWI:\tGate\t0\r\n\r\n";
      to.Send(AnswerBytes(200, text));
    } else if (target.find("activitylog") != std::string::npos) {
      to.Send(AnswerBytes(200, "10:00,Door,opened\r\n\r\n10:01,<b>Door</b>,closed\r\n"));
    } else {
      to.Send(AnswerBytes(200, fakes::SmallJpeg(), "RC_TCR: 20050317090544\r\n"));
    }
  }

  void Open() {
    window = std::make_unique<QWidget>();
    auto* layout = new QVBoxLayout(window.get());
    layout->setContentsMargins(0, 0, 0, 0);
    player = new PlayerWidget(platform.Get());
    layout->addWidget(player);
    player->setServer(QStringLiteral("127.0.0.1"));
    player->setPort(QString::number(server.Port()));
    player->setUsername(QStringLiteral("u"));
    player->setPassword(QStringLiteral("secret"));
    player->setExtendedControls(QStringLiteral("Yes"));
    window->resize(640, 618);
    bool loaded = false;
    QObject::connect(player, &PlayerWidget::Loaded, window.get(), [&loaded] { loaded = true; });
    window->show();
    window->activateWindow();
    ASSERT_TRUE(Until([&] { return slow ? platform.Requests().Waiting() == 1 : loaded; }));
    QObject::disconnect(player, &PlayerWidget::Loaded, window.get(), nullptr);
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
  }

  template <typename Widget>
  Widget* Child(const char* name, QWidget* in = nullptr) {
    auto* child = (in != nullptr ? in : window.get())->findChild<Widget*>(QString::fromLatin1(name));
    EXPECT_NE(child, nullptr) << name;
    return child;
  }
  static void Click(QWidget* widget) { QTest::mouseClick(widget, Qt::LeftButton); }
  static void Click(QListWidget* list, int row, Qt::KeyboardModifier key = Qt::NoModifier) {
    QTest::mouseClick(list->viewport(), Qt::LeftButton, key, list->visualItemRect(list->item(row)).center());
  }
  void Click(int tool) { Click(Child<QWidget>(("Player(" + std::to_string(tool) + ")").c_str())); }
  /// Types in place of what the box holds.
  static void Retype(QLineEdit* box, const char* text) {
    box->setFocus(Qt::TabFocusReason);
    QTest::keyClick(box, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(box, text);
  }
  /// Waits for a dialog of that kind and returns it.
  template <typename Dialog>
  static Dialog* Shown(const char* name = nullptr) {
    Dialog* found = nullptr;
    EXPECT_TRUE(Until([&] {
      for (QWidget* each : QApplication::topLevelWidgets()) {
        auto* dialog = qobject_cast<Dialog*>(each);
        if (dialog != nullptr && dialog->isVisible() &&
            (name == nullptr || dialog->objectName() == QLatin1String(name)))
          found = dialog;
      }
      return found != nullptr;
    }));
    return found;
  }
  bool Asked(const std::string& part) {
    return Until([&] {
      return std::ranges::any_of(
          server.Requests(), [&](const std::string& each) { return TargetOf(each).find(part) != std::string::npos; });
    });
  }

  std::atomic<bool> slow = false;  ///< The server never tells its cameras.
  ScriptedServer server{[this](const std::string& request, ScriptedServer::Connection& to) { Answer(request, to); }};
  OwnFolder own;
  QtPlatform platform;
  std::unique_ptr<QWidget> window;
  PlayerWidget* player = nullptr;
};

TEST_F(PlayerWidgetTest, CameraAndFrameRateAreChosenByKeyboard) {
  Open();
  EXPECT_EQ(player->SystemName(), QStringLiteral("Harbour"));
  auto* cameras = Child<QComboBox>("CamList");
  cameras->setFocus();
  QTest::keyClick(cameras, Qt::Key_Down);
  QTest::keyClick(cameras, Qt::Key_Down);
  EXPECT_EQ(cameras->currentText(), QStringLiteral("Yard"));
  EXPECT_TRUE(Asked("/live/2/u:secret?live-special0320x0240020"));
  // Tab goes line by line, through widgets that all have names.
  std::string order;
  for (int i = 0; i < 24; ++i) {
    QWidget* widget = QApplication::focusWidget();
    ASSERT_NE(widget, nullptr);
    order += widget->objectName().toStdString() + " ";
    EXPECT_FALSE(widget->accessibleName().isEmpty()) << order;
    QTest::keyClick(widget, Qt::Key_Tab);
  }
  EXPECT_EQ(QApplication::focusWidget(), cameras);
  EXPECT_THAT(order, testing::StartsWith("CamList Player(0) Player(2) Player(5) Player(4) TCR(0) TCR(1) "));
  EXPECT_THAT(order, HasSubstr("Player(6) Resolution FrameRate Player(11) Player(15) Player(14) Player(13) "));

  auto* rates = Child<QComboBox>("FrameRate");
  rates->showPopup();
  QTest::keyClick(rates->view(), Qt::Key_End);
  QTest::keyClick(rates->view(), Qt::Key_Return);
  EXPECT_EQ(player->VS().FrameRate(), 25);
  // The wheel of somebody who scrolls past chooses nothing.
  cameras->clearFocus();
  QWheelEvent wheel(QPointF(5, 5), cameras->mapToGlobal(QPointF(5, 5)), {}, QPoint(0, -120), Qt::NoButton,
                    Qt::NoModifier, Qt::NoScrollPhase, false);
  QApplication::sendEvent(cameras, &wheel);
  EXPECT_EQ(cameras->currentText(), QStringLiteral("Yard"));
}

TEST_F(PlayerWidgetTest, TheArchiveIsSearchedForWhatWasTyped) {
  Open();
  player->Control().CamList.Choose(0);
  // The pictures' own time comes into the boxes; once they have stopped the boxes are the user's.
  const Timer& stream = player->Control().VS->MasterTimer;
  ASSERT_TRUE(Until([&] { return stream.Enabled.Get(); }));
  Click(2);
  ASSERT_TRUE(Until([&] { return !stream.Enabled; }));
  auto* month = Child<QLineEdit>("TCR(1)");
  Retype(month, "789");
  EXPECT_EQ(month->text(), QStringLiteral("78"));
  QTest::keyClick(month, Qt::Key_Backspace);
  QTest::keyClick(month, Qt::Key_Tab);
  EXPECT_EQ(month->text(), QStringLiteral("07"));
  EXPECT_EQ(Child<QLineEdit>("TCR(2)")->selectedText(), QStringLiteral("17"));
  // The text that leaving a box gives may be longer than can be typed into it.
  auto* second = Child<QLineEdit>("TCR(5)");
  Retype(second, "-3");
  QTest::keyClick(second, Qt::Key_Tab);
  QTest::keyClick(Child<QToolButton>("Player(7)"), Qt::Key_Return);
  EXPECT_TRUE(Asked("?Device=d1&Day=17&Month=07&Year=2005&Hour=09&Minute=05&Second=-03&P=0&Quality="));
}

TEST_F(PlayerWidgetTest, ASnapshotIsSavedUnderTheNameThatWasTyped) {
  Open();
  player->Control().CamList.Choose(0);
  ASSERT_TRUE(Until([&] { return player->Control().VS->VideoStream.Visible.Get(); }));
  const QString name = own.folder.filePath(QStringLiteral("a picture"));
  Click(10);
  auto* files = Shown<QFileDialog>();
  auto* line = Child<QLineEdit>("fileNameEdit", files);
  line->setText(name);
  QTest::keyClick(line, Qt::Key_Return);
  Click(Shown<QMessageBox>()->button(QMessageBox::Yes));
  QFile saved(name + QStringLiteral(".jpg"));
  EXPECT_TRUE(Until([&] { return saved.exists(); }));
  Click(10);
  QTest::keyClick(Shown<QFileDialog>(), Qt::Key_Escape);
  EXPECT_TRUE(Until([] { return QApplication::activeModalWidget() == nullptr; }));
}

TEST_F(PlayerWidgetTest, TheWindowsAreOperatedByMouseAndKeyboard) {
  Open();
  Click(15);
  auto* alerts = Shown<QDialog>("AlertsWin");
  auto* list = Child<QListWidget>("AlertList", alerts);
  // Another press with the key held, which elsewhere takes a selection away, leaves the one choice there is.
  for (const Qt::KeyboardModifier key : {Qt::NoModifier, Qt::ControlModifier}) Click(list, 1, key);
  Click(Child<QPushButton>("Activate", alerts));
  EXPECT_TRUE(Asked("$activatealert=2"));
  EXPECT_TRUE(Until([&] { return !alerts->isVisible(); }));

  // Entering a list selects nothing: without a selection the request carries a 0.
  Click(14);
  Shown<QDialog>("AlertsWin");
  Child<QListWidget>("OutList", alerts)->setFocus();
  Click(Child<QPushButton>("OutToogle", alerts));
  EXPECT_TRUE(Asked("$output=0+1"));
  EXPECT_TRUE(Until([&] { return !alerts->isVisible(); }));

  Click(17);
  auto* chooser = Shown<QDialog>("MultiCams");
  for (const int row : {0, 1, 2, 1}) Click(Child<QListWidget>("Cameras", chooser), row);
  Click(Child<QPushButton>("Go", chooser));
  EXPECT_TRUE(Until([&] { return player->Control().VS->MultiCam.Enabled.Get(); }));
  EXPECT_THAT(player->Control().MultiCams.SelectionResult,
              testing::MatchesRegex("http://[^\r]*/live/1/u:secret\r\nhttp://[^\r]*/live/3/u:secret\r\n"));

  Click(11);
  auto* log = Shown<QDialog>("LogForm");
  EXPECT_THAT(Child<QPlainTextEdit>("Log", log)->toPlainText().toStdString(),
              HasSubstr("10:00\tDoor\topened\n10:01\t<b>Door</b>\tclosed"));
  QTest::keyClick(log, Qt::Key_Escape);
  EXPECT_TRUE(Until([&] { return !log->isVisible(); }));

  Click(13);
  auto* message = Shown<QInputDialog>();
  QTest::keyClicks(message->findChild<QLineEdit*>(), "all is well");
  QTest::keyClick(message, Qt::Key_Return);
  EXPECT_TRUE(Asked("$message?msg=all is well&Send=Send+Message"));
}

TEST_F(PlayerWidgetTest, FullScreenHidesTheRestingPointerAndEndsWithAPressAlone) {
  Open();
  player->Control().CamList.Choose(0);
  ASSERT_TRUE(Asked("/live/1/"));
  // Twice: once more at the size that the window had already.
  for (int round = 0; round < 2; ++round) {
    Click(16);
    auto* full = Shown<QDialog>("XFullScreen");
    EXPECT_EQ(full->size(), window->screen()->size());
    auto* viewer = static_cast<FullScreenWidget*>(full)->Viewer();
    EXPECT_EQ(viewer->size(), full->size());
    ASSERT_TRUE(Until([&] { return viewer->Control().VideoStream.Visible.Get(); }));
    QTest::keyClick(full, Qt::Key_Escape);
    if (round == 0) {
      EXPECT_TRUE(Until([&] { return full->cursor().shape() == Qt::BlankCursor; }));
    }
    EXPECT_TRUE(full->isVisible());
    Click(Child<QWidget>("VideoStream", viewer));
    EXPECT_TRUE(Until([&] { return !full->isVisible(); }));
  }
}

// A layout yields; what the loop has to do then is not done inside Qt's own event.
TEST_F(PlayerWidgetTest, ALayoutDoesNotRunTheLoopInsideOfQtsEvents) {
  Open();
  bool ran = false;
  platform.Get().loop.Queue().Post([&] { ran = true; });
  constexpr int kManySizes = 200;  // one alone could find the queue looked at just now
  for (int width = 640; width < 640 + kManySizes; ++width) player->resize(width, 618);
  EXPECT_FALSE(ran);
  EXPECT_TRUE(Until([&] { return ran; }));
}

// The look-up has no limit, and what follows it uses the services: all handlers end before the first of those does.
TEST_F(PlayerWidgetTest, TheProgramEndsWhileARelayIsLookedUpThatNeverAnswers) {
  ScriptedServer relay([](const std::string&, ScriptedServer::Connection& to) { to.Never(); });
  qputenv("ORBELCAST_RELAY_HOST", "relay.test");
  qputenv("ORBELCAST_RELAY_LOOKUP_HOST", QByteArray("127.0.0.1:") + QByteArray::number(relay.Port()));
  auto program = std::make_unique<QtPlatform>();
  qunsetenv("ORBELCAST_RELAY_HOST");
  qunsetenv("ORBELCAST_RELAY_LOOKUP_HOST");
  auto widget = std::make_unique<PlayerWidget>(program->Get());
  const std::weak_ptr<VideoServerPush> viewer = widget->Control().VS;
  widget->setServer(QStringLiteral("relay.test/joe"));
  widget->RunHandler([&] { widget->Load(); });
  ASSERT_TRUE(Until([&] { return !relay.Requests().empty(); }));
  widget.reset();
  program.reset();
  EXPECT_TRUE(viewer.expired());
}

TEST_F(PlayerWidgetTest, DeletedWhileItWaitsForItsServerOrAWindowIsOpenItEndsCleanly) {
  slow = true;
  Open();
  EXPECT_EQ(player->cursor().shape(), Qt::WaitCursor);
  EXPECT_EQ(Child<QDialog>("AlertsWin")->cursor().shape(), Qt::WaitCursor);
  window.reset();
  QTest::qWait(50);
  slow = false;
  for (const int tool : {15, 17, 11, 13, 10, 16}) {
    Open();
    Click(tool);
    Shown<QDialog>();
    const std::weak_ptr<VideoServerPush> viewer = player->Control().VS;
    window.reset();
    QTest::qWait(20);
    EXPECT_TRUE(viewer.expired()) << tool;
    for (QWidget* each : QApplication::topLevelWidgets()) {
      if (auto* dialog = qobject_cast<QDialog*>(each)) dialog->reject();
    }
  }
}

}  // namespace
}  // namespace orbelcast
