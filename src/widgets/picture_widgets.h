#pragma once

#include <QImage>
#include <QWidget>
#include <functional>

#include "toolkit/surface.h"
#include "widgets/mirror.h"

namespace orbelcast {

/// The common part of picture boxes and images: presses and drops.
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

/// A picture box: paints a picture that nobody has seen straight into the window's memory, and anything else from the
/// box's own.
class PictureWidget final : public DropWidget {
 public:
  PictureWidget(PictureBox& box, const Screen& screen, QWidget* parent);

  /// The surface as Qt sees it, without a copy; valid until the surface is drawn on or sized.
  QImage View() const;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  bool PaintStraight(const QRect& part, int parts);

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
