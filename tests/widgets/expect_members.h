#pragma once

#include <gtest/gtest.h>

#include <QMetaMethod>
#include <QMetaProperty>
#include <string>

namespace orbelcast {

/// A widget has the properties that its interface's table names, as writable as there.
void ExpectProperties(const QMetaObject& meta, const auto& entries) {
  for (const auto& entry : entries) {
    const int index = meta.indexOfProperty(std::string(entry.name).c_str());
    ASSERT_GE(index, 0) << entry.name;
    EXPECT_EQ(meta.property(index).isWritable(), entry.Writable()) << entry.name;
  }
}

/// It has a slot for each method, or a signal for each event, with as many arguments.
void ExpectMembers(const QMetaObject& meta, const auto& entries, QMetaMethod::MethodType type) {
  for (const auto& entry : entries) {
    bool found = false;
    for (int i = 0; i < meta.methodCount(); ++i) {
      const QMetaMethod method = meta.method(i);
      found |= method.methodType() == type && method.name().toStdString() == entry.name &&
               static_cast<std::size_t>(method.parameterCount()) == entry.arguments.size();
    }
    EXPECT_TRUE(found) << entry.name;
  }
}

}  // namespace orbelcast
