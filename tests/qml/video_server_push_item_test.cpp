// The QML module as a scene uses it: loaded by its name, drawn without a graphics card.

#include <gtest/gtest.h>

#include <QPointer>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>
#include <cstdlib>
#include <functional>
#include <memory>

#include "fakes/scripted_server.h"
#include "fakes/small_jpeg.h"

namespace orbelcast {
namespace {

/// Milliseconds within which a picture of this machine's own comes, on a busy one too.
constexpr int kPatience = 5000;

class ItemTest : public testing::Test {
 protected:
  static void SetUpTestSuite() { QQuickWindow::setSceneGraphBackend(QStringLiteral("software")); }
  ItemTest() {
    engine.addImportPath(QStringLiteral(ORBELCAST_QML_MODULES));
    engine.rootContext()->setContextProperty(QStringLiteral("camera"), QString::fromStdString(server.Url("/live")));
    window = std::make_unique<QQuickWindow>();
  }
  /// Makes the viewer with what is between its braces, and shows it.
  void Show(const QString& members) {
    QQmlComponent component(&engine);
    component.setData(("import QtQuick\nimport Orbelcast\nVideoServerPush {\n" + members + "\n}").toUtf8(), {});
    Show(component);
  }
  void Show(QQmlComponent& component) {
    viewer = qobject_cast<QQuickItem*>(component.create());
    ASSERT_NE(viewer, nullptr) << component.errorString().toStdString();
    viewer->setParentItem(window->contentItem());
    viewer->setParent(window.get());
    QQmlEngine::setObjectOwnership(viewer, QQmlEngine::JavaScriptOwnership);  // it may destroy itself
    window->resize(200, 120);
    window->show();
  }
  bool Wait(const std::function<bool()>& done) { return QTest::qWaitFor(done, kPatience); }
  QColor Centre() { return window->grabWindow().pixelColor(100, 60); }

  fakes::ScriptedServer server{fakes::AnswerBytes(200, fakes::SmallJpeg(), "VigilboxInfo: 1 ready\r\n")};
  QQmlEngine engine;
  std::unique_ptr<QQuickWindow> window;
  QQuickItem* viewer = nullptr;
};

TEST_F(ItemTest, ShowsTheCameraThatItsUrlNamesAndTellsWhatHappens) {
  Show(QStringLiteral(R"(
    property int frames: 0
    property string told
    width: 200; height: 120
    url: camera
    frameRate: 99
    onVigilboxInfo: text => told = text
    onNewFrame: ++frames
  )"));
  EXPECT_EQ(viewer->property("frameRate"), 30);
  EXPECT_TRUE(server.Requests().empty());
  const QColor test_card = Centre();
  ASSERT_TRUE(Wait([&] { return viewer->property("frames").toInt() >= 2; }));
  EXPECT_EQ(viewer->property("told"), QStringLiteral("1 ready"));
  const QColor picture = QImage::fromData(QByteArray::fromStdString(fakes::SmallJpeg())).pixelColor(8, 8);
  EXPECT_GT(std::abs(picture.lightness() - test_card.lightness()), 2);
  EXPECT_LE(std::abs(picture.lightness() - Centre().lightness()), 2);  // two decoders
  QByteArray jpeg;
  ASSERT_TRUE(QMetaObject::invokeMethod(viewer, "getPictureArray", Q_RETURN_ARG(QByteArray, jpeg)));
  EXPECT_EQ(jpeg.toStdString(), fakes::SmallJpeg());

  // One that is not to be seen asks for no picture; when it is, it goes on.
  viewer->setVisible(false);
  QTest::qWait(100);
  const int frames = viewer->property("frames").toInt();
  QTest::qWait(100);
  EXPECT_EQ(viewer->property("frames").toInt(), frames);
  viewer->setVisible(true);
  EXPECT_TRUE(Wait([&] { return viewer->property("frames").toInt() > frames; }));

  viewer->setProperty("url", QString());
  EXPECT_TRUE(Wait([&] { return Centre() == test_card; }));
}

TEST_F(ItemTest, TheShortestExampleShowsACamera) {
  QQmlComponent component(&engine, QUrl::fromLocalFile(QStringLiteral(ORBELCAST_FIRST_PICTURE)));
  Show(component);
  EXPECT_EQ(viewer->property("url").toString(), QStringLiteral("http://127.0.0.1:8080/live/1"));
  EXPECT_EQ(viewer->size(), QSizeF(640, 480));
  bool came = false;
  QObject::connect(viewer, SIGNAL(newFrame()), window.get(), SLOT(close()));
  QObject::connect(window.get(), &QWindow::visibleChanged, [&](bool visible) { came = !visible; });
  viewer->setProperty("url", QString::fromStdString(server.Url("/live")));
  EXPECT_TRUE(Wait([&] { return came; }));
}

// Handlers run on the application's own stack, which scripts need, and may do anything there.
TEST_F(ItemTest, AScriptConnectsFromItsHandlersAndEndsTheViewerInOne) {
  Show(QStringLiteral(R"(
    property int failures: 0
    frameRate: 30
    Component.onCompleted: connect("http://127.0.0.1:1/")
    onConnectionFailed: ++failures < 2 ? connect("http://127.0.0.1:1/") : connect(camera)
    onNewFrame: { objectName = url; if (failures === 2) { disconnect(); destroy() } }
  )"));
  const QPointer<QQuickItem> alive(viewer);
  QString shown;
  QObject::connect(viewer, &QObject::objectNameChanged, [&](const QString& name) { shown = name; });
  EXPECT_TRUE(Wait([&] { return alive.isNull(); }));
  EXPECT_EQ(shown.toStdString(), server.Url("/live"));
}

}  // namespace
}  // namespace orbelcast
