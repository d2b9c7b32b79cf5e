#pragma once

#include <QSize>
#include <functional>
#include <span>
#include <string_view>
#include <vector>

class QWidget;

namespace orbelcast {

enum class PropertyKind { kText, kOther };

/// A property in Designer's editor. Its tool tip is `text`, without the backticks around names, and `note`.
struct PropertyDescription {
  const char* name;
  PropertyKind kind;
  std::string_view text;
  std::string_view note;
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
  std::span<const PropertyDescription> properties;
  std::function<QWidget*(QWidget* parent)> make;
  std::function<QWidget*(QWidget* parent)> make_for_design;
};

/// The player and the viewer.
const std::vector<WidgetDescription>& DesignerWidgets();

}  // namespace orbelcast
