// The qualifier map shared by classes and property declarations, and the one rule by which
// a qualifier is added over an existing one.
#ifndef ZELQUALIFIERHOLDER_H
#define ZELQUALIFIERHOLDER_H

#include "TCIMQualifier.h"

#include <boost/shared_ptr.hpp>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

/// Normalised qualifier name to the owned qualifier.
typedef std::map<std::string, boost::shared_ptr<TCIMQualifier>, std::less<> > TQualifierMap;

/// Inserts the very object passed, replacing an overridable qualifier of the same name;
/// zelStatusNotOverridable over another one unless value and flavors are equal (no-op).
/// False when the map did not take the object (the identical re-add): the caller keeps it.
bool ZelAddQualifier(TQualifierMap& qualifiers, TCIMQualifier& qualifier);
/// zelStatusNotFound when absent.
TCIMQualifier& ZelGetQualifier(TQualifierMap const& qualifiers, std::string const& name);
TCIMQualifier* ZelFindQualifier(TQualifierMap const& qualifiers, std::string const& name);
std::vector<TCIMQualifier*> ZelEnumerateQualifiers(TQualifierMap const& qualifiers);
/// Deletes the held qualifier of that name; zelStatusNotFound when absent.
void ZelRemoveQualifier(TQualifierMap& qualifiers, TCIMQualifier& qualifier);
/// True when the qualifier exists and holds a non-NULL boolean true.
bool ZelQualifierIsTrue(TCIMQualifier const* qualifier);
/// The same by name, given normalised ("key"): these tests run for every key of every
/// instance.
bool ZelQualifierIsTrue(TQualifierMap const& qualifiers, std::string_view normalName);

/// The qualifier operations of a body that keeps its qualifiers in a TQualifierMap named
/// fQualifiers, forwarded to the functions above; declared inside the body's class.
#define ZEL_QUALIFIER_OPERATIONS                                                            \
  void AddQualifier(TCIMQualifier& qualifier) { ZelAddQualifier(fQualifiers, qualifier); }  \
  TQualifierMap& Qualifiers() { return fQualifiers; }                                       \
  TCIMQualifier& GetQualifier(const std::string& name) const {                              \
    return ZelGetQualifier(fQualifiers, name);                                              \
  }                                                                                         \
  TCIMQualifier* FindQualifier(const std::string& name) const {                             \
    return ZelFindQualifier(fQualifiers, name);                                             \
  }                                                                                         \
  std::vector<TCIMQualifier*> EnumerateQualifiers() const {                                 \
    return ZelEnumerateQualifiers(fQualifiers);                                             \
  }                                                                                         \
  void RemoveQualifier(TCIMQualifier& qualifier) { ZelRemoveQualifier(fQualifiers, qualifier); }

#endif
