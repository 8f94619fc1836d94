// zeliIOHandle: the body of the C collection handle.
#include "plugins/zeliIOHandle.h"

#include "TCIMClass.h"
#include "TCIMInstance.h"
#include "log/ZelLog.h"

#include <memory>

// The arguments come container first; the fields keep the plugin first.
zeliIOHandle::zeliIOHandle(TContainer* container, IPlugin* plugin)
    : fPlugin(plugin), fContainer(container), fCurrentInstance(0) {}

zelStatusCode ZelCommitOpenInstance(zeliIOHandle& io) {
  std::unique_ptr<TCIMInstance> open(io.fCurrentInstance);
  io.fCurrentInstance = 0;
  if (!open)
    return zelStatusOK;
  try {
    open->AddToContainer();
  } catch (TZELException& e) {
    return ZelLogStatus(e.GetCode(), "zelAddClass: CIM class " + open->GetClass().GetName() +
                                         " threw exception " + e.what());
  }
  open.release();  // its class owns it now
  return zelStatusOK;
}
