// The exported C functions, in families ordered as in zelcore.h.
#include "cwrappers.h"

#include "ILogger.h"
#include "TCIMDateTime.h"
#include "TCIMReference.h"
#include "TOSSpecific.h"
#include "TRootObject.h"
#include "zeliIOHandle.h"

#include <new>

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

// ---- Log ----------------------------------------------------------------------------------

void zelWriteLog(TCPluginCallbacks* handle, zelLogSeverity severity, const char* text) {
  (void)handle; // Plugin handles name their plugin once the plugin binding exists.
  if (!text) { // The caller's severity, not error: this one differs on purpose.
    ZelNullArgument("zelWriteLog: NULL text parameter", 0, severity);
    return;
  }
  if (ILogger* logger = ZelLogFor(severity))
    logger->OutputLogEntry(0, severity, text);
}
