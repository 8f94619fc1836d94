// TCPluginCallbacks: the C callback table behind IPluginCallbacks and
// IPluginBasicQueryCallbacks; every non-zero C status becomes a TZELException.
#include "TCPluginCallbacks.h"

#include "IPlugin.h"
#include "IPluginManager.h"
#include "TCIMClass.h"
#include "TCIMInstance.h"
#include "TRootObject.h"
#include "TZELException.h"
#include "plugins/zeliIOHandle.h"

#include <cstring>

static void ThrowUnlessOK(zelStatusCode status) {
  if (status != zelStatusOK)
    throw TZELException(status);
}

TCPluginCallbacks::TCPluginCallbacks(zelPluginCallbacks* callbacks)
    : fReserved(callbacks->Reserved), fInit(callbacks->Init), fDeInit(callbacks->DeInit),
      fGetData(callbacks->GetData), fGetInfo(callbacks->GetInfo),
      fPrepareForUnload(callbacks->PrepareForUnload), fPluginHandle(0), fPluginPath(0) {
  fPluginHandle = TRootObject::GetPluginManager()->RegisterPlugin(this);
}

TCPluginCallbacks::~TCPluginCallbacks() { delete[] fPluginPath; }

int TCPluginCallbacks::GetType() { return fGetInfo(this).Type; }

std::string TCPluginCallbacks::GetName() { return fGetInfo(this).Name; }

std::string TCPluginCallbacks::GetVersion() { return fGetInfo(this).Version; }

std::string TCPluginCallbacks::GetInterfaceVersion() { return fGetInfo(this).InterfaceVersion; }

void TCPluginCallbacks::PrepareForUnload() {
  ThrowUnlessOK(fPrepareForUnload(this));
  delete this;
}

void TCPluginCallbacks::Init() {
  std::string path = fPluginHandle->GetPath();
  delete[] fPluginPath;
  fPluginPath = new char[path.size() + 1];
  std::memcpy(fPluginPath, path.c_str(), path.size() + 1);
  ThrowUnlessOK(fInit(this));
}

void TCPluginCallbacks::DeInit() { ThrowUnlessOK(fDeInit(this)); }

int TCPluginCallbacks::GetURLType() { return fGetInfo(this).URLType; }

void TCPluginCallbacks::GetData(TContainer* container, std::vector<TCIMClass*>& classes) {
  zelIOHandle io(container, fPluginHandle);
  std::vector<const char*> names;
  names.reserve(classes.size());
  for (TCIMClass* cls : classes)
    names.push_back(cls->GetName().c_str()); // The classes outlive the call.

  zelStatusCode status =
      fGetData(this, &io, names.data(), static_cast<int>(names.size()));
  if (status == zelStatusOK) {
    status = ZelCommitOpenInstance(io);
  } else {
    delete io.fCurrentInstance;  // a failed plugin's last instance is dropped
    io.fCurrentInstance = 0;
  }
  ThrowUnlessOK(status);
}

IPlugin* TCPluginCallbacks::GetPluginHandle() { return fPluginHandle; }

char* TCPluginCallbacks::GetPluginPath() { return fPluginPath; }
