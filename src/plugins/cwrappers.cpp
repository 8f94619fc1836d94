// The exported C functions, in families ordered as in zelcore.h.
#include "plugins/cwrappers.h"

#include "ILogger.h"
#include "IPluginManager.h"
#include "TCIMClass.h"
#include "TCIMDateTime.h"
#include "TCIMInstance.h"
#include "TCIMPropertyDecl.h"
#include "TCIMReference.h"
#include "TCIMSchemaHelper.h"
#include "TCPluginCallbacks.h"
#include "TContainer.h"
#include "TOSSpecific.h"
#include "TRootObject.h"
#include "plugins/zeliIOHandle.h"

#include <cstring>
#include <new>

#undef NDEBUG // zelRegisterPlugin's checks stay in release builds.
#include <cassert>

// ---- Status codes -------------------------------------------------------------------------

const char* const kZELErrorMessages[] = {
#define ZEL_STATUS(name, value) #name,
#include "zelStatus.def"
#undef ZEL_STATUS
};
static_assert(sizeof kZELErrorMessages / sizeof *kZELErrorMessages == zelStatusEnd + 1,
              "one name per status code");

void CoreInit(void) {}

const char* zelTranslateStatusCode(zelStatusCode code) {
  return kZELErrorMessages[code]; // No range check on purpose: only library codes come here.
}

// ---- Value arrays -------------------------------------------------------------------------

zelStatusCode zelNewCIMValueArray(zelCIMValueArray** pArray) {
  if (!pArray)
    return ZelNullArgument("zelNewCIMValueArray: NULL array parameter");
  *pArray = new (std::nothrow) zelCIMValueArray;
  return *pArray ? zelStatusOK : zelStatusOutOfMemory;
}

zelStatusCode zelDeleteCIMValueArray(zelCIMValueArray* pArray) {
  if (!pArray)
    return ZelNullArgument("zelDeleteCIMValueArray: NULL array parameter");
  delete pArray;
  return zelStatusOK;
}

// Appends one value built from the C argument.
static zelStatusCode ArrayAppend(zelCIMValueArray* pArray, TCIMValue const& value) {
  pArray->fValues.push_back(value);
  return zelStatusOK;
}

zelStatusCode zelArrayAddBoolean(zelCIMValueArray* pArray, int32_t value) {
  if (!pArray)
    return ZelNullArgument("zelArrayAddBoolean: NULL array parameter");
  return ArrayAppend(pArray, TCIMValue(value != 0));
}

zelStatusCode zelArrayAddUint8(zelCIMValueArray* pArray, uint8_t value) {
  if (!pArray)
    return ZelNullArgument("zelArrayAddUint8: NULL array parameter");
  return ArrayAppend(pArray, TCIMValue(static_cast<unsigned char>(value)));
}

zelStatusCode zelArrayAddSint8(zelCIMValueArray* pArray, int8_t value) {
  if (!pArray) // The Uint8 text on purpose.
    return ZelNullArgument("zelArrayAddUint8: NULL array parameter");
  return ArrayAppend(pArray, TCIMValue(static_cast<signed char>(value)));
}

zelStatusCode zelArrayAddUint16(zelCIMValueArray* pArray, uint16_t value) {
  if (!pArray)
    return ZelNullArgument("zelArrayAddUint16: NULL array parameter");
  return ArrayAppend(pArray, TCIMValue(static_cast<unsigned short>(value)));
}

zelStatusCode zelArrayAddSint16(zelCIMValueArray* pArray, int16_t value) {
  if (!pArray)
    return ZelNullArgument("zelArrayAddSint16: NULL array parameter");
  return ArrayAppend(pArray, TCIMValue(static_cast<short>(value)));
}

zelStatusCode zelArrayAddUint32(zelCIMValueArray* pArray, uint32_t value) {
  if (!pArray)
    return ZelNullArgument("zelArrayAddUint32: NULL array parameter");
  return ArrayAppend(pArray, TCIMValue(static_cast<unsigned int>(value)));
}

zelStatusCode zelArrayAddSint32(zelCIMValueArray* pArray, int32_t value) {
  if (!pArray)
    return ZelNullArgument("zelArrayAddSint32: NULL array parameter");
  return ArrayAppend(pArray, TCIMValue(static_cast<int>(value)));
}

zelStatusCode zelArrayAddUint64(zelCIMValueArray* pArray, uint64_t value) {
  if (!pArray)
    return ZelNullArgument("zelArrayAddUint64: NULL array parameter");
  return ArrayAppend(pArray, TCIMValue(static_cast<unsigned long>(value)));
}

zelStatusCode zelArrayAddSint64(zelCIMValueArray* pArray, int64_t value) {
  if (!pArray)
    return ZelNullArgument("zelArrayAddSint64: NULL array parameter");
  return ArrayAppend(pArray, TCIMValue(static_cast<long>(value)));
}

zelStatusCode zelArrayAddString(zelCIMValueArray* pArray, const char* value) {
  if (!pArray || !value)
    return ZelNullArgument("zelArrayAddString: NULL array and/or value parameter");
  return ArrayAppend(pArray, TCIMValue(value));
}

zelStatusCode zelArrayAddReference(zelCIMValueArray* pArray, TCIMReference* value) {
  if (!pArray || !value)
    return ZelNullArgument("zelArrayAddReference: NULL array and/or value parameter");
  return ZelGuard([&] { ArrayAppend(pArray, TCIMValue(*value)); }); // Resolution may throw.
}

zelStatusCode zelArrayAddDateTime(zelCIMValueArray* pArray, TCIMDateTime* value) {
  if (!pArray || !value)
    return ZelNullArgument("zelArrayAddDateTime: NULL array and/or value parameter");
  return ArrayAppend(pArray, TCIMValue(*value));
}

// ---- Date-times ---------------------------------------------------------------------------

zelStatusCode zelNewCIMDateTime(TCIMDateTime** dt) {
  if (!dt)
    return ZelNullArgument("zelNewCIMDateTime: NULL datetime parameter");
  *dt = new (std::nothrow) TCIMDateTime;
  return *dt ? zelStatusOK : zelStatusOutOfMemory;
}

zelStatusCode zelGetLocalTime(TCIMDateTime* dt) {
  if (!dt) // Trailing blank and no "parameter": the established text.
    return ZelNullArgument("zelGetLocalTime: NULL datetime ");
  return ZelGuard([&] { *dt = TOSSpecific::GetLocalTime(); });
}

zelStatusCode zelDeleteCIMDateTime(TCIMDateTime* dt) {
  if (!dt)
    return ZelNullArgument("zelDeleteCIMDateTime: NULL datetime parameter");
  delete dt;
  return zelStatusOK;
}

zelStatusCode zelSetDateTime(TCIMDateTime* dt, unsigned short year, unsigned short month,
                             unsigned int day, unsigned short hour, unsigned short minute,
                             unsigned short second, unsigned int microseconds, short utcOffset) {
  if (!dt)
    return ZelNullArgument("zelSetDateTime: NULL datetime parameter");
  return ZelGuard([&] { dt->Set(year, month, day, hour, minute, second, microseconds, utcOffset); });
}

zelStatusCode zelSetDateTimeInterval(TCIMDateTime* dt, unsigned int days, unsigned short hours,
                                     unsigned short minutes, unsigned short seconds,
                                     unsigned int microseconds) {
  if (!dt)
    return ZelNullArgument("zelSetDateTimeInterval: NULL datetime parameter");
  return ZelGuard([&] { dt->Set(days, hours, minutes, seconds, microseconds); });
}

zelStatusCode zelSetDateTimeString(TCIMDateTime* dt, const char* str) {
  if (!dt || !str)
    return ZelNullArgument("zelSetDateTimeString: NULL datetime and/or str parameter");
  return ZelGuard([&] { dt->Set(std::string(str)); });
}

// ---- References ---------------------------------------------------------------------------

zelStatusCode zelNewCIMReference(TCIMReference** ref, zelIOHandle* handle) {
  if (!handle)
    return ZelNullArgument("zelNewCIMReference: NULL zelIOHandle parameter");
  if (!ref)
    return ZelNullArgument("zelNewCIMReference: NULL ref parameter");
  *ref = new (std::nothrow) TCIMReference(handle->fContainer);
  return *ref ? zelStatusOK : zelStatusOutOfMemory;
}

zelStatusCode zelDeleteCIMReference(TCIMReference* ref) {
  if (!ref)
    return ZelNullArgument("zelDeleteCIMReference: NULL ref parameter");
  delete ref;
  return zelStatusOK;
}

zelStatusCode zelSetReferencePath(TCIMReference* ref, const char* objectName) {
  if (!ref || !objectName)
    return ZelNullArgument("zelSetReferencePath: NULL ref and/or objectName parameter");
  return ZelGuard([&] { ref->SetPath(objectName); });
}

zelStatusCode zelSetReferenceClassName(TCIMReference* ref, const char* className) {
  if (!ref || !className)
    return ZelNullArgument("zelSetReferenceClassName: NULL ref and/or className parameter");
  return ZelGuard([&] { ref->SetClassName(className); });
}

// Adds one key binding built from the C argument.
static zelStatusCode ReferenceAdd(TCIMReference* ref, const char* key, TCIMValue const& value) {
  return ZelGuard([&] { ref->AddKeyValue(key, value); });
}

zelStatusCode zelReferenceAddBoolean(TCIMReference* ref, const char* key, int32_t value) {
  if (!ref || !key)
    return ZelNullArgument("zelReferenceAddBoolean: NULL ref and/or key parameter");
  return ReferenceAdd(ref, key, TCIMValue(value != 0));
}

zelStatusCode zelReferenceAddUint8(TCIMReference* ref, const char* key, uint8_t value) {
  if (!ref || !key)
    return ZelNullArgument("zelReferenceAddUint8: NULL ref and/or key parameter");
  return ReferenceAdd(ref, key, TCIMValue(static_cast<unsigned char>(value)));
}

zelStatusCode zelReferenceAddSint8(TCIMReference* ref, const char* key, int8_t value) {
  if (!ref || !key)
    return ZelNullArgument("zelReferenceAddSint8: NULL ref and/or key parameter");
  return ReferenceAdd(ref, key, TCIMValue(static_cast<signed char>(value)));
}

zelStatusCode zelReferenceAddUint16(TCIMReference* ref, const char* key, uint16_t value) {
  if (!ref || !key)
    return ZelNullArgument("zelReferenceAddUint16: NULL ref and/or key parameter");
  return ReferenceAdd(ref, key, TCIMValue(static_cast<unsigned short>(value)));
}

zelStatusCode zelReferenceAddSint16(TCIMReference* ref, const char* key, int16_t value) {
  if (!ref || !key)
    return ZelNullArgument("zelReferenceAddSint16: NULL ref and/or key parameter");
  return ReferenceAdd(ref, key, TCIMValue(static_cast<short>(value)));
}

zelStatusCode zelReferenceAddUint32(TCIMReference* ref, const char* key, uint32_t value) {
  if (!ref || !key)
    return ZelNullArgument("zelReferenceAddUint32: NULL ref and/or key parameter");
  return ReferenceAdd(ref, key, TCIMValue(static_cast<unsigned int>(value)));
}

zelStatusCode zelReferenceAddSint32(TCIMReference* ref, const char* key, int32_t value) {
  if (!ref || !key)
    return ZelNullArgument("zelReferenceAddSint32: NULL ref and/or key parameter");
  return ReferenceAdd(ref, key, TCIMValue(static_cast<int>(value)));
}

zelStatusCode zelReferenceAddUint64(TCIMReference* ref, const char* key, uint64_t value) {
  if (!ref || !key)
    return ZelNullArgument("zelReferenceAddUint64: NULL ref and/or key parameter");
  return ReferenceAdd(ref, key, TCIMValue(static_cast<unsigned long>(value)));
}

zelStatusCode zelReferenceAddSint64(TCIMReference* ref, const char* key, int64_t value) {
  if (!ref || !key)
    return ZelNullArgument("zelReferenceAddSint64: NULL ref and/or key parameter");
  return ReferenceAdd(ref, key, TCIMValue(static_cast<long>(value)));
}

zelStatusCode zelReferenceAddString(TCIMReference* ref, const char* key, const char* value) {
  if (!ref || !key || !value)
    return ZelNullArgument("zelReferenceAddString: NULL ref, key and/or value parameter");
  return ReferenceAdd(ref, key, TCIMValue(value));
}

zelStatusCode zelReferenceAddReference(TCIMReference* ref, const char* key, TCIMReference* value) {
  if (!ref || !key || !value)
    return ZelNullArgument("zelReferenceAddReference: NULL ref, key and/or value parameter");
  return ZelGuard([&] { ref->AddKeyValue(key, TCIMValue(*value)); }); // Resolution may throw.
}

zelStatusCode zelReferenceAddDateTime(TCIMReference* ref, const char* key, TCIMDateTime* value) {
  if (!ref || !key || !value)
    return ZelNullArgument("zelReferenceAddDateTime: NULL ref, key and/or value parameter");
  return ReferenceAdd(ref, key, TCIMValue(*value));
}

// ---- Plugin registration ------------------------------------------------------------------

// Expands NULL before assert spells the condition, so the message reads "callbacks != __null".
#define ZEL_ASSERT(condition) assert(condition)

zelStatusCode zelRegisterPlugin(zelPluginCallbacks* callbacks,
                                TCPluginCallbacks** pluginHandle) {
  ZEL_ASSERT(callbacks != NULL);
  ZEL_ASSERT(pluginHandle != NULL);
  *pluginHandle = new TCPluginCallbacks(callbacks);
  return zelStatusOK;
}

zelStatusCode zelGetHandle(TCPluginCallbacks* self, IPlugin** handle) {
  *handle = self->GetPluginHandle();
  return zelStatusOK;
}

zelStatusCode zelGetPluginPath(TCPluginCallbacks* self, char** path) {
  if (!path)
    return ZelNullArgument("zelGetPluginPath: NULL path parameter", self->GetPluginHandle());
  *path = self->GetPluginPath();
  return zelStatusOK;
}

// ---- Collection ---------------------------------------------------------------------------

zelStatusCode zelAddClass(zelIOHandle* handle, const char* className) {
  if (!handle)
    return ZelNullArgument("zelAddClass: NULL zelIOHandle parameter");
  if (!className)
    return ZelNullArgument("zelAddClass: NULL name parameter", handle->fPlugin);
  ZelLogLazy(zelLogVerbose, handle->fPlugin,
             [&] { return "zelAddClass(" + std::string(className) + ")"; });

  if (zelStatusCode refused = ZelCommitOpenInstance(*handle))
    return refused;

  TCIMClass* cls;
  try {
    cls = handle->fContainer->GetClass(className);
  } catch (TZELException& e) {
    return ZelLogStatus(e.GetCode(), "zelAddClass: GetClass(" + std::string(className) +
                                         ") threw exception " + e.what());
  }
  try {
    handle->fCurrentInstance = handle->fContainer->AllocateInstance(cls);
  } catch (TZELException& e) {
    return ZelLogStatus(e.GetCode(), "zelAddClass: Allocate instance (CIM class " + cls->GetName() +
                                         ") threw exception " + e.what());
  } catch (std::bad_alloc&) {
    return ZelLogStatus(zelStatusOutOfMemory,
                        "zelAddClass: CIM class " + cls->GetName() + ": no memory");
  }
  return zelStatusOK;
}

zelStatusCode zelAddProperty(zelIOHandle* handle, const char* name, const char* value) {
  if (!handle)
    return ZelNullArgument("zelAddProperty: NULL zelIOHandle parameter");
  if (!name || !value)
    return ZelNullArgument("zelAddProperty: NULL name and/or value parameter", handle->fPlugin);
  ZelLogLazy(zelLogVerbose, handle->fPlugin, [&] {
    return "zelAddProperty(" + std::string(name) + ", value=" + std::string(value) + ")";
  });
  TCIMInstance* instance = handle->fCurrentInstance;
  if (!instance)
    return ZelLogStatus(zelStatusInvalidClass, "zelAddProperty: no current instance");
  try {
    TCIMPropertyDecl& decl = instance->GetClass().GetPropertyDecl(name);
    std::string text(value);
    instance->SetPropertyValue(name, TCIMValue(decl.GetType(), text, *handle->fContainer));
  } catch (TZELException& e) {
    return ZelLogStatus(e.GetCode(), "zelAddProperty: CIM class " + instance->GetClass().GetName() +
                                         " threw exception " + e.what() + " name='" + name + "'");
  }
  return zelStatusOK;
}

zelStatusCode zelAddCIMValueProperty(zelIOHandle* handle, const char* name,
                                     const TCIMValue* value) {
  if (!handle)
    return ZelNullArgument("zelAddCIMValueProperty: NULL zelIOHandle parameter");
  if (!name)
    return ZelNullArgument("zelAddCIMValueProperty: NULL name parameter", handle->fPlugin);
  // One literal for every typed member.
  ZelLogLazy(zelLogVerbose, handle->fPlugin, [&] {
    // A NULL value has no text of its own.
    return "zelAdd<>Property(" + std::string(name) +
           ", value=" + (value->IsNull() ? std::string("NULL") : value->ToString(/*radix=*/10)) +
           ")";
  });
  TCIMInstance* instance = handle->fCurrentInstance;
  if (!instance)
    return ZelLogStatus(zelStatusInvalidClass, "zelAddProperty: no current instance");
  try {
    instance->SetPropertyValue(name, *value);
  } catch (TZELException& e) {
    // Without the "zel" of the other messages, on purpose.
    return ZelLogStatus(e.GetCode(), "AddProperty: CIM class " + instance->GetClass().GetName() +
                                         " threw exception " + e.what());
  }
  return zelStatusOK;
}

// For values whose making can fail (the element check of an array, the resolution of a
// reference): the failure's code is the result.
template <class Build>
static zelStatusCode AddBuiltValue(zelIOHandle* handle, const char* name, Build build) {
  zelStatusCode added = zelStatusOK;
  zelStatusCode built = ZelGuard([&] {
    TCIMValue value = build();
    added = zelAddCIMValueProperty(handle, name, &value);
  });
  return built != zelStatusOK ? built : added;
}

zelStatusCode zelAddBooleanProperty(zelIOHandle* handle, const char* name, int value) {
  TCIMValue cimValue(value != 0);
  return zelAddCIMValueProperty(handle, name, &cimValue);
}

zelStatusCode zelAddUint8Property(zelIOHandle* handle, const char* name, uint8_t value) {
  TCIMValue cimValue(static_cast<unsigned char>(value));
  return zelAddCIMValueProperty(handle, name, &cimValue);
}

zelStatusCode zelAddSint8Property(zelIOHandle* handle, const char* name, int8_t value) {
  TCIMValue cimValue(static_cast<signed char>(value));
  return zelAddCIMValueProperty(handle, name, &cimValue);
}

zelStatusCode zelAddUint16Property(zelIOHandle* handle, const char* name, uint16_t value) {
  TCIMValue cimValue(static_cast<unsigned short>(value));
  return zelAddCIMValueProperty(handle, name, &cimValue);
}

zelStatusCode zelAddSint16Property(zelIOHandle* handle, const char* name, int16_t value) {
  TCIMValue cimValue(static_cast<short>(value));
  return zelAddCIMValueProperty(handle, name, &cimValue);
}

zelStatusCode zelAddUint32Property(zelIOHandle* handle, const char* name, uint32_t value) {
  TCIMValue cimValue(static_cast<unsigned int>(value));
  return zelAddCIMValueProperty(handle, name, &cimValue);
}

zelStatusCode zelAddSint32Property(zelIOHandle* handle, const char* name, int32_t value) {
  TCIMValue cimValue(static_cast<int>(value));
  return zelAddCIMValueProperty(handle, name, &cimValue);
}

zelStatusCode zelAddUint64Property(zelIOHandle* handle, const char* name, uint64_t value) {
  TCIMValue cimValue(static_cast<unsigned long>(value));
  return zelAddCIMValueProperty(handle, name, &cimValue);
}

zelStatusCode zelAddSint64Property(zelIOHandle* handle, const char* name, int64_t value) {
  TCIMValue cimValue(static_cast<long>(value));
  return zelAddCIMValueProperty(handle, name, &cimValue);
}

zelStatusCode zelAddStringProperty(zelIOHandle* handle, const char* name, const char* value) {
  if (!value || !name)
    return ZelNullArgument("zelAddStringProperty: NULL value and/or name parameter");
  TCIMValue cimValue(value);
  return zelAddCIMValueProperty(handle, name, &cimValue);
}

zelStatusCode zelAddArrayProperty(zelIOHandle* handle, const char* name,
                                  zelCIMValueArray* pArray) {
  if (!name || !pArray)
    return ZelNullArgument("zelAddArrayProperty: NULL name and/or pArray parameter");
  return AddBuiltValue(handle, name, [&] {
    // The element type comes from the declaration before the handle is checked: callers
    // must hold an open instance.
    TCIMValue const& declared =
        handle->fCurrentInstance->GetClass().GetPropertyDecl(name).GetValue();
    // Set on a made value, not the array constructor: a refused element throws after the
    // body is built, and only a whole value frees it.
    TCIMValue array;
    array.Set(declared.GetType(), declared.GetMaxArraySize(), pArray->fValues);
    return array;
  });
}

zelStatusCode zelAddReferenceProperty(zelIOHandle* handle, const char* name,
                                      TCIMReference* pRef) {
  if (!name || !pRef)
    return ZelNullArgument("zelAddReferenceProperty: NULL name and/or pRef parameter");
  return AddBuiltValue(handle, name, [&] { return TCIMValue(*pRef); });
}

zelStatusCode zelAddDateTimeProperty(zelIOHandle* handle, const char* name,
                                     TCIMDateTime* pDateTime) {
  if (!name || !pDateTime)
    return ZelNullArgument("zelAddDateTimeProperty: NULL name and/or pDateTime parameter");
  TCIMValue cimValue(*pDateTime);
  return zelAddCIMValueProperty(handle, name, &cimValue);
}

// Computes an identity text once per process and hands out the same copy ever after.
template <class Compute>
static zelStatusCode CachedIdentity(char*& cache, char** name, Compute compute) {
  if (!cache) {
    zelStatusCode status = ZelGuard([&] {
      std::string value = compute(TRootObject::GetPluginManager()->GetSchema());
      cache = new char[value.size() + 1];
      std::memcpy(cache, value.c_str(), value.size() + 1);
    });
    if (status != zelStatusOK)
      return status;
  }
  *name = cache;
  return zelStatusOK;
}

static char* fgSystemName = 0;
static char* fgSystemCreationClassName = 0;

zelStatusCode zelGetSystemName(char** name) {
  if (!name)
    return ZelNullArgument("zelGetSystemName: NULL name parameter");
  return CachedIdentity(fgSystemName, name, TCIMSchemaHelper::GetSystemName);
}

zelStatusCode zelGetSystemCreationClassName(char** name) {
  if (!name)
    return ZelNullArgument("zelGetSystemCreationClassName: NULL name parameter");
  return CachedIdentity(fgSystemCreationClassName, name,
                        TCIMSchemaHelper::GetSystemCreationClassName);
}

// ---- Log ----------------------------------------------------------------------------------

void zelWriteLog(TCPluginCallbacks* handle, zelLogSeverity severity, const char* text) {
  if (!text) { // The caller's severity, not error: this one differs on purpose.
    ZelNullArgument("zelWriteLog: NULL text parameter", 0, severity);
    return;
  }
  if (ILogger* logger = ZelLogFor(severity))
    logger->OutputLogEntry(handle ? handle->GetPluginHandle() : 0, severity, text);
}
