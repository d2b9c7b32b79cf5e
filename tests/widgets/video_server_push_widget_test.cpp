// The viewer as a widget, without a screen.

#include "orbelcast/video_server_push_widget.h"

#include <gmock/gmock.h>

#include <QApplication>
#include <QBuffer>
#include <QDockWidget>
#include <QLabel>
#include <QMainWindow>
#include <QMenu>
#include <QMimeData>
#include <QMouseEvent>
#include <QPointer>
#include <QTabWidget>
#include <array>

#include "fakes/run_loop.h"
#include "fakes/scripted_server.h"
#include "interface/video_server_push_interface.h"
#include "viewer/video_server_push.h"
#include "widgets/expect_members.h"
#include "widgets/mirrors.h"
#include "widgets/qt_platform.h"

namespace orbelcast {
namespace {

using fakes::ScriptedServer;
using std::chrono::milliseconds;

class WidgetTest : public testing::Test {
 protected:
  bool Run(
      milliseconds time, const std::function<bool()>& done = [] { return false; }) {
    return fakes::RunLoop(platform.Get().loop.Queue(), time, done);
  }
  template <typename Widget>
  Widget* Child(const char* name) {
    return widget->findChild<Widget*>(QString::fromLatin1(name));
  }
  static void Press(QWidget* on, Qt::MouseButton button) {
    QMouseEvent press(QEvent::MouseButtonPress, QPointF(3, 3), on->mapToGlobal(QPointF(3, 3)), button, button,
                      Qt::NoModifier);
    QApplication::sendEvent(on, &press);
  }

  QtPlatform platform;
  std::unique_ptr<VideoServerPushWidget> widget = std::make_unique<VideoServerPushWidget>(platform.Get());
};

TEST_F(WidgetTest, HasEveryMemberOfTheInterface) {
  const QMetaObject& meta = *widget->metaObject();
  ExpectProperties(meta, interface::kVideoServerPush.properties);
  ExpectMembers(meta, interface::kVideoServerPush.events, QMetaMethod::Signal);
  ExpectMembers(meta, interface::kVideoServerPush.methods, QMetaMethod::Slot);
  widget->setProperty("FrameRate", 99);
  EXPECT_EQ(widget->property("FrameRate").toInt(), 30);
}

TEST_F(WidgetTest, TextsFromAServerAreShownAsPlainTextWhateverTheyHold) {
  widget->Control().lStatus.Caption = std::string("a\xff\xfe<b>\x01\r\nsecond line");
  const auto* label = Child<QLabel>("lStatus");
  ASSERT_NE(label, nullptr);
  EXPECT_EQ(label->textFormat(), Qt::PlainText);
  EXPECT_TRUE(label->text().startsWith(QLatin1Char('a')));
  EXPECT_TRUE(label->text().contains(QLatin1String("<b>")));
  EXPECT_TRUE(label->text().endsWith(QLatin1String("\nsecond line")));
  EXPECT_FALSE(label->text().contains(QChar(1)));
}

TEST_F(WidgetTest, ThePictureIsPaintedWhereItLies) {
  widget->resize(320, 240);
  VideoServerPush& control = widget->Control();
  PictureWidget picture(control.VideoStream, platform.Get().screen, nullptr);
  control.VideoStream.Canvas().FillBox(0, 0, 1000, 1000, Rgb(200, 100, 50));
  const QImage view = picture.View();
  EXPECT_EQ(static_cast<const void*>(view.constBits()),
            static_cast<const void*>(control.VideoStream.Image().Pixels().data()));
  EXPECT_EQ(view.pixelColor(5, 5), QColor(200, 100, 50));
  picture.resize(40, 30);
  EXPECT_EQ(picture.grab().toImage().pixelColor(20, 20), QColor(200, 100, 50));
}

TEST_F(WidgetTest, MousePressesReachTheHostByTheRules) {
  std::vector<int> buttons;
  QObject::connect(widget.get(), &VideoServerPushWidget::MouseDown, [&](short button) { buttons.push_back(button); });
  auto* video = Child<QWidget>("VideoStream");
  Press(video, Qt::RightButton);
  Press(video, Qt::LeftButton);
  EXPECT_THAT(buttons, testing::ElementsAre(1));
}

TEST_F(WidgetTest, ARightClickOnTheStripOpensTheMenuWhoseChoiceIsTaken) {
  widget->setShowBandwidth(true);
  widget->show();
  Press(Child<QWidget>("StatusDisplay"), Qt::LeftButton);
  EXPECT_EQ(widget->findChild<QMenu*>(), nullptr);
  Press(Child<QWidget>("lStatus"), Qt::RightButton);
  auto* menu = widget->findChild<QMenu*>();
  ASSERT_NE(menu, nullptr);
  ASSERT_EQ(menu->actions().size(), 5);
  EXPECT_TRUE(menu->actions()[0]->isChecked());
  EXPECT_TRUE(menu->actions()[3]->isSeparator());
  menu->actions()[1]->trigger();
  EXPECT_TRUE(widget->Control().Menux[1].Checked);
  menu->close();
}

TEST_F(WidgetTest, DeletedInTheMiddleOfAWaitOrASignalItEndsCleanly) {
  ScriptedServer dead([](const std::string&, ScriptedServer::Connection& to) { to.Never(); });
  widget->RunHandler([&] { widget->Connect(QString::fromStdString(dead.Url())); });
  Run(milliseconds(100));
  widget.reset();
  Run(milliseconds(50));

  auto* doomed = new VideoServerPushWidget(platform.Get());
  QObject::connect(doomed, &VideoServerPushWidget::ConnectionFailed, [doomed] { delete doomed; });
  const QPointer<VideoServerPushWidget> watch(doomed);
  doomed->RunHandler([doomed] { doomed->Connect(QStringLiteral("http://127.0.0.1:1/")); });
  Run(milliseconds(2000), [&] { return watch.isNull(); });
  EXPECT_TRUE(watch.isNull());
}

TEST_F(WidgetTest, ItsControlIsLeftAloneByAWidgetThatEndsBeforeIt) {
  const auto control = VideoServerPush::Create(platform.Get());
  widget = std::make_unique<VideoServerPushWidget>(platform.Get(), control, nullptr);
  EXPECT_TRUE(control->Events.Status.HasListeners());
  widget.reset();
  std::string text = "nobody is there";
  control->Events.Status(text);
  control->MainMenu.PopUp();
  EXPECT_FALSE(control->Events.Status.HasListeners());
  EXPECT_FALSE(control->VideoStream.Refreshed.HasListeners());
}

class StreamTest : public WidgetTest {
 protected:
  StreamTest() {
    QImage image(64, 48, QImage::Format_RGB32);
    image.fill(Qt::darkGreen);
    QBuffer buffer(&jpeg);
    image.save(&buffer, "JPG");
    server = std::make_unique<ScriptedServer>(fakes::AnswerBytes(200, jpeg.toStdString()));
  }
  void Connect() {
    widget->setFrameRate(30);  // so many steps a second may ask for a picture
    widget->RunHandler([this] { widget->Connect(QString::fromStdString(server->Url())); });
    Run(milliseconds(5000), [&] { return widget->Control().VideoStream.Visible.Get(); });
    widget->ToogleClock(false);
  }
  /// Whether a step of the stream asks for a picture, once the loop has had its turn.
  bool Streams() {
    QCoreApplication::processEvents();
    const std::size_t before = server->Requests().size();
    widget->Pulse();
    return server->Requests().size() > before;
  }

  QByteArray jpeg;
  std::unique_ptr<ScriptedServer> server;
};

TEST_F(StreamTest, OutlivesAHideThatIsFollowedByAShow) {
  QMainWindow window;
  auto* dock = new QDockWidget;
  auto* tabs = new QTabWidget;
  VideoServerPushWidget* viewer = widget.release();
  dock->setWidget(tabs);
  tabs->addTab(viewer, QStringLiteral("camera"));
  tabs->addTab(new QWidget, QStringLiteral("other"));
  window.addDockWidget(Qt::LeftDockWidgetArea, dock);
  window.show();
  const std::pair<const char*, std::function<void()>> kept[] = {
      {"floats", [&] { dock->setFloating(true); }},
      {"is docked", [&] { dock->setFloating(false); }},
      {"there and back", [&] { tabs->setCurrentIndex(1), tabs->setCurrentIndex(0); }},
      {"new parent", [&] { viewer->setParent(&window), viewer->show(); }},
  };
  const std::pair<const char*, std::function<void()>> ended[] = {
      {"hide", [&] { viewer->hide(); }},
      {"another tab",
       [&] {
         tabs->addTab(viewer, QStringLiteral("again")), tabs->setCurrentWidget(viewer), tabs->setCurrentIndex(0);
       }},
  };
  widget.reset(viewer);
  Connect();
  for (const auto& [what, act] : kept) {
    act();
    EXPECT_TRUE(Streams()) << what;
  }
  for (const auto& [what, act] : ended) {
    act();
    EXPECT_FALSE(Streams()) << what;
    viewer->show();
    Connect();
  }
  viewer->setParent(nullptr);
}

TEST_F(StreamTest, GivesItsPictureAsImageAsBytesAndOnAnyPaintDevice) {
  QImage target(100, 100, QImage::Format_RGB32);
  target.fill(Qt::white);
  widget->RenderPicture(&target);
  EXPECT_EQ(target.pixelColor(0, 0), QColor(Qt::white));
  EXPECT_TRUE(widget->GetPicture().isNull());
  EXPECT_TRUE(widget->GetPictureArray().isEmpty());

  Connect();
  EXPECT_EQ(widget->GetPictureArray(), jpeg);
  const QImage picture = widget->GetPicture();
  ASSERT_EQ(picture.size(), QSize(64, 48));
  const QColor green = picture.pixelColor(60, 40);
  EXPECT_GT(green.green(), 100);
  for (const auto& [x, y, right, bottom] : {std::array{0, 0, 64, 48}, std::array{10, 20, 10, 20}}) {
    target.fill(Qt::white);
    widget->RenderPicture(&target, x, y);
    EXPECT_EQ(target.pixelColor(right - 1, bottom - 1), green);
    EXPECT_EQ(target.pixelColor(right, 0), QColor(Qt::white));
    EXPECT_EQ(target.pixelColor(0, bottom), QColor(Qt::white));
  }
  target.fill(Qt::white);
  widget->RenderPicture(&target, -1, 5);
  widget->RenderPicture(nullptr);
  EXPECT_EQ(target.pixelColor(0, 0), QColor(Qt::white));
}

}  // namespace
}  // namespace orbelcast
