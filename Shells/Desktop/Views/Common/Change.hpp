#pragma once

#include <QObject>

#include <type_traits>
#include <utility>

namespace ostrel {

/// Gives a property its value, and tells of it when that is another one.
template <class Object, class Value>
void change(Object& object, Value& member, std::type_identity_t<Value> value, void (Object::*changed)()) {
  if (member == value) return;
  member = std::move(value);
  emit(object.*changed)();
}

}  // namespace ostrel
