#pragma once

#include <QSize>
#include <functional>
#include <vector>

class QWidget;

namespace orbelcast {

enum class PropertyKind { kText, kOther };

/// A property in Designer's editor. `text` is told where the pointer rests on it.
struct PropertyDescription {
  const char* name;
  PropertyKind kind;
  const char* text;
};

/// A widget in Designer's box, texts in UTF-8.
struct WidgetDescription {
  const char* class_name;
  const char* header;
  const char* display_name;
  const char* object_name;
  const char* icon;
  const char* tool_tip;
  const char* whats_this;
  QSize size;  ///< Pixels, when it is dropped on a form.
  std::vector<PropertyDescription> properties;
  std::function<QWidget*(QWidget* parent)> make;
  std::function<QWidget*(QWidget* parent)> make_for_design;
};

/// The player and the viewer.
const std::vector<WidgetDescription>& DesignerWidgets();

}  // namespace orbelcast
