// Comparing two inventories: old instances in a hash map by class and key values, each new
// instance looked up there once, so the cost stays linear in the instances.
#include "Difference.h"

#include "TCIMClass.h"
#include "TCIMDateTime.h"
#include "TCIMInstance.h"
#include "TCIMProperty.h"
#include "TCIMPropertyDecl.h"
#include "TCIMQualifier.h"
#include "TCIMReference.h"
#include "TCIMValue.h"
#include "TCIMXMLWriter.h"
#include "TContainer.h"

#include <algorithm>
#include <cctype>
#include <map>
#include <memory>
#include <unordered_map>

namespace zelcollect {

typedef TCIMValue::TCIMType TType;

static bool IsKey(const TCIMPropertyDecl& decl) {
  return QualifierIsTrue(decl.FindQualifier("KEY"));
}

static bool IsVolatile(const TCIMPropertyDecl* decl) {
  return decl && QualifierIsTrue(decl->FindQualifier("VOLATILE"));
}

static std::string Text(const TCIMValue& value) {
  return value.IsNull() ? std::string("\x01", 1) : value.ToString(10);
}

// Values of the two inventories. References and NULL references name classes of their own
// container, and NaN equals nothing: those compare by text.
static bool SameValue(const TCIMValue& a, const TCIMValue& b) {
  TType::ECIMType type = a.GetType();
  if (type != static_cast<TType::ECIMType>(b.GetType()))
    return false;
  TType::ECIMType element = static_cast<TType::ECIMType>(type & ~TType::kArray);
  if (element == TType::kReference || element == TType::kReal32 || element == TType::kReal64)
    return a.IsNull() == b.IsNull() && (a.IsNull() || a.ToString(10) == b.ToString(10));
  return a == b;
}

// An instance's identity across inventories: its key values as text, in the order of the
// lower-cased key names.
static std::string CanonicalKey(const TCIMInstance& instance,
                                const std::vector<std::pair<std::string, std::string>>& keys) {
  std::string key;
  for (const auto& name : keys) {
    key += name.first;
    key += '\0';
    key += Text(instance.GetProperty(name.second).GetValue());
    key += '\0';
  }
  return key;
}

// The key names of a class: lower-cased and as declared, sorted by the former.
static std::vector<std::pair<std::string, std::string>> KeyNames(const TCIMClass& cls) {
  std::vector<std::pair<std::string, std::string>> keys;
  for (const std::string& name : cls.EnumerateKeyNames())
    keys.emplace_back(LowerCase(name), name);
  std::sort(keys.begin(), keys.end());
  return keys;
}

namespace {

// How the properties of one pair of classes line up: both enumerate their properties in
// ascending normalised name, so one merge of the declarations serves every instance pair.
struct TPropertyPlan {
  enum EKind { kCompare, kOnlyNew, kOnlyOld, kRetyped };
  EKind fKind;
  size_t fNew; ///< index among the new instance's properties
  size_t fOld; ///< index among the old instance's properties
};

class TPlan {
public:
  TPlan(const std::vector<const TCIMProperty*>& newer,
        const std::vector<const TCIMProperty*>& older, bool all);

  bool Fits(size_t newCount, size_t oldCount) const {
    return newCount == fNewCount && oldCount == fOldCount;
  }
  const std::vector<TPropertyPlan>& Entries() const { return fEntries; }

private:
  size_t fNewCount;
  size_t fOldCount;
  std::vector<TPropertyPlan> fEntries;
};

TPlan::TPlan(const std::vector<const TCIMProperty*>& newer,
             const std::vector<const TCIMProperty*>& older, bool all)
    : fNewCount(newer.size()), fOldCount(older.size()) {
  size_t i = 0, j = 0;
  while (i < newer.size() || j < older.size()) {
    int order = i == newer.size()   ? 1
                : j == older.size() ? -1
                                    : LowerCase(newer[i]->GetName())
                                          .compare(LowerCase(older[j]->GetName()));
    const TCIMPropertyDecl* newDecl = order <= 0 ? &newer[i]->GetDeclaration() : nullptr;
    const TCIMPropertyDecl* oldDecl = order >= 0 ? &older[j]->GetDeclaration() : nullptr;
    bool skip = (!all && (IsVolatile(newDecl) || IsVolatile(oldDecl))) ||
                (newDecl && oldDecl && IsKey(*newDecl)); // matched by key already
    if (!skip) {
      TPropertyPlan::EKind kind = !oldDecl ? TPropertyPlan::kOnlyNew
                                  : !newDecl ? TPropertyPlan::kOnlyOld
                                  : newDecl->GetType() == oldDecl->GetType()
                                      ? TPropertyPlan::kCompare
                                      : TPropertyPlan::kRetyped;
      fEntries.push_back({kind, i, j});
    }
    i += order <= 0;
    j += order >= 0;
  }
}

// An old instance waiting for its new counterpart.
struct TOldEntry {
  TCIMInstance* fInstance;
  bool fMatched;
};

class TComparer {
public:
  TComparer(TContainer& result, bool all) : fResult(result), fAll(all) {}

  void Run(TContainer& old);
  TDifference& GetDifference() { return fDifference; }

private:
  void Record(EChange change, TCIMInstance& instance, std::vector<TPropertyDifference> properties);
  void CompareInstances(TCIMInstance& newer, const TCIMInstance& older);
  void AddInstance(TCIMInstance& newer);
  void CarryOver(const TCIMInstance& older);
  TCIMClass& ResultClass(const TCIMClass& oldClass);

  TContainer& fResult;
  bool fAll;
  TDifference fDifference;
  std::map<std::pair<const TCIMClass*, const TCIMClass*>, std::unique_ptr<TPlan>> fPlans;
};

void TComparer::Record(EChange change, TCIMInstance& instance,
                       std::vector<TPropertyDifference> properties) {
  fDifference.fInstances.push_back({change, &instance, instance.GetClass().GetName(),
                                    instance.BuildPath().GetPath(), std::move(properties)});
  ++(change == EChange::kAdded     ? fDifference.fAdded
     : change == EChange::kRemoved ? fDifference.fRemoved
                                   : fDifference.fChanged);
}

void TComparer::CompareInstances(TCIMInstance& newer, const TCIMInstance& older) {
  std::vector<const TCIMProperty*> newProperties = newer.EnumerateProperties();
  std::vector<const TCIMProperty*> oldProperties = older.EnumerateProperties();
  std::unique_ptr<TPlan>& plan = fPlans[{&newer.GetClass(), &older.GetClass()}];
  if (!plan || !plan->Fits(newProperties.size(), oldProperties.size()))
    plan.reset(new TPlan(newProperties, oldProperties, fAll));
  std::vector<TPropertyDifference> differences;
  for (const TPropertyPlan& entry : plan->Entries()) {
    // The instance is ours to change: the properties are only reached through const.
    TCIMProperty* property = entry.fKind == TPropertyPlan::kOnlyOld
                                 ? nullptr
                                 : const_cast<TCIMProperty*>(newProperties[entry.fNew]);
    const TCIMProperty* oldProperty =
        entry.fKind == TPropertyPlan::kOnlyNew ? nullptr : oldProperties[entry.fOld];
    if (entry.fKind == TPropertyPlan::kCompare) {
      TCIMValue oldValue = oldProperty->GetValue();
      if (SameValue(property->GetValue(), oldValue))
        continue;
      property->SetPrevValue(oldValue);
    } else if (entry.fKind == TPropertyPlan::kOnlyNew) {
      property->SetPrevValue();
    }
    differences.push_back({property, oldProperty});
  }
  if (!differences.empty())
    Record(EChange::kChanged, newer, std::move(differences));
}

void TComparer::AddInstance(TCIMInstance& newer) {
  std::vector<TPropertyDifference> properties;
  for (const TCIMProperty* property : newer.EnumerateProperties()) {
    const_cast<TCIMProperty*>(property)->SetPrevValue();
    properties.push_back({property, nullptr});
  }
  Record(EChange::kAdded, newer, std::move(properties));
}

// The result's class of that name; a class only the old inventory has is made there, flat,
// with the old class's qualifiers and every declaration (inherited ones included).
TCIMClass& TComparer::ResultClass(const TCIMClass& oldClass) {
  if (TCIMClass* found = fResult.FindClass(oldClass.GetName()))
    return *found;
  std::unique_ptr<TCIMClass> cls(fResult.AllocateClass(oldClass.GetName(), nullptr));
  for (TCIMQualifier* qualifier : oldClass.EnumerateQualifiers())
    cls->AddQualifier(*new TCIMQualifier(*qualifier));
  for (TCIMPropertyDecl* oldDecl : oldClass.EnumeratePropertyDecls()) {
    TCIMPropertyDecl* decl = new TCIMPropertyDecl(oldDecl->GetName(), *cls, oldDecl->GetValue());
    for (TCIMQualifier* qualifier : oldDecl->EnumerateQualifiers())
      decl->AddQualifier(*new TCIMQualifier(*qualifier));
    decl->AddToContainer();
  }
  cls->AddToContainer();
  return *cls.release();
}

// A removed instance joins the result: keys keep their values, so that its path stays its
// own, and every property carries its old value as the previous one.
void TComparer::CarryOver(const TCIMInstance& older) {
  TCIMClass& cls = ResultClass(older.GetClass());
  std::unique_ptr<TCIMInstance> instance(fResult.AllocateInstance(&cls));
  std::vector<TPropertyDifference> properties;
  for (const TCIMProperty* oldProperty : older.EnumerateProperties()) {
    TCIMProperty* property = instance->FindProperty(oldProperty->GetName());
    if (property && property->GetType() == oldProperty->GetType()) {
      TCIMValue value = oldProperty->GetValue();
      if (IsKey(property->GetDeclaration()))
        property->SetValue(value);
      property->SetPrevValue(value);
    }
    properties.push_back({property, oldProperty});
  }
  instance->AddToContainer();
  Record(EChange::kRemoved, *instance.release(), std::move(properties));
}

void TComparer::Run(TContainer& old) {
  fResult.hackhack_TurnIntoADiffContainer(); // before any instance with NULL keys joins it
  std::unordered_map<std::string, std::vector<TCIMClass*>> oldClasses;
  std::unordered_map<std::string, TOldEntry> oldInstances;
  for (TCIMClass* cls : TCIMXMLWriter::ClassesWithInstances(old)) {
    std::string prefix = LowerCase(cls->GetName()) + '\0';
    std::vector<std::pair<std::string, std::string>> keys = KeyNames(*cls);
    for (TCIMInstance* instance : cls->EnumerateInstances(false))
      oldInstances.emplace(prefix + CanonicalKey(*instance, keys), TOldEntry{instance, false});
  }
  for (TCIMClass* cls : TCIMXMLWriter::ClassesWithInstances(fResult)) {
    std::string prefix = LowerCase(cls->GetName()) + '\0';
    std::vector<std::pair<std::string, std::string>> keys = KeyNames(*cls);
    for (TCIMInstance* instance : cls->EnumerateInstances(false)) {
      auto found = oldInstances.find(prefix + CanonicalKey(*instance, keys));
      if (found == oldInstances.end()) {
        AddInstance(*instance);
      } else {
        found->second.fMatched = true;
        CompareInstances(*instance, *found->second.fInstance);
      }
    }
  }
  for (const auto& entry : oldInstances)
    if (!entry.second.fMatched)
      CarryOver(*entry.second.fInstance);

  std::vector<TInstanceDifference>& instances = fDifference.fInstances;
  std::sort(instances.begin(), instances.end(),
            [](const TInstanceDifference& a, const TInstanceDifference& b) {
              int order = LowerCase(a.fClassName).compare(LowerCase(b.fClassName));
              return order != 0 ? order < 0 : a.fPath < b.fPath;
            });
  std::vector<TCIMInstance*> differing;
  differing.reserve(instances.size());
  for (const TInstanceDifference& instance : instances)
    differing.push_back(instance.fInstance);
  fResult.setDiffInstances(differing);
}

} // namespace

TDifference CompareInventories(TContainer& result, TContainer& old, bool all) {
  TComparer comparer(result, all);
  comparer.Run(old);
  return std::move(comparer.GetDifference());
}

std::string LowerCase(std::string name) {
  for (char& c : name)
    c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return name;
}

bool QualifierIsTrue(const TCIMQualifier* qualifier) {
  if (!qualifier)
    return false;
  TCIMValue value = qualifier->GetValue();
  return !value.IsNull() && value.GetType() == TType::kBoolean && static_cast<bool>(value);
}

} // namespace zelcollect
