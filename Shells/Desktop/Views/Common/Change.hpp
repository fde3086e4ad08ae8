#pragma once

#include <QObject>

#include <type_traits>
#include <utility>

namespace ostrel {

/// Sets a property, and emits its signal when the value has changed.
template <class Object, class Value>
void change(Object& object, Value& member, std::type_identity_t<Value> value, void (Object::*changed)()) {
  if (member == value) return;
  member = std::move(value);
  emit(object.*changed)();
}

}  // namespace ostrel
