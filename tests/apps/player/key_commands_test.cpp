// Keys that are commands, beside parts of the window that use keys themselves.

#include "player/key_commands.h"

#include <gtest/gtest.h>

#include <QLineEdit>
#include <QMenu>
#include <QTest>
#include <QToolButton>

namespace orbelcast {
namespace {

TEST(KeyCommandsTest, APartWithTheFocusKeepsItsKeysUntilThePictureIsClicked) {
  QWidget window;
  auto* const picture = new QWidget(&window);
  auto* const box = new QLineEdit(&window);
  auto* const button = new QToolButton(&window);
  box->move(0, 100);
  button->move(0, 200);
  button->setFocusPolicy(Qt::StrongFocus);
  std::string done;
  bool allowed = true;
  new KeyCommands(window, *picture,
                  {{.keys = {Qt::Key_1, Qt::Key_2}, .name = "Camera", .run = [&](int key) { done += "cam"[key]; }},
                   {.keys = {Qt::Key_Space},
                    .name = "Stop",
                    .run = [&](int) { done += '_'; },
                    .allowed = [&] { return allowed; }}});
  window.show();
  const auto type = [&window] {
    for (const auto key : {Qt::Key_2, Qt::Key_Space}) {
      QWidget* const focus = window.focusWidget();
      QTest::keyClick(focus != nullptr ? focus : &window, key);
    }
  };
  box->setFocus();
  type();
  EXPECT_EQ(box->text(), "2 ");
  EXPECT_EQ(done, "");
  button->setFocus(Qt::TabFocusReason);
  int presses = 0;
  QObject::connect(button, &QToolButton::clicked, button, [&] { ++presses; });
  type();
  EXPECT_EQ(done, "a");
  // One that was clicked does not take the space bar away from the picture.
  QTest::mouseClick(button, Qt::LeftButton);
  QTest::qWait(1);
  type();
  EXPECT_EQ(presses, 2);
  EXPECT_EQ(done, "aa_");
  box->setFocus();
  QTest::mouseClick(picture, Qt::LeftButton);
  allowed = false;
  type();
  EXPECT_EQ(done, "aa_a");
}

}  // namespace
}  // namespace orbelcast
