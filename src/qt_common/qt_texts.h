#pragma once

#include <QString>
#include <string>

namespace orbelcast {

/// A text of unknown quality as Qt can show it: UTF-8 with replacements, line breaks and tabs kept, no other control
/// characters.
QString ToText(const std::string& text);
/// The same in one line: a blank for each line break and tab.
QString ToLine(const std::string& text);
std::string FromText(const QString& text);

}  // namespace orbelcast
