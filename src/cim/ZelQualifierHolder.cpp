// The qualifier map of classes and property declarations: the override rule, lookups.
#include "cim/ZelQualifierHolder.h"

#include "cim/TCIMQualifierImpl.h"
#include "TZELException.h"
#include "cim/ZelNamedMap.h"

#include <cassert>

void ZelAddQualifier(TQualifierMap& qualifiers, TCIMQualifier& qualifier) {
  std::string key = TContainerImpl::NormalizeName(qualifier.GetName());
  TQualifierMap::iterator existing = qualifiers.find(key);
  if (existing != qualifiers.end()) {
    TCIMQualifier& held = *existing->second;
    if (&held == &qualifier)
      return;
    // Only the held qualifier's own bit decides, not its declaration.
    if (held.GetFlavor() & TCIMQualifierDecl::eOverridable) {
      qualifiers.erase(existing);
    } else {
      if (held.GetValue() != qualifier.GetValue() || held.GetFlavor() != qualifier.GetFlavor())
        throw TZELException(zelStatusNotOverridable);
      return; // An identical re-add is accepted; the caller keeps its object.
    }
  }
  std::pair<TQualifierMap::iterator, bool> ret =
      qualifiers.insert(std::make_pair(key, boost::shared_ptr<TCIMQualifier>(&qualifier)));
  assert(ret.second);
  (void)ret;
}

TCIMQualifier& ZelGetQualifier(TQualifierMap const& qualifiers, std::string const& name) {
  TCIMQualifier* qualifier = ZelFindQualifier(qualifiers, name);
  if (!qualifier)
    throw TZELException(zelStatusNotFound);
  return *qualifier;
}

TCIMQualifier* ZelFindQualifier(TQualifierMap const& qualifiers, std::string const& name) {
  return ZelFindIn(qualifiers, name);
}

std::vector<TCIMQualifier*> ZelEnumerateQualifiers(TQualifierMap const& qualifiers) {
  return ZelEnumerate(qualifiers);
}

void ZelRemoveQualifier(TQualifierMap& qualifiers, TCIMQualifier& qualifier) {
  std::pair<TQualifierMap::const_iterator, bool> found =
      ZelLookup(qualifiers, qualifier.GetName());
  if (!found.second)
    throw TZELException(zelStatusNotFound);
  qualifiers.erase(found.first);
}

bool ZelQualifierIsTrue(TCIMQualifier const* qualifier) {
  if (!qualifier)
    return false;
  const TCIMValue& value = qualifier->GetBody()->GetValue();  // read in place, not copied
  return !value.IsNull() && value.GetType() == TCIMValue::TCIMType::kBoolean &&
         static_cast<bool>(value);
}

bool ZelQualifierIsTrue(TQualifierMap const& qualifiers, std::string const& normalName) {
  TQualifierMap::const_iterator it = qualifiers.find(normalName);
  return ZelQualifierIsTrue(it == qualifiers.end() ? 0 : it->second.get());
}
