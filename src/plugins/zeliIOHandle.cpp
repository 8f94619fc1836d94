// zeliIOHandle: the body of the C collection handle.
#include "zeliIOHandle.h"

zeliIOHandle::zeliIOHandle(TContainer* container, IPlugin* plugin)
    : fPlugin(plugin), fContainer(container), fCurrentInstance(0) {}
