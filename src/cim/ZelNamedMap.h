// Lookups and enumerations over the maps that own schema objects through shared pointers,
// keyed by normalised name (or, for instances, by path).
#ifndef ZELNAMEDMAP_H
#define ZELNAMEDMAP_H

#include "TContainerImpl.h"

#include <string>
#include <vector>

/// The object under the normalised name, or null.
template <class Map>
typename Map::mapped_type::element_type* ZelFindIn(Map const& map, std::string const& name) {
  typename Map::const_iterator it = map.find(TContainerImpl::NormalizeName(name));
  return it == map.end() ? 0 : it->second.get();
}

/// Every object, in ascending key order; the vector is sized once.
template <class Map>
std::vector<typename Map::mapped_type::element_type*> ZelEnumerate(Map const& map) {
  std::vector<typename Map::mapped_type::element_type*> objects;
  objects.reserve(map.size());
  for (typename Map::const_iterator it = map.begin(); it != map.end(); ++it)
    objects.push_back(it->second.get());
  return objects;
}

#endif
