// TCIMInstanceImpl: the state of an instance: its class and one property per declaration.
#ifndef TCIMINSTANCEIMPL_H
#define TCIMINSTANCEIMPL_H

#include "cim/TCIMElementImpl.h"
#include "TCIMInstance.h"
#include "TCIMProperty.h"

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

class TCIMClass;
class TCIMValue;

class TCIMInstanceImpl : public TCIMElementImpl {
public:
  /// Normalised property name to the property, held by value, sorted by name. One block
  /// for all of them: the set is fixed at construction, so the vector never grows and
  /// pointers handed out stay valid.
  typedef std::vector<std::pair<std::string, TCIMProperty> > TPropertyMap;

  TCIMInstanceImpl(TCIMInstance& owner, TCIMClass* cls);
  virtual ~TCIMInstanceImpl();
  void Validate() const override;
  TContainer& GetContainer() const override;

  void AddToContainer();
  TCIMClass& GetClass() const { return *fClass; }
  void SetProperty(const TCIMProperty& property);
  void SetPropertyValue(const std::string& name, const TCIMValue& value);
  void SetPrevPropertyValue(const std::string& name, const TCIMValue& value);
  void SetPrevPropertyValue(const std::string& name);
  TCIMProperty& GetProperty(const std::string& name);
  TCIMProperty* FindProperty(const std::string& name);
  std::vector<const TCIMProperty*> EnumerateProperties() const;
  TCIMReference BuildPath() const;
  /// BuildPath().GetPath(), made without the reference and its copies of the key values.
  std::string PathText() const;
  /// The same text, appended.
  void AppendPathText(std::string& path) const;
  std::vector<TCIMInstance*> Associators(const std::string& assocClass,
                                         const std::string& resultClass,
                                         const std::string& role,
                                         const std::string& resultRole) const;
  std::vector<TCIMInstance*> References(const std::string& resultClass,
                                        const std::string& role) const;
  bool operator==(const TCIMInstanceImpl& other) const;
  bool operator<(const TCIMInstanceImpl& other) const;

private:
  TPropertyMap::const_iterator Find(std::string_view name) const;
  /// Sorts after a renamed declaration, keeping the first property of each name.
  void SortProperties();

  TCIMInstance& fOwner;
  TCIMClass* fClass;
  TPropertyMap fProperties;
};

#endif
