// IPluginBasicQueryCallbacks: the collecting side of a plugin, found by a dynamic cast from
// its IPluginCallbacks.
#ifndef IPLUGINBASICQUERYCALLBACKS_H
#define IPLUGINBASICQUERYCALLBACKS_H

#include "zelcore.h"

#include <vector>

class TCIMClass;
class TContainer;

class ZEL_API IPluginBasicQueryCallbacks {
public:
  virtual ~IPluginBasicQueryCallbacks();
  /// Adds instances of the classes to the container; failures throw TZELException.
  virtual void GetData(TContainer* container, std::vector<TCIMClass*>& classes) = 0;
};

#endif
