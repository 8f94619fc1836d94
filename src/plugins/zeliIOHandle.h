// zeliIOHandle: the body of the C collection handle: the calling plugin, the container that
// receives the instances and the instance being built. Lives for one GetData call.
#ifndef ZELIIOHANDLE_H
#define ZELIIOHANDLE_H

#include "zelcore.h"

class IPlugin;
class TCIMInstance;
class TContainer;

class ZEL_API zeliIOHandle {
public:
  zeliIOHandle(TContainer* container, IPlugin* plugin);

  IPlugin* fPlugin;
  TContainer* fContainer;
  TCIMInstance* fCurrentInstance; ///< Not owned until committed; null when none is open.
};

/// Commits the open instance, if any, to its class and clears it. A refused instance is
/// deleted after the line "zelAddClass: CIM class ... threw exception ..."; its code returns.
zelStatusCode ZelCommitOpenInstance(zeliIOHandle& io);

/// The opaque C handle is the body itself.
struct zelIOHandle : public zeliIOHandle {
  zelIOHandle(TContainer* container, IPlugin* plugin) : zeliIOHandle(container, plugin) {}
};

#endif
