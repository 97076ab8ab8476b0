// A text under construction in storage that belongs to someone else (a string's block), for the
// unit-only cores that write a string's text without knowing its shape.
#pragma once

#include <cstdint>

namespace ic::internal {

template <class Unit>
struct GrowableText {
  Unit* text;        ///< the storage; room for `capacity` units plus a terminator
  int32_t capacity;  ///< units that fit
  int32_t length;    ///< units written
  void* owner;       ///< handed to `grow`
  /// Makes room for at least `capacity` units keeping the first `length` units, and returns the
  /// (possibly moved) storage.
  Unit* (*grow)(void* owner, int32_t capacity, int32_t length);
  /// Units added to the needed size whenever the storage grows.
  int32_t growthExtra = 16;

  /// Room for `count` more units.
  void Reserve(int32_t count) {
    if (count > capacity - length) {
      capacity = length + count + growthExtra;
      text = grow(owner, capacity, length);
    }
  }
  void Put(Unit unit) {
    Reserve(1);
    text[length++] = unit;
  }
  void Put(const Unit* units, int32_t count) {
    if (count <= 0) return;
    Reserve(count);
    for (int32_t i = 0; i < count; ++i)
      text[length + i] = units[i];
    length += count;
  }
};

}  // namespace ic::internal
