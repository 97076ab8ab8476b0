// Inserting into the ordered maps of the resource strings: a map that would outgrow its maximum
// raises std::length_error("map/set too long") instead of growing.
#pragma once

#include <stdexcept>

namespace ic::resources::internal {

/// Throws std::length_error("map/set too long") if the container cannot take one more element.
template <class Container>
void EnsureRoomForOne(const Container& container) {
  if (container.size() >= container.max_size()) throw std::length_error("map/set too long");
}

/// map[key] = value by lower bound: overwrites an existing entry in place, else inserts at the
/// found place (after checking for room).
template <class Map, class Key, class Value>
void AssignEntry(Map& map, const Key& key, const Value& value) {
  auto at = map.lower_bound(key);
  if (at != map.end() && !map.key_comp()(key, at->first)) {
    at->second = value;
    return;
  }
  EnsureRoomForOne(map);
  map.emplace_hint(at, key, value);
}

}  // namespace ic::resources::internal
