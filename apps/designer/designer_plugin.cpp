#include "designer/designer_plugin.h"

#include <QIcon>
#include <QXmlStreamWriter>

namespace orbelcast {

namespace {

void WriteGeometry(QXmlStreamWriter& xml, QSize size) {
  xml.writeStartElement("property");
  xml.writeAttribute("name", "geometry");
  xml.writeStartElement("rect");
  const std::pair<const char*, int> sides[] = {{"x", 0}, {"y", 0}, {"width", size.width()}, {"height", size.height()}};
  for (const auto& [side, length] : sides) {
    xml.writeTextElement(QLatin1String(side), QString::number(length));
  }
  xml.writeEndElement();
  xml.writeEndElement();
}

// The text that the property editor shows for each property; a property of kind text is a single line that is not
// translated.
void WriteProperties(QXmlStreamWriter& xml, std::span<const PropertyDescription> properties) {
  xml.writeStartElement("propertyspecifications");
  for (const PropertyDescription& property : properties) {
    xml.writeStartElement("tooltip");
    xml.writeAttribute("name", QLatin1String(property.name));
    xml.writeCharacters(QString::fromUtf8(property.text).remove('`') + QString::fromUtf8(property.note));
    xml.writeEndElement();
    if (property.kind != PropertyKind::kText) continue;
    xml.writeEmptyElement("stringpropertyspecification");
    xml.writeAttribute("name", QLatin1String(property.name));
    xml.writeAttribute("notr", "true");
    xml.writeAttribute("type", "singleline");
  }
  xml.writeEndElement();
}

}  // namespace

DesignerWidget::DesignerWidget(const WidgetDescription& description, QObject* parent)
    : QObject(parent), description_(description) {}

QString DesignerWidget::name() const {
  return QLatin1String(description_.class_name);
}
QString DesignerWidget::group() const {
  return QStringLiteral("Orbelcast");
}
QString DesignerWidget::toolTip() const {
  return QString::fromUtf8(description_.tool_tip);
}
QString DesignerWidget::whatsThis() const {
  return QString::fromUtf8(description_.whats_this);
}
QString DesignerWidget::includeFile() const {
  return QLatin1String(description_.header);
}
QIcon DesignerWidget::icon() const {
  return QIcon(QLatin1String(description_.icon));
}

QWidget* DesignerWidget::createWidget(QWidget* parent) {
  return in_designer_ ? description_.make_for_design(parent) : description_.make(parent);
}

QString DesignerWidget::domXml() const {
  QString text;
  QXmlStreamWriter xml(&text);
  xml.writeStartElement("ui");
  xml.writeAttribute("language", "c++");
  xml.writeAttribute("displayname", QString::fromUtf8(description_.display_name));
  xml.writeStartElement("widget");
  xml.writeAttribute("class", name());
  xml.writeAttribute("name", QLatin1String(description_.object_name));
  WriteGeometry(xml, description_.size);
  xml.writeEndElement();
  xml.writeStartElement("customwidgets");
  xml.writeStartElement("customwidget");
  xml.writeTextElement("class", name());
  xml.writeTextElement("extends", "QWidget");
  WriteProperties(xml, description_.properties);
  xml.writeEndElement();
  xml.writeEndElement();
  xml.writeEndElement();
  return text;
}

void DesignerWidget::initialize(QDesignerFormEditorInterface*) {
  in_designer_ = true;
}

DesignerPlugin::DesignerPlugin(QObject* parent) : QObject(parent) {
  for (const WidgetDescription& description : DesignerWidgets()) {
    widgets_.append(new DesignerWidget(description, this));
  }
}

}  // namespace orbelcast
