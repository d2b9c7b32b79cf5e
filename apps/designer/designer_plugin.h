#pragma once

#include <QObject>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>

#include "designer/designer_widgets.h"

namespace orbelcast {

/// One of the widgets as Qt Designer and QUiLoader see it.
class DesignerWidget final : public QObject, public QDesignerCustomWidgetInterface {
  Q_OBJECT
  Q_INTERFACES(QDesignerCustomWidgetInterface)

 public:
  DesignerWidget(const WidgetDescription& description, QObject* parent);

  QString name() const override;
  QString group() const override;
  QString toolTip() const override;
  QString whatsThis() const override;
  QString includeFile() const override;
  QIcon icon() const override;
  bool isContainer() const override { return false; }
  QWidget* createWidget(QWidget* parent) override;
  QString domXml() const override;

  bool isInitialized() const override { return in_designer_; }
  /// Called by Designer alone: a form that a program loads is no design.
  void initialize(QDesignerFormEditorInterface* core) override;

 private:
  const WidgetDescription& description_;
  bool in_designer_ = false;
};

/// The plug-in: both widgets.
class DesignerPlugin final : public QObject, public QDesignerCustomWidgetCollectionInterface {
  Q_OBJECT
  Q_PLUGIN_METADATA(IID "org.qt-project.Qt.QDesignerCustomWidgetCollectionInterface")
  Q_INTERFACES(QDesignerCustomWidgetCollectionInterface)

 public:
  explicit DesignerPlugin(QObject* parent = nullptr);

  QList<QDesignerCustomWidgetInterface*> customWidgets() const override { return widgets_; }

 private:
  QList<QDesignerCustomWidgetInterface*> widgets_;
};

}  // namespace orbelcast
