#pragma once

#include <QLabel>
#include <QPixmap>
#include <QWidget>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/platform.h"
#include "platform/screen.h"
#include "toolkit/controls.h"

namespace orbelcast {

/// A text of unknown quality as Qt can show it: UTF-8 with replacements, line breaks and tabs kept, no other control
/// characters.
QString ToText(const std::string& text);
std::string FromText(const QString& text);

/// Services that outlive who holds this.
inline std::shared_ptr<Platform> Lent(Platform& platform) {
  return {std::shared_ptr<void>(), &platform};
}

/// A surface as Qt sees it, without a copy; valid until the surface is drawn on or sized.
QImage ViewOf(const Surface& surface, QImage::Format format);

/// A widget's size in twips: width, height.
std::pair<float, float> SizeInTwips(const QWidget& widget, const Screen& screen);

/// The font of a small control: the family that the control names, at the size that its design was made for.
QFont SmallFont(const std::string& family);

/// The screen that Qt shows the application on.
class QtScreen final : public Screen {
 public:
  int TwipsPerPixelX() const override;
  int TwipsPerPixelY() const override;
  int Width() const override;
  int Height() const override;
};

/// Keeps a widget at its child control's place, visibility and tool tip. The control outlives the mirror.
class Mirror {
 public:
  Mirror(ChildControl& control, QWidget& widget, const Screen& screen);
  Mirror(const Mirror&) = delete;
  Mirror& operator=(const Mirror&) = delete;

  /// Adds a connection that ends with the mirror.
  void Keep(Connection connection) { connections_.push_back(std::move(connection)); }
  /// Tells the control that a button went down.
  void Press(Qt::MouseButton button);

 private:
  void Place();
  void SetToolTip(const std::string& text);

  ChildControl& control_;
  QWidget& widget_;
  const Screen& screen_;
  std::vector<Connection> connections_;
};

/// A label: plain text, as it is.
class LabelWidget final : public QLabel {
 public:
  LabelWidget(Label& label, const Screen& screen, QWidget* parent);

 protected:
  void mousePressEvent(QMouseEvent* event) override;

 private:
  Mirror mirror_;
};

/// What picture boxes and images have in common: presses and drops.
class DropWidget : public QWidget {
 public:
  DropWidget(ChildControl& control, std::function<void(Drop&)>& on_drop, const Screen& screen, QWidget* parent);

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  Mirror& Mirrored() { return mirror_; }

 private:
  std::function<void(Drop&)>& on_drop_;
  const Screen& screen_;
  Mirror mirror_;
};

/// A picture box: paints the box's surface where it lies in memory.
class PictureWidget final : public DropWidget {
 public:
  PictureWidget(PictureBox& box, const Screen& screen, QWidget* parent);

  /// The surface as Qt sees it, without a copy; valid until the surface is drawn on or sized.
  QImage View() const;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  PictureBox& box_;
};

/// An image: paints its picture stretched to the widget.
class ImageWidget final : public DropWidget {
 public:
  ImageWidget(Image& image, const Screen& screen, QWidget* parent);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  Image& image_;
};

}  // namespace orbelcast
