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

// ---- Helpers ------------------------------------------------------------------------------

// Stores a new caller-owned object through out; zelStatusOutOfMemory when none was made.
template <class Object, class... Arguments>
static zelStatusCode NewObject(Object** out, Arguments... arguments) {
  *out = new (std::nothrow) Object(arguments...);
  return *out ? zelStatusOK : zelStatusOutOfMemory;
}

// Deletes a caller-owned object; NULL logs the function's text.
template <class Object>
static zelStatusCode DeleteObject(const char* nullText, Object* object) {
  if (!object)
    return ZelNullArgument(nullText);
  delete object;
  return zelStatusOK;
}

// An object argument is missing when NULL; a number never is.
template <class Object>
static bool IsMissing(Object* argument) {
  return !argument;
}
template <class Number>
static bool IsMissing(Number) {
  return false;
}

// The value of a C argument: dates and references come by pointer, the rest as they are.
template <class Native>
static TCIMValue ValueOf(Native argument) {
  return TCIMValue(argument);
}
static TCIMValue ValueOf(TCIMDateTime* argument) { return TCIMValue(*argument); }
// Resolution may throw.
static TCIMValue ValueOf(TCIMReference* argument) { return TCIMValue(*argument); }

// ---- Value arrays -------------------------------------------------------------------------

zelStatusCode zelNewCIMValueArray(zelCIMValueArray** pArray) {
  if (!pArray)
    return ZelNullArgument("zelNewCIMValueArray: NULL array parameter");
  return NewObject(pArray);
}

zelStatusCode zelDeleteCIMValueArray(zelCIMValueArray* pArray) {
  return DeleteObject("zelDeleteCIMValueArray: NULL array parameter", pArray);
}

// Appends the value of one C argument; nothing is appended when an argument is NULL.
template <class Argument>
static zelStatusCode ArrayAdd(const char* nullText, zelCIMValueArray* pArray, Argument value) {
  if (!pArray || IsMissing(value))
    return ZelNullArgument(nullText);
  return ZelGuard([&] { pArray->fValues.push_back(ValueOf(value)); }); // A reference's may throw.
}

#define ZEL_TYPED_MEMBER(Name, CType, Native, arrayText, referenceText, propertyText)              \
  zelStatusCode zelArrayAdd##Name(zelCIMValueArray* pArray, CType value) {                         \
    return ArrayAdd(arrayText, pArray, static_cast<Native>(value));                                \
  }
#include "plugins/cwrappers.def"
#undef ZEL_TYPED_MEMBER

// ---- Date-times ---------------------------------------------------------------------------

zelStatusCode zelNewCIMDateTime(TCIMDateTime** dt) {
  if (!dt)
    return ZelNullArgument("zelNewCIMDateTime: NULL datetime parameter");
  return NewObject(dt);
}

zelStatusCode zelGetLocalTime(TCIMDateTime* dt) {
  if (!dt) // Trailing blank and no "parameter": the established text.
    return ZelNullArgument("zelGetLocalTime: NULL datetime ");
  return ZelGuard([&] { *dt = TOSSpecific::GetLocalTime(); });
}

zelStatusCode zelDeleteCIMDateTime(TCIMDateTime* dt) {
  return DeleteObject("zelDeleteCIMDateTime: NULL datetime parameter", dt);
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
  return NewObject(ref, handle->fContainer);
}

zelStatusCode zelDeleteCIMReference(TCIMReference* ref) {
  return DeleteObject("zelDeleteCIMReference: NULL ref parameter", ref);
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

// Adds the key binding of one C argument.
template <class Argument>
static zelStatusCode ReferenceAdd(const char* nullText, TCIMReference* ref, const char* key,
                                  Argument value) {
  if (!ref || !key || IsMissing(value))
    return ZelNullArgument(nullText);
  return ZelGuard([&] { ref->AddKeyValue(key, ValueOf(value)); });
}

#define ZEL_TYPED_MEMBER(Name, CType, Native, arrayText, referenceText, propertyText)              \
  zelStatusCode zelReferenceAdd##Name(TCIMReference* ref, const char* key, CType value) {          \
    return ReferenceAdd(referenceText, ref, key, static_cast<Native>(value));                      \
  }
#include "plugins/cwrappers.def"
#undef ZEL_TYPED_MEMBER

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

// Builds the value, then sets it; a failure to build (the element check of an array, the
// resolution of a reference) is the result.
template <class Build>
static zelStatusCode AddBuiltValue(zelIOHandle* handle, const char* name, Build build) {
  zelStatusCode added = zelStatusOK;
  zelStatusCode built = ZelGuard([&] {
    TCIMValue value = build();
    added = zelAddCIMValueProperty(handle, name, &value);
  });
  return built != zelStatusOK ? built : added;
}

// Sets the value of one C argument; only the members with a NULL text test their arguments.
template <class Argument>
static zelStatusCode PropertyAdd(const char* nullText, zelIOHandle* handle, const char* name,
                                 Argument value) {
  if (nullText && (!name || IsMissing(value)))
    return ZelNullArgument(nullText);
  return AddBuiltValue(handle, name, [&] { return ValueOf(value); });
}

#define ZEL_TYPED_MEMBER(Name, CType, Native, arrayText, referenceText, propertyText)              \
  zelStatusCode zelAdd##Name##Property(zelIOHandle* handle, const char* name, CType value) {       \
    return PropertyAdd(propertyText, handle, name, static_cast<Native>(value));                    \
  }
#include "plugins/cwrappers.def"
#undef ZEL_TYPED_MEMBER

// The one typed member outside the table: its element type comes from the declaration.
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
