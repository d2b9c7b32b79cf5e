// The widgets as Designer's plug-in offers them, and as forms make them: with nothing but a parent.

#include <gmock/gmock.h>
#include <orbelcast/player_widget.h>
#include <orbelcast/video_server_push_widget.h>

#include <QDomDocument>
#include <QFile>
#include <QFileInfo>
#include <QIcon>
#include <QMetaProperty>
#include <QPluginLoader>
#include <QTest>
#include <QToolButton>
#include <QUiLoader>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>
#include <map>

#include "fakes/scripted_server.h"
#include "ui_form.h"

namespace orbelcast {
namespace {

using fakes::AnswerBytes;
using fakes::ScriptedServer;
using testing::NotNull;
using testing::UnorderedElementsAre;

/// Milliseconds: far more than anything here takes.
constexpr int kLimit = 20'000;
/// Milliseconds: enough for a request that must not come.
constexpr int kAWhile = 300;

QList<QDesignerCustomWidgetInterface*> OfferedWidgets() {
  static QPluginLoader loader(QStringLiteral(ORBELCAST_DESIGNER_PLUGIN));
  const auto* collection = qobject_cast<QDesignerCustomWidgetCollectionInterface*>(loader.instance());
  EXPECT_THAT(collection, NotNull()) << loader.errorString().toStdString();
  return collection != nullptr ? collection->customWidgets() : QList<QDesignerCustomWidgetInterface*>();
}

QDesignerCustomWidgetInterface* Offered(const char* name) {
  for (auto* widget : OfferedWidgets()) {
    if (widget->name() == QLatin1String(name)) return widget;
  }
  return nullptr;
}

/// A camera server with one camera.
struct CameraServer {
  ScriptedServer server{AnswerBytes(200, "RDXVIEWER\r\nSNM:Harbour\r\nCAM:d1\tDoor\thttp://127.0.0.1:1/live\r\n\r\n")};

  void NameTo(PlayerWidget& player) const {
    player.setServer(QStringLiteral("127.0.0.1"));
    player.setPort(QString::number(server.Port()));
  }
};

// Whoever adds a property describes it, too.
TEST(DesignerTest, TellsOfEveryPropertyThatDesignerShows) {
  std::map<std::string, int> described;
  for (auto* offered : OfferedWidgets()) {
    EXPECT_FALSE(offered->icon().availableSizes().isEmpty());
    EXPECT_FALSE(offered->toolTip().isEmpty());
    QDomDocument xml;
    ASSERT_TRUE(xml.setContent(offered->domXml()));
    const QDomNodeList tips = xml.elementsByTagName(QStringLiteral("tooltip"));
    QStringList names;
    for (int i = 0; i < tips.size(); ++i) {
      const QDomElement tip = tips.at(i).toElement();
      EXPECT_FALSE(tip.text().isEmpty());
      names.append(tip.attribute(QStringLiteral("name")));
    }
    const std::unique_ptr<QWidget> widget(offered->createWidget(nullptr));
    const QMetaObject* meta = widget->metaObject();
    EXPECT_EQ(offered->name(), QLatin1String(meta->className()));
    QStringList shown;
    for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i) {
      if (meta->property(i).isDesignable()) shown.append(QLatin1String(meta->property(i).name()));
    }
    names.sort();
    shown.sort();
    EXPECT_EQ(names, shown) << names.join(' ').toStdString() << "\n" << shown.join(' ').toStdString();
    described[offered->name().toStdString()] = static_cast<int>(names.size());
  }
  EXPECT_THAT(described, UnorderedElementsAre(testing::Pair("orbelcast::PlayerWidget", 14),
                                              testing::Pair("orbelcast::VideoServerPushWidget", 18)));
}

TEST(DesignerTest, AFormHoldsThePropertiesWhoeverMakesIt) {
  QWidget by_uic;
  Ui::Form form;
  form.setupUi(&by_uic);

  QUiLoader loader;
  loader.clearPluginPaths();
  loader.addPluginPath(QFileInfo(QStringLiteral(ORBELCAST_DESIGNER_PLUGIN)).path());
  QFile file(QStringLiteral(ORBELCAST_FORM));
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  const std::unique_ptr<QWidget> by_loader(loader.load(&file));
  ASSERT_THAT(by_loader, NotNull()) << loader.errorString().toStdString();

  for (const QWidget* made : {static_cast<const QWidget*>(&by_uic), static_cast<const QWidget*>(by_loader.get())}) {
    const auto* player = made->findChild<PlayerWidget*>();
    ASSERT_THAT(player, NotNull());
    const std::pair<const char*, const char*> kept[] = {{"Server", "gate.example.net"},
                                                        {"Port", "8080"},
                                                        {"Username", "ann"},
                                                        {"Password", "secret"},
                                                        {"LURL", "http://gate.example.net/live"},
                                                        {"IURL", "http://gate.example.net/archive"},
                                                        {"Start", "Yes"},
                                                        {"ExtendedControls", "Yes"},
                                                        {"Device", "d2"},
                                                        {"_ExtentX", "640"},
                                                        {"_ExtentY", "480"},
                                                        {"_Resize", "Yes"}};
    for (const auto& [name, value] : kept) EXPECT_EQ(player->property(name).toString(), QLatin1String(value)) << name;

    const auto* viewer = made->findChild<VideoServerPushWidget*>(QStringLiteral("viewer"));
    ASSERT_THAT(viewer, NotNull());
    EXPECT_EQ(viewer->FrameRate(), 12);
    EXPECT_TRUE(viewer->ShowBandwidth() && viewer->MotionDetector() && viewer->MotionByZones());
    EXPECT_TRUE(viewer->AutoReconnect());
    EXPECT_EQ(viewer->MotionArea_x2(), 90);
    EXPECT_EQ(viewer->MotionString(), QStringLiteral("0011100111001110011100000"));
  }
}

TEST(DesignerTest, APlayerOfALoadedFormAsksItsServer) {
  const CameraServer cameras;
  const std::unique_ptr<QWidget> made(Offered("orbelcast::PlayerWidget")->createWidget(nullptr));
  auto* player = qobject_cast<PlayerWidget*>(made.get());
  ASSERT_THAT(player, NotNull());
  cameras.NameTo(*player);
  bool loaded = false;
  QObject::connect(player, &PlayerWidget::Loaded, player, [&loaded] { loaded = true; });
  player->show();
  ASSERT_TRUE(QTest::qWaitFor([&loaded] { return loaded; }, kLimit));
  EXPECT_EQ(player->SystemName(), QStringLiteral("Harbour"));
}

TEST(DesignerTest, APlayerThatIsBeingDesignedAsksNobody) {
  const CameraServer cameras;
  auto* offered = Offered("orbelcast::PlayerWidget");
  offered->initialize(nullptr);
  const std::unique_ptr<QWidget> made(offered->createWidget(nullptr));
  auto* player = qobject_cast<PlayerWidget*>(made.get());
  cameras.NameTo(*player);
  player->setLURL(QString::fromStdString(cameras.server.Url("/live")));
  player->setStart(QStringLiteral("Yes"));
  player->resize(500, 500);
  player->show();
  player->Load();
  const auto* log = player->findChild<QWidget*>(QStringLiteral("Player(11)"));
  EXPECT_FALSE(log->isVisible());
  player->setExtendedControls(QStringLiteral("Yes"));
  EXPECT_TRUE(log->isVisible());
  QTest::qWait(kAWhile);
  EXPECT_THAT(cameras.server.Requests(), testing::IsEmpty());
}

}  // namespace
}  // namespace orbelcast
