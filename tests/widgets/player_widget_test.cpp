// The player in a window, driven with keys and mouse against a server on the loopback; no screen.

#include "orbelcast/player_widget.h"

#include <gmock/gmock.h>

#include <QApplication>
#include <QBuffer>
#include <QComboBox>
#include <QDialog>
#include <QFile>
#include <QFileDialog>
#include <QImage>
#include <QInputDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

#include "fakes/scripted_server.h"
#include "interface/user_control1_interface.h"
#include "player/user_control1.h"
#include "widgets/expect_members.h"
#include "widgets/qt_platform.h"

namespace orbelcast {
namespace {

using fakes::AnswerBytes;
using fakes::ScriptedServer;
using fakes::TargetOf;
using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;

/// Milliseconds: far more than anything here takes.
constexpr int kLimit = 20'000;

std::string Jpeg() {
  QImage image(64, 48, QImage::Format_RGB32);
  image.fill(Qt::darkGreen);
  QByteArray bytes;
  QBuffer buffer(&bytes);
  image.save(&buffer, "JPG");
  return bytes.toStdString();
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
  /// A camera server with three cameras, or as many as `more_cameras` adds.
  void Answer(const std::string& request, ScriptedServer::Connection& to) {
    const std::string target = TargetOf(request);
    if (target.find("$rdxviewer") != std::string::npos) {
      if (slow) to.Never();
      std::string text = "RDXVIEWER\r\nSNM:Harbour\r\n";
      for (const char* camera : {"d1\tDoor\t", "d2\tYard\t", "d3\tRoof\t"}) {
        text += "CAM:" + std::string(camera) + server->Url("/live/") + camera[1] + "\r\n";
      }
      text += more_cameras + "ALT:1\tFire\r\nALT:2\tFlood\r\nHWO:\tLamp\t1\r\nHWI:\tGate\t0\r\n\r\n";
      to.Send(AnswerBytes(200, text));
    } else if (target.find("activitylog") != std::string::npos) {
      to.Send(AnswerBytes(200, "10:00,Door,opened\r\n\r\n10:01,<b>Door</b>,closed\r\n"));
    } else {
      to.Send(AnswerBytes(200, jpeg, "RC_TCR: 20050317090544\r\n"));
    }
  }

  void Open(bool loaded = true) {
    window = std::make_unique<QWidget>();
    auto* layout = new QVBoxLayout(window.get());
    layout->setContentsMargins(0, 0, 0, 0);
    player = new PlayerWidget(platform.Get());
    layout->addWidget(player);
    player->setServer(QStringLiteral("127.0.0.1"));
    player->setPort(QString::number(server->Port()));
    player->setUsername(QStringLiteral("u"));
    player->setPassword(QStringLiteral("secret"));
    player->setExtendedControls(QStringLiteral("Yes"));
    window->resize(640, 618);
    if (before_show) before_show();
    bool done = false;
    QObject::connect(player, &PlayerWidget::Loaded, player, [&done] { done = true; });
    window->show();
    window->activateWindow();
    if (loaded) {
      ASSERT_TRUE(QTest::qWaitFor([&] { return done; }, kLimit));
      ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    } else {
      QObject::disconnect(player, &PlayerWidget::Loaded, player, nullptr);
    }
  }

  template <typename Widget>
  Widget* Child(const char* name) {
    auto* child = window->findChild<Widget*>(QString::fromLatin1(name));
    EXPECT_NE(child, nullptr) << name;
    return child;
  }
  void Click(const char* name) { QTest::mouseClick(Child<QWidget>(name), Qt::LeftButton); }
  void Click(int tool) { Click(("Player(" + std::to_string(tool) + ")").c_str()); }
  /// Waits for a dialog of that kind and returns it.
  template <typename Dialog>
  Dialog* Shown(const char* name = nullptr) {
    Dialog* found = nullptr;
    const auto look = [&] {
      for (QWidget* each : QApplication::topLevelWidgets()) {
        auto* dialog = qobject_cast<Dialog*>(each);
        if (dialog != nullptr && dialog->isVisible() &&
            (name == nullptr || dialog->objectName() == QLatin1String(name)))
          found = dialog;
      }
      return found != nullptr;
    };
    EXPECT_TRUE(QTest::qWaitFor(look, kLimit));
    return found;
  }
  bool Asked(const std::string& part) {
    return QTest::qWaitFor(
        [&] {
          return std::ranges::any_of(server->Requests(), [&](const std::string& each) {
            return TargetOf(each).find(part) != std::string::npos;
          });
        },
        kLimit);
  }

  std::string jpeg = Jpeg();
  std::atomic<bool> slow = false;
  std::function<void()> before_show;
  std::string more_cameras;
  std::unique_ptr<ScriptedServer> server = std::make_unique<ScriptedServer>(
      [this](const std::string& request, ScriptedServer::Connection& to) { Answer(request, to); });
  OwnFolder own;
  QtPlatform platform;
  std::unique_ptr<QWidget> window;
  PlayerWidget* player = nullptr;
};

TEST_F(PlayerWidgetTest, HasEveryMemberOfTheInterface) {
  ExpectProperties(PlayerWidget::staticMetaObject, interface::kUserControl1.properties);
  ExpectMembers(PlayerWidget::staticMetaObject, interface::kUserControl1.methods, QMetaMethod::Slot);
}

TEST_F(PlayerWidgetTest, ACameraIsChosenByKeyboardAndTheFrameRateByAClickInTheList) {
  Open();
  EXPECT_EQ(player->SystemName(), QStringLiteral("Harbour"));
  auto* cameras = Child<QComboBox>("CamList");
  ASSERT_EQ(cameras->count(), 3);
  EXPECT_EQ(cameras->currentIndex(), -1);
  cameras->setFocus();
  QTest::keyClick(cameras, Qt::Key_Down);
  QTest::keyClick(cameras, Qt::Key_Down);
  EXPECT_EQ(cameras->currentText(), QStringLiteral("Yard"));
  EXPECT_TRUE(Asked("/live/2/u:secret?live-special0320x0240020"));

  auto* rates = Child<QComboBox>("FrameRate");
  rates->showPopup();
  QTest::keyClick(rates->view(), Qt::Key_End);
  QTest::keyClick(rates->view(), Qt::Key_Return);
  EXPECT_EQ(rates->currentText(), QStringLiteral("25 FPS"));
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
  ASSERT_TRUE(Asked("/live/1/"));
  // The picture's own time comes into the boxes; afterwards they are the user's.
  ASSERT_TRUE(QTest::qWaitFor([&] { return Child<QLineEdit>("TCR(0)")->text() == QLatin1String("2005"); }, kLimit));
  Click(2);
  ASSERT_TRUE(QTest::qWaitFor([&] { return !player->Control().VS->MasterTimer.Enabled; }, kLimit));
  EXPECT_FALSE(Child<QToolButton>("Player(3)")->isEnabled());
  auto* month = Child<QLineEdit>("TCR(1)");
  month->setFocus(Qt::TabFocusReason);
  QTest::keyClick(month, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClicks(month, "789");
  EXPECT_EQ(month->text(), QStringLiteral("78"));
  QTest::keyClick(month, Qt::Key_Backspace);
  QTest::keyClick(month, Qt::Key_Tab);
  EXPECT_EQ(month->text(), QStringLiteral("07"));
  EXPECT_TRUE(Child<QLineEdit>("TCR(2)")->hasFocus());
  EXPECT_EQ(Child<QLineEdit>("TCR(2)")->selectedText(), QStringLiteral("17"));

  // What leaving a box gives may be longer than what can be typed into it.
  auto* second = Child<QLineEdit>("TCR(5)");
  second->setFocus(Qt::TabFocusReason);
  for (const auto& [typed, shown] : {std::pair("-3", "-03"), std::pair("44", "44")}) {
    QTest::keyClick(second, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(second, typed);
    QTest::keyClick(second, Qt::Key_Tab);
    EXPECT_EQ(second->text(), QLatin1String(shown));
    second->setFocus(Qt::TabFocusReason);
  }
  QTest::keyClicks(second, "789");
  EXPECT_EQ(second->text(), QStringLiteral("78"));

  Click(7);
  EXPECT_TRUE(Asked("?Device=d1&Day=17&Month=07&Year=2005&Hour=09&Minute=05&Second=78&P=0&Quality="));
  EXPECT_TRUE(QTest::qWaitFor([&] { return Child<QToolButton>("Player(3)")->isEnabled(); }, kLimit));
  Child<QToolButton>("Player(3)")->setFocus();
  QTest::keyClick(Child<QToolButton>("Player(3)"), Qt::Key_Space);
  EXPECT_TRUE(Asked("&F=0&Quality="));
}

TEST_F(PlayerWidgetTest, ASnapshotIsSavedUnderTheNameThatWasTyped) {
  Open();
  player->Control().CamList.Choose(0);
  ASSERT_TRUE(QTest::qWaitFor([&] { return player->Control().VS->VideoStream.Visible.Get(); }, kLimit));
  const QString name = own.folder.filePath(QStringLiteral("a picture"));
  Click(10);
  auto* files = Shown<QFileDialog>();
  ASSERT_NE(files, nullptr);
  EXPECT_EQ(files->windowTitle(), QStringLiteral("Choose the filename..."));
  auto* line = files->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
  ASSERT_NE(line, nullptr);
  line->setText(name);
  QTest::keyClick(line, Qt::Key_Return);
  auto* question = Shown<QMessageBox>();
  ASSERT_NE(question, nullptr);
  EXPECT_EQ(question->windowTitle(), QStringLiteral("AVI Maker"));
  QTest::mouseClick(question->button(QMessageBox::Yes), Qt::LeftButton);
  QFile saved(name + QStringLiteral(".jpg"));
  ASSERT_TRUE(QTest::qWaitFor([&] { return saved.exists(); }, kLimit));
  ASSERT_TRUE(saved.open(QIODevice::ReadOnly));
  EXPECT_EQ(saved.readAll().toStdString(), jpeg);

  // Escape cancels the one dialog, and says No to the other.
  Click(10);
  QTest::keyClick(Shown<QFileDialog>(), Qt::Key_Escape);
  EXPECT_TRUE(QTest::qWaitFor([] { return QApplication::activeModalWidget() == nullptr; }, kLimit));
}

TEST_F(PlayerWidgetTest, TheWindowsAreOperatedByMouseAndKeyboard) {
  Open();
  Click(15);
  auto* alerts = Shown<QDialog>("AlertsWin");
  ASSERT_NE(alerts, nullptr);
  EXPECT_EQ(alerts->windowTitle(), QStringLiteral("Alerts"));
  auto* list = alerts->findChild<QListWidget*>(QStringLiteral("AlertList"));
  EXPECT_EQ(list->font().family(), QStringLiteral("Verdana"));
  // Another press with the key held, which elsewhere takes a selection away, leaves the one choice there is.
  for (const Qt::KeyboardModifier key : {Qt::NoModifier, Qt::ControlModifier}) {
    QTest::mouseClick(list->viewport(), Qt::LeftButton, key, list->visualItemRect(list->item(1)).center());
    EXPECT_TRUE(list->item(1)->isSelected());
  }
  QTest::mouseClick(alerts->findChild<QPushButton*>(QStringLiteral("Activate")), Qt::LeftButton);
  EXPECT_TRUE(Asked("$activatealert=2"));
  EXPECT_TRUE(QTest::qWaitFor([&] { return !alerts->isVisible(); }, kLimit));

  // Entering a list selects nothing: without a selection the request carries a 0.
  Click(14);
  auto* outputs = Shown<QDialog>("AlertsWin");
  outputs->findChild<QListWidget*>(QStringLiteral("OutList"))->setFocus();
  QTest::mouseClick(outputs->findChild<QPushButton*>(QStringLiteral("OutToogle")), Qt::LeftButton);
  EXPECT_TRUE(Asked("$output=0+1"));
  EXPECT_TRUE(QTest::qWaitFor([&] { return !outputs->isVisible(); }, kLimit));

  Click(17);
  auto* chooser = Shown<QDialog>("MultiCams");
  auto* cameras = chooser->findChild<QListWidget*>(QStringLiteral("Cameras"));
  for (const int row : {0, 1, 2, 1}) {
    QTest::mouseClick(cameras->viewport(), Qt::LeftButton, {}, cameras->visualItemRect(cameras->item(row)).center());
  }
  auto* go = chooser->findChild<QPushButton*>(QStringLiteral("Go"));
  EXPECT_EQ(go->font().family(), QStringLiteral("Verdana"));
  QTest::mouseClick(go, Qt::LeftButton);
  EXPECT_TRUE(QTest::qWaitFor([&] { return player->Control().VS->MultiCam.Enabled.Get(); }, kLimit));
  EXPECT_THAT(player->Control().MultiCams.SelectionResult,
              testing::MatchesRegex("http://[^\r]*/live/1/u:secret\r\nhttp://[^\r]*/live/3/u:secret\r\n"));

  Click(11);
  auto* log = Shown<QDialog>("LogForm");
  EXPECT_THAT(log->findChild<QPlainTextEdit*>(QStringLiteral("Log"))->toPlainText().toStdString(),
              HasSubstr("10:00\tDoor\topened\n10:01\t<b>Door</b>\tclosed"));
  QTest::keyClick(log, Qt::Key_Escape);
  EXPECT_TRUE(QTest::qWaitFor([&] { return !log->isVisible(); }, kLimit));

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
  Click(16);
  auto* full = Shown<QDialog>("XFullScreen");
  ASSERT_NE(full, nullptr);
  EXPECT_EQ(full->size(), window->screen()->size());
  EXPECT_FALSE(Child<QWidget>("PlayerControls")->isVisible());
  auto* viewer = full->findChild<VideoServerPushWidget*>();
  ASSERT_NE(viewer, nullptr);
  EXPECT_EQ(viewer->size(), full->size());
  ASSERT_TRUE(QTest::qWaitFor([&] { return viewer->Control().VideoStream.Visible.Get(); }, kLimit));
  QTest::keyClick(full, Qt::Key_Escape);
  EXPECT_TRUE(QTest::qWaitFor([&] { return full->cursor().shape() == Qt::BlankCursor; }, kLimit));
  EXPECT_TRUE(full->isVisible());
  QTest::mouseClick(viewer->findChild<QWidget*>(QStringLiteral("VideoStream")), Qt::LeftButton);
  EXPECT_TRUE(QTest::qWaitFor([&] { return !full->isVisible(); }, kLimit));
  EXPECT_TRUE(QTest::qWaitFor([&] { return Child<QWidget>("PlayerControls")->isVisible(); }, kLimit));
  // Again, at the size that the window had already.
  Click(16);
  ASSERT_TRUE(QTest::qWaitFor([&] { return full->isVisible(); }, kLimit));
  const UserControl1& control = player->Control();
  EXPECT_TRUE(QTest::qWaitFor(
      [&] { return control.XFullScreen.vs != nullptr && control.XFullScreen.vs->VideoStream.Visible.Get(); }, kLimit));
  EXPECT_EQ(control.XFullScreen.vs->Width(), control.XFullScreen.Width.Get());
}

TEST_F(PlayerWidgetTest, WithExtentsEverythingKeepsItsPlaceFromTheBeginning) {
  before_show = [this] {
    player->setExtentX(QStringLiteral("1"));
    player->setExtentY(QStringLiteral("1"));
  };
  slow = true;
  Open(false);
  const auto expect_design = [&] {
    EXPECT_EQ(Child<QWidget>("CamList")->geometry(), QRect(0, 0, 337, 21));
    EXPECT_EQ(Child<QWidget>("PlayerControls")->geometry(), QRect(0, 272, 349, 117));
    EXPECT_EQ(player->VS().geometry(), QRect(0, 24, 348, 244));
  };
  ASSERT_TRUE(QTest::qWaitFor([&] { return platform.Requests().Waiting() == 1; }, kLimit));
  expect_design();
  window->resize(800, 700);
  QApplication::processEvents();
  expect_design();
}

// A layout yields; what the loop has to do then is not done inside Qt's own event.
TEST_F(PlayerWidgetTest, ALayoutDoesNotRunTheLoopInsideOfQtsEvents) {
  Open();
  bool ran = false;
  platform.Get().loop.Queue().Post([&] { ran = true; });
  constexpr int kManySizes = 200;  // one alone could find the queue looked at just now
  for (int width = 640; width < 640 + kManySizes; ++width) player->resize(width, 618);
  EXPECT_FALSE(ran);
  EXPECT_TRUE(QTest::qWaitFor([&] { return ran; }, kLimit));
}

TEST_F(PlayerWidgetTest, TheWindowLivesWhileTheServerIsWaitedForAndMayBeClosed) {
  slow = true;
  Open(false);
  ASSERT_TRUE(QTest::qWaitFor([&] { return platform.Requests().Waiting() == 1; }, kLimit));
  EXPECT_TRUE(window->isVisible());
  EXPECT_EQ(player->cursor().shape(), Qt::WaitCursor);
  EXPECT_EQ(Child<QDialog>("AlertsWin")->cursor().shape(), Qt::WaitCursor);
  auto* year = Child<QLineEdit>("TCR(0)");
  year->setFocus();
  QTest::keyClicks(year, "24");
  window.reset();
  QTest::qWait(50);
  // The request goes on by itself, bounded by its time-out; the platform's end takes it along.
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
  ASSERT_TRUE(QTest::qWaitFor([&] { return !relay.Requests().empty(); }, kLimit));
  widget.reset();
  program.reset();
  EXPECT_TRUE(viewer.expired());
  EXPECT_EQ(relay.Requests().size(), 1u);
}

TEST_F(PlayerWidgetTest, DeletedWhileOneOfItsWindowsOrDialogsIsOpenItEndsCleanly) {
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

TEST_F(PlayerWidgetTest, TabGoesLineByLineThroughWidgetsThatAllHaveNames) {
  Open();
  Child<QWidget>("CamList")->setFocus();
  std::vector<std::string> order;
  for (QWidget* widget = QApplication::focusWidget();;) {
    order.push_back(widget->objectName().toStdString());
    EXPECT_FALSE(widget->accessibleName().isEmpty()) << order.back();
    QTest::keyClick(widget, Qt::Key_Tab);
    widget = QApplication::focusWidget();
    ASSERT_NE(widget, nullptr);
    if (widget->objectName() == QLatin1String("CamList") || order.size() > 40) break;
  }
  EXPECT_THAT(order, ElementsAre("CamList", "Player(0)", "Player(2)", "Player(5)", "Player(4)", "TCR(0)", "TCR(1)",
                                 "TCR(2)", "TCR(3)", "TCR(4)", "TCR(5)", "Player(7)", "Player(9)", "Player(10)",
                                 "Player(16)", "Player(6)", "Resolution", "FrameRate", "Player(11)", "Player(15)",
                                 "Player(14)", "Player(13)", "Player(17)", "Player(12)"));
}

TEST_F(PlayerWidgetTest, TenThousandCamerasWithAnyNamesAreListedAtOnce) {
  for (int i = 0; i < 10'000; ++i) more_cameras += "CAM:x\t<b>\xff\x01\tname" + std::to_string(i) + "\r\n";
  QElapsedTimer clock;
  clock.start();
  Open();
  EXPECT_LT(clock.elapsed(), 10'000);
  auto* cameras = Child<QComboBox>("CamList");
  EXPECT_GT(cameras->count(), 9'000);
  EXPECT_TRUE(cameras->itemText(5).startsWith(QLatin1String("<b>")));
  // Nor does the list cover the screen.
  cameras->showPopup();
  EXPECT_GT(cameras->view()->window()->height(), 5 * cameras->view()->sizeHintForRow(0));
  EXPECT_LT(cameras->view()->window()->height(), 20 * cameras->view()->sizeHintForRow(0));
}

}  // namespace
}  // namespace orbelcast
