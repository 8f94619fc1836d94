// zeliIOHandle: the body of the C collection handle.
#include "plugins/zeliIOHandle.h"

// The arguments come container first; the fields keep the plugin first.
zeliIOHandle::zeliIOHandle(TContainer* container, IPlugin* plugin)
    : fPlugin(plugin), fContainer(container), fCurrentInstance(0) {}
