// TCPluginCallbacks: the core's side of a C plugin: its callback table behind the two
// object interfaces, and the handle the C side holds.
#ifndef TCPLUGINCALLBACKS_H
#define TCPLUGINCALLBACKS_H

#include "IPluginBasicQueryCallbacks.h"
#include "IPluginCallbacks.h"
#include "zelcore.h"

#include <string>
#include <vector>

/// Every non-zero status of a C callback is thrown as TZELException with that status.
class ZEL_API TCPluginCallbacks : public IPluginCallbacks, public IPluginBasicQueryCallbacks {
public:
  /// Copies the table and registers with the plugin manager, which must exist.
  explicit TCPluginCallbacks(zelPluginCallbacks* callbacks);
  virtual ~TCPluginCallbacks();

  virtual int GetType() override;
  virtual std::string GetName() override;
  virtual std::string GetVersion() override;
  virtual std::string GetInterfaceVersion() override;
  /// On success deletes this object; on failure it survives and may be retried.
  virtual void PrepareForUnload() override;
  /// Copies the plugin's path first, then calls the C Init.
  virtual void Init() override;
  virtual void DeInit() override;
  virtual int GetURLType() override;
  /// Commits the instance left open when the C GetData succeeds, drops it otherwise.
  virtual void GetData(TContainer* container, std::vector<TCIMClass*>& classes) override;

  /// The plugin manager's handle for this plugin.
  IPlugin* GetPluginHandle();
  /// Owned by this object; null before Init().
  char* GetPluginPath();

private:
  TCPluginCallbacks(TCPluginCallbacks const&);
  TCPluginCallbacks& operator=(TCPluginCallbacks const&);

  void (*fReserved)(void);
  zelStatusCode (*fInit)(TCPluginCallbacks* self);
  zelStatusCode (*fDeInit)(TCPluginCallbacks* self);
  zelStatusCode (*fGetData)(TCPluginCallbacks* self, zelIOHandle* io, const char** classNames,
                            int classCount);
  zelPluginInfo (*fGetInfo)(TCPluginCallbacks* self);
  zelStatusCode (*fPrepareForUnload)(TCPluginCallbacks* self);
  IPlugin* fPluginHandle;
  char* fPluginPath;
};

#endif
