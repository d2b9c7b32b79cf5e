// The widgets as Designer's plug-in offers them.

#include <gmock/gmock.h>
#include <orbelcast/player_widget.h>
#include <orbelcast/video_server_push_widget.h>

#include <QDomDocument>
#include <QIcon>
#include <QMetaProperty>
#include <QPluginLoader>
#include <QTest>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>
#include <map>

#include "fakes/scripted_server.h"

namespace orbelcast {
namespace {

using fakes::AnswerBytes;
using fakes::ScriptedServer;
using testing::NotNull;
using testing::UnorderedElementsAre;

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

TEST(DesignerTest, APlayerThatIsBeingDesignedAsksNobody) {
  const ScriptedServer cameras(AnswerBytes(200, "RDXVIEWER\r\n"));
  auto* offered = Offered("orbelcast::PlayerWidget");
  offered->initialize(nullptr);
  const std::unique_ptr<QWidget> made(offered->createWidget(nullptr));
  auto* player = qobject_cast<PlayerWidget*>(made.get());
  player->setServer(QStringLiteral("127.0.0.1"));
  player->setPort(QString::number(cameras.Port()));
  player->setLURL(QString::fromStdString(cameras.Url("/live")));
  player->setStart(QStringLiteral("Yes"));
  player->resize(500, 500);
  player->show();
  player->Load();
  const auto* log = player->findChild<QWidget*>(QStringLiteral("Player(11)"));
  EXPECT_FALSE(log->isVisible());
  player->setExtendedControls(QStringLiteral("Yes"));
  EXPECT_TRUE(log->isVisible());
  QTest::qWait(kAWhile);
  EXPECT_THAT(cameras.Requests(), testing::IsEmpty());
}

}  // namespace
}  // namespace orbelcast
