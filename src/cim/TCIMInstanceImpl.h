// TCIMInstanceImpl: the state of an instance: its class and one property per declaration.
#ifndef TCIMINSTANCEIMPL_H
#define TCIMINSTANCEIMPL_H

#include "cim/TCIMElementImpl.h"
#include "TCIMInstance.h"
#include "TCIMProperty.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

class TCIMClass;
class TCIMValue;

class TCIMInstanceImpl : public TCIMElementImpl {
public:
  /// Normalised property name to the property, held by value.
  typedef std::map<std::string, TCIMProperty, std::less<> > TPropertyMap;

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
  TCIMInstance& fOwner;
  TCIMClass* fClass;
  TPropertyMap fProperties;
};

#endif
