// Designer's plug-in: it loads, and its widgets live in a form.

#include <gtest/gtest.h>
#include <orbelcast/player_widget.h>

#include <QPluginLoader>
#include <QTest>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>

#include "fakes/scripted_server.h"

namespace orbelcast {
namespace {

/// Milliseconds: enough for a request that must not come.
constexpr int kAWhile = 300;

// They ask no server, whatever their properties say; the player shows what can be seen of its own.
TEST(DesignerTest, WidgetsLiveInAFormThatIsBeingDesigned) {
  QPluginLoader loader(QStringLiteral(ORBELCAST_DESIGNER_PLUGIN));
  const auto* plugin = qobject_cast<QDesignerCustomWidgetCollectionInterface*>(loader.instance());
  ASSERT_NE(plugin, nullptr) << loader.errorString().toStdString();
  const fakes::ScriptedServer cameras(fakes::AnswerBytes(200, "RDXVIEWER\r\n"));
  QWidget form;
  for (auto* offered : plugin->customWidgets()) {
    offered->initialize(nullptr);
    QWidget* const widget = offered->createWidget(&form);
    EXPECT_EQ(offered->name(), QLatin1String(widget->metaObject()->className()));
    widget->setProperty("Server", QStringLiteral("127.0.0.1"));
    widget->setProperty("Port", QString::number(cameras.Port()));
    widget->setProperty("Start", QStringLiteral("Yes"));
    widget->setProperty("url", QString::fromStdString(cameras.Url()));
  }
  form.show();
  auto* player = form.findChild<PlayerWidget*>();
  const auto* log = player->findChild<QWidget*>(QStringLiteral("Player(11)"));
  EXPECT_FALSE(log->isVisible());
  player->setExtendedControls(QStringLiteral("Yes"));
  EXPECT_TRUE(log->isVisible());
  QTest::qWait(kAWhile);
  EXPECT_TRUE(cameras.Requests().empty());
}

}  // namespace
}  // namespace orbelcast
