// The viewer as a widget, without a screen.

#include "orbelcast/video_server_push_widget.h"

#include <gmock/gmock.h>

#include <QApplication>
#include <QLabel>
#include <QMenu>
#include <QMetaProperty>
#include <QMimeData>
#include <QMouseEvent>
#include <QPointer>
#include <QTimer>
#include <atomic>
#include <cstring>

#include "adapters/qt/mirrors.h"
#include "assembly_qt/qt_platform.h"
#include "fakes/scripted_server.h"
#include "viewer/interface.h"
#include "viewer/video_server_push.h"

namespace orbelcast {
namespace {

using fakes::ScriptedServer;
using std::chrono::milliseconds;

class WidgetTest : public testing::Test {
 protected:
  void Run(
      milliseconds time, const std::function<bool()>& done = [] { return false; }) {
    EventQueue& queue = platform.Get().loop.Queue();
    const auto end = queue.Now() + time;
    while (queue.Now() < end && !done()) {
      const auto pulse = queue.ArmTimer(milliseconds(10), [] {});
      queue.HandleNext();
      queue.CancelTimer(pulse);
    }
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

TEST_F(WidgetTest, HasEveryPropertyAndEventOfTheInterface) {
  const QMetaObject* meta = widget->metaObject();
  for (const PropertyEntry& entry : video_server_push_interface::Properties()) {
    const int index = meta->indexOfProperty(std::string(entry.name).c_str());
    ASSERT_GE(index, 0) << entry.name;
    EXPECT_EQ(meta->property(index).isWritable(), entry.writable) << entry.name;
  }
  for (const EventEntry& entry : video_server_push_interface::Events()) {
    bool found = false;
    for (int i = 0; i < meta->methodCount(); ++i) {
      const QMetaMethod method = meta->method(i);
      found |= method.methodType() == QMetaMethod::Signal &&
               method.name() == QByteArray(entry.name.data(), static_cast<int>(entry.name.size())) &&
               static_cast<std::size_t>(method.parameterCount()) == entry.arguments.size();
    }
    EXPECT_TRUE(found) << entry.name;
  }
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

TEST_F(WidgetTest, TheStripFollowsTheWindowAtTheBottom) {
  widget->setShowBandwidth(true);
  widget->resize(500, 400);
  widget->show();
  QApplication::processEvents();
  const QRect strip = Child<QWidget>("StatusDisplay")->geometry();
  EXPECT_EQ(strip, QRect(0, 400 - 26, 500, 26));
  EXPECT_EQ(Child<QWidget>("VideoStream")->size(), QSize(500, 400));
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

TEST_F(WidgetTest, DeadCamerasTakeNothingFromLiveOnesAndTheWindowAnswers) {
  constexpr int kEach = 8;
  constexpr int kRate = 20;
  ScriptedServer live(fakes::AnswerBytes(200, "no picture, but a frame"));
  ScriptedServer dead([](const std::string&, ScriptedServer::Connection& to) { to.Never(); });
  std::vector<std::unique_ptr<VideoServerPushWidget>> widgets;
  int frames = 0;
  for (int i = 0; i < 2 * kEach; ++i) {
    VideoServerPushWidget* each = widgets.emplace_back(std::make_unique<VideoServerPushWidget>(platform.Get())).get();
    each->resize(320, 240);
    each->setFrameRate(kRate);
    each->show();
    const bool alive = i % 2 != 0;
    if (alive) each->Control().VideoStream.Refreshed.Listen([&frames] { ++frames; });
    each->RunHandler([each, url = QString::fromStdString(alive ? live.Url() : dead.Url())] { each->Connect(url); });
  }
  Run(milliseconds(2000), [&] { return frames >= kEach; });
  frames = 0;
  // Answering: a timer of the toolkit's own, a hundred times a second, is never late by much.
  milliseconds worst{0};
  auto last = std::chrono::steady_clock::now();
  QTimer heartbeat;
  heartbeat.setTimerType(Qt::PreciseTimer);
  QObject::connect(&heartbeat, &QTimer::timeout, [&] {
    const auto now = std::chrono::steady_clock::now();
    worst = std::max(worst, std::chrono::duration_cast<milliseconds>(now - last));
    last = now;
  });
  heartbeat.start(10);
  Run(milliseconds(2000));
  EXPECT_GE(frames, 0.95 * kEach * kRate * 2);
  EXPECT_LT(worst.count(), 250);
}

}  // namespace
}  // namespace orbelcast
