/* zelcore: the C interface of libzelcore.so.1, for collector plugins and hosts.
 * Valid C99 and C++; every function returns a zelStatusCode unless noted. */
#ifndef ZELCORE_H
#define ZELCORE_H

#include <stdint.h>

#define ZEL_API __attribute__((visibility("default")))

/* The enumerations are 32-bit signed; C++ states it, so that any int32 value is valid. */
#ifdef __cplusplus
#define ZEL_ENUM(name) enum name : int32_t
#else
#define ZEL_ENUM(name) enum name
#endif

#ifdef __cplusplus
#define ZEL_BEGIN_DECL extern "C" {
#define ZEL_END_DECL }
#else
#define ZEL_BEGIN_DECL
#define ZEL_END_DECL
#endif

/* Status codes: fixed values, compared against by plugins. */
typedef ZEL_ENUM(zelStatusCode) {
#define ZEL_STATUS(name, value) name = value,
#include "zelStatus.def"
#undef ZEL_STATUS
} zelStatusCode;

/* Log severities: smaller is more severe; zelLogMemoryOnly is kept, never written. */
typedef ZEL_ENUM(zelLogSeverity) {
  zelLogError = 0,
  zelLogWarning = 1,
  zelLogStatus = 2,
  zelLogDebug = 3,
  zelLogVerbose = 4,
  zelLogMemoryOnly = 100
} zelLogSeverity;

#ifdef __cplusplus
class TCIMDateTime;
class TCIMReference;
class TCIMValue;
class TCPluginCallbacks;
class IPlugin;
struct zelCIMValueArray;
struct zelIOHandle;
#else
typedef struct TCIMDateTime TCIMDateTime;
typedef struct TCIMReference TCIMReference;
typedef struct TCIMValue TCIMValue;
typedef struct TCPluginCallbacks TCPluginCallbacks;
typedef struct IPlugin IPlugin;
typedef struct zelCIMValueArray zelCIMValueArray;
typedef struct zelIOHandle zelIOHandle;
#endif

/* A plugin's identity, returned by value from its GetInfo callback. The strings stay the
 * plugin's and must remain valid; the core copies them at each call. */
typedef struct zelPluginInfo {
  const char* Name;             /* stamped on its classes as PLUGINNAME */
  const char* Version;          /* stamped as PLUGINVERSION */
  const char* InterfaceVersion; /* the plugin interface the plugin was written for */
  int32_t Type;                 /* 0 collects; 0 and 1 have a specification document */
  int32_t URLType;              /* passed through, not interpreted */
} zelPluginInfo;

/* The table a plugin fills and hands to zelRegisterPlugin; it is copied, so it need not
 * outlive the call. self is the handle zelRegisterPlugin returned. A non-zero status fails
 * the step. */
typedef struct zelPluginCallbacks {
  void (*Reserved)(void); /* never called; may be NULL */
  /* Once, after the library is loaded and its path is known (zelGetPluginPath). */
  zelStatusCode (*Init)(TCPluginCallbacks* self);
  zelStatusCode (*DeInit)(TCPluginCallbacks* self);
  /* Collects the named classes through the zelAdd... functions; the names are valid for
   * the call only. */
  zelStatusCode (*GetData)(TCPluginCallbacks* self, zelIOHandle* io, const char** classNames,
                           int classCount);
  /* Asked afresh on every use: nothing is cached. */
  zelPluginInfo (*GetInfo)(TCPluginCallbacks* self);
  /* Last call; on success the core deletes self. */
  zelStatusCode (*PrepareForUnload)(TCPluginCallbacks* self);
} zelPluginCallbacks;

ZEL_BEGIN_DECL

/* Names of the status codes, indexed by code (zelStatusEnd + 1 entries). */
ZEL_API extern const char* const kZELErrorMessages[];

/* Does nothing; kept for hosts that call it. */
ZEL_API void CoreInit(void);
/* The name of a status code; the code must be one the library produced (no range check). */
ZEL_API const char* zelTranslateStatusCode(zelStatusCode code);

/* Value arrays: a growable list of values of any CIM type, owned by the caller. */
ZEL_API zelStatusCode zelNewCIMValueArray(zelCIMValueArray** pArray);
ZEL_API zelStatusCode zelDeleteCIMValueArray(zelCIMValueArray* pArray);
ZEL_API zelStatusCode zelArrayAddBoolean(zelCIMValueArray* pArray, int32_t value);
ZEL_API zelStatusCode zelArrayAddUint8(zelCIMValueArray* pArray, uint8_t value);
ZEL_API zelStatusCode zelArrayAddSint8(zelCIMValueArray* pArray, int8_t value);
ZEL_API zelStatusCode zelArrayAddUint16(zelCIMValueArray* pArray, uint16_t value);
ZEL_API zelStatusCode zelArrayAddSint16(zelCIMValueArray* pArray, int16_t value);
ZEL_API zelStatusCode zelArrayAddUint32(zelCIMValueArray* pArray, uint32_t value);
ZEL_API zelStatusCode zelArrayAddSint32(zelCIMValueArray* pArray, int32_t value);
ZEL_API zelStatusCode zelArrayAddUint64(zelCIMValueArray* pArray, uint64_t value);
ZEL_API zelStatusCode zelArrayAddSint64(zelCIMValueArray* pArray, int64_t value);
/* The string is copied. */
ZEL_API zelStatusCode zelArrayAddString(zelCIMValueArray* pArray, const char* value);
ZEL_API zelStatusCode zelArrayAddReference(zelCIMValueArray* pArray, TCIMReference* value);
ZEL_API zelStatusCode zelArrayAddDateTime(zelCIMValueArray* pArray, TCIMDateTime* value);

/* Date-times: allocated NULL, filled by the setters (zelStatusInvalidDateTime on bad fields). */
ZEL_API zelStatusCode zelNewCIMDateTime(TCIMDateTime** dt);
ZEL_API zelStatusCode zelGetLocalTime(TCIMDateTime* dt);
ZEL_API zelStatusCode zelDeleteCIMDateTime(TCIMDateTime* dt);
ZEL_API zelStatusCode zelSetDateTime(TCIMDateTime* dt, unsigned short year, unsigned short month,
                                     unsigned int day, unsigned short hour, unsigned short minute,
                                     unsigned short second, unsigned int microseconds,
                                     short utcOffset);
ZEL_API zelStatusCode zelSetDateTimeInterval(TCIMDateTime* dt, unsigned int days,
                                             unsigned short hours, unsigned short minutes,
                                             unsigned short seconds, unsigned int microseconds);
/* str is a 25-character CIM datetime, e.g. "20031107153000.000000-300". */
ZEL_API zelStatusCode zelSetDateTimeString(TCIMDateTime* dt, const char* str);

/* References: object paths built from a class and its key values, owned by the caller.
 * A path text is never parsed: zelSetReferencePath always fails. */
ZEL_API zelStatusCode zelNewCIMReference(TCIMReference** ref, zelIOHandle* handle);
ZEL_API zelStatusCode zelDeleteCIMReference(TCIMReference* ref);
ZEL_API zelStatusCode zelSetReferencePath(TCIMReference* ref, const char* objectName);
ZEL_API zelStatusCode zelSetReferenceClassName(TCIMReference* ref, const char* className);
/* Key values: key must name a KEY property of the class, with its exact type. */
ZEL_API zelStatusCode zelReferenceAddBoolean(TCIMReference* ref, const char* key, int32_t value);
ZEL_API zelStatusCode zelReferenceAddUint8(TCIMReference* ref, const char* key, uint8_t value);
ZEL_API zelStatusCode zelReferenceAddSint8(TCIMReference* ref, const char* key, int8_t value);
ZEL_API zelStatusCode zelReferenceAddUint16(TCIMReference* ref, const char* key, uint16_t value);
ZEL_API zelStatusCode zelReferenceAddSint16(TCIMReference* ref, const char* key, int16_t value);
ZEL_API zelStatusCode zelReferenceAddUint32(TCIMReference* ref, const char* key, uint32_t value);
ZEL_API zelStatusCode zelReferenceAddSint32(TCIMReference* ref, const char* key, int32_t value);
ZEL_API zelStatusCode zelReferenceAddUint64(TCIMReference* ref, const char* key, uint64_t value);
ZEL_API zelStatusCode zelReferenceAddSint64(TCIMReference* ref, const char* key, int64_t value);
ZEL_API zelStatusCode zelReferenceAddString(TCIMReference* ref, const char* key,
                                            const char* value);
ZEL_API zelStatusCode zelReferenceAddReference(TCIMReference* ref, const char* key,
                                               TCIMReference* value);
ZEL_API zelStatusCode zelReferenceAddDateTime(TCIMReference* ref, const char* key,
                                              TCIMDateTime* value);

/* Plugin registration: call zelRegisterPlugin from the library's load-time code; NULL
 * arguments abort the process. */
ZEL_API zelStatusCode zelRegisterPlugin(zelPluginCallbacks* callbacks,
                                        TCPluginCallbacks** pluginHandle);
ZEL_API zelStatusCode zelGetHandle(TCPluginCallbacks* self, IPlugin** handle);
/* The library's path, owned by the core; NULL before Init. */
ZEL_API zelStatusCode zelGetPluginPath(TCPluginCallbacks* self, char** path);

/* Collection, inside GetData: zelAddClass opens an instance (committing the open one) and
 * the property functions fill it; the core commits the last one when GetData succeeds. */
ZEL_API zelStatusCode zelAddClass(zelIOHandle* handle, const char* className);
/* value is text, converted to the declared type of the property. */
ZEL_API zelStatusCode zelAddProperty(zelIOHandle* handle, const char* name, const char* value);
ZEL_API zelStatusCode zelAddCIMValueProperty(zelIOHandle* handle, const char* name,
                                             const TCIMValue* value);
ZEL_API zelStatusCode zelAddBooleanProperty(zelIOHandle* handle, const char* name, int value);
ZEL_API zelStatusCode zelAddUint8Property(zelIOHandle* handle, const char* name, uint8_t value);
ZEL_API zelStatusCode zelAddSint8Property(zelIOHandle* handle, const char* name, int8_t value);
ZEL_API zelStatusCode zelAddUint16Property(zelIOHandle* handle, const char* name,
                                           uint16_t value);
ZEL_API zelStatusCode zelAddSint16Property(zelIOHandle* handle, const char* name,
                                           int16_t value);
ZEL_API zelStatusCode zelAddUint32Property(zelIOHandle* handle, const char* name,
                                           uint32_t value);
ZEL_API zelStatusCode zelAddSint32Property(zelIOHandle* handle, const char* name,
                                           int32_t value);
ZEL_API zelStatusCode zelAddUint64Property(zelIOHandle* handle, const char* name,
                                           uint64_t value);
ZEL_API zelStatusCode zelAddSint64Property(zelIOHandle* handle, const char* name,
                                           int64_t value);
ZEL_API zelStatusCode zelAddStringProperty(zelIOHandle* handle, const char* name,
                                           const char* value);
/* handle must hold an open instance and name a declared array property: neither is checked. */
ZEL_API zelStatusCode zelAddArrayProperty(zelIOHandle* handle, const char* name,
                                          zelCIMValueArray* pArray);
ZEL_API zelStatusCode zelAddReferenceProperty(zelIOHandle* handle, const char* name,
                                              TCIMReference* pRef);
ZEL_API zelStatusCode zelAddDateTimeProperty(zelIOHandle* handle, const char* name,
                                             TCIMDateTime* pDateTime);
/* The examined system's identity, computed once; the text is the core's, never freed. */
ZEL_API zelStatusCode zelGetSystemName(char** name);
ZEL_API zelStatusCode zelGetSystemCreationClassName(char** name);

/* Writes one log line; handle is the plugin's own handle, or NULL for the core. */
ZEL_API void zelWriteLog(TCPluginCallbacks* handle, zelLogSeverity severity, const char* text);

ZEL_END_DECL

#endif /* ZELCORE_H */
