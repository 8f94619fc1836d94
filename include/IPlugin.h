// IPlugin: one registered plugin; identifies it in the log and to the managers.
#ifndef IPLUGIN_H
#define IPLUGIN_H

#include "zelcore.h"

#include <string>
#include <vector>

class IPluginCallbacks;
class TCIMClass;

class ZEL_API IPlugin {
public:
  virtual ~IPlugin();
  /// Not owned: the callbacks object deletes itself in PrepareForUnload().
  virtual IPluginCallbacks* GetCallbacks() const = 0;
  virtual void Initialize() = 0;
  virtual bool IsInitialized() const = 0;
  virtual std::string GetPath() const = 0;
  virtual std::string GetSpecificationPath() const = 0;
  /// The classes of the plugin's specification document, owned by the schema.
  virtual std::vector<TCIMClass*> GetClassesCollected() const = 0;
};

#endif
