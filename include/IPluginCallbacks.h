// IPluginCallbacks: a plugin's identity and lifecycle, as the core drives it.
#ifndef IPLUGINCALLBACKS_H
#define IPLUGINCALLBACKS_H

#include "zelcore.h"

#include <string>

class ZEL_API IPluginCallbacks {
public:
  virtual ~IPluginCallbacks();
  virtual int GetType() = 0;
  virtual std::string GetName() = 0;
  virtual std::string GetVersion() = 0;
  virtual std::string GetInterfaceVersion() = 0;
  virtual void PrepareForUnload() = 0;
  virtual void Init() = 0;
  virtual void DeInit() = 0;
  virtual int GetURLType() = 0;
};

#endif
