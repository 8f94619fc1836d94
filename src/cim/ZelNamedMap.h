// Lookups, enumerations and name comparisons over the maps that own schema objects through
// shared pointers, keyed by normalised name (or, for instances, by path).
#ifndef ZELNAMEDMAP_H
#define ZELNAMEDMAP_H

#include "cim/ZelText.h"

#include <string>
#include <utility>
#include <vector>

/// The map position of the normalised name, and whether it is there.
template <class Map>
std::pair<typename Map::const_iterator, bool> ZelLookup(Map const& map,
                                                        std::string const& name) {
  typename Map::const_iterator it = map.find(ZelNormalName(name).View());
  return std::make_pair(it, it != map.end());
}

/// The object under the normalised name, or null.
template <class Map>
typename Map::mapped_type::element_type* ZelFindIn(Map const& map, std::string const& name) {
  std::pair<typename Map::const_iterator, bool> found = ZelLookup(map, name);
  return found.second ? found.first->second.get() : 0;
}

/// Appends every object in ascending key order.
template <class Map>
void ZelAppendAll(Map const& map, std::vector<typename Map::mapped_type::element_type*>& out) {
  out.reserve(out.size() + map.size());
  for (typename Map::const_iterator it = map.begin(); it != map.end(); ++it)
    out.push_back(it->second.get());
}

/// Every object, in ascending key order.
template <class Map>
std::vector<typename Map::mapped_type::element_type*> ZelEnumerate(Map const& map) {
  std::vector<typename Map::mapped_type::element_type*> objects;
  ZelAppendAll(map, objects);
  return objects;
}

#endif
