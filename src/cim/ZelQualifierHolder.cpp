// The qualifier map of classes and property declarations: the override rule, lookups.
#include "cim/ZelQualifierHolder.h"

#include "cim/TCIMQualifierImpl.h"
#include "TZELException.h"
#include "cim/ZelNamedMap.h"

#include <utility>

bool ZelAddQualifier(TQualifierMap& qualifiers, TCIMQualifier& qualifier) {
  std::string key = ZelNormalizeName(qualifier.GetName());
  // One search: the place found is where the new qualifier goes.
  TQualifierMap::iterator position = qualifiers.lower_bound(key);
  if (position != qualifiers.end() && position->first == key) {
    TCIMQualifier& held = *position->second;
    if (&held == &qualifier)
      return true;
    // Only the held qualifier's own bit decides, not its declaration.
    if (held.GetFlavor() & TCIMQualifierDecl::eOverridable) {
      position = qualifiers.erase(position);
    } else {
      if (held.GetValue() != qualifier.GetValue() || held.GetFlavor() != qualifier.GetFlavor())
        throw TZELException(zelStatusNotOverridable);
      return false;  // An identical re-add is accepted; the caller keeps its object.
    }
  }
  qualifiers.emplace_hint(position, std::move(key), boost::shared_ptr<TCIMQualifier>(&qualifier));
  return true;
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

bool ZelQualifierIsTrue(TQualifierMap const& qualifiers, std::string_view normalName) {
  TQualifierMap::const_iterator it = qualifiers.find(normalName);
  return ZelQualifierIsTrue(it == qualifiers.end() ? 0 : it->second.get());
}
