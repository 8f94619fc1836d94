// TCIMInstance: one collected object of a class: a property for every declaration of its
// class, validated against the class's keys and filed under its path.
#ifndef TCIMINSTANCE_H
#define TCIMINSTANCE_H

#include "ICIMElement.h"
#include "TCIMReference.h"
#include "zelcore.h"

#include <boost/shared_ptr.hpp>
#include <string>
#include <vector>

class TCIMClass;
class TCIMInstanceImpl;
class TCIMProperty;
class TCIMValue;
class TContainer;

/// Made through TContainer::AllocateInstance; owned by its class once added. Property
/// names compare case-insensitively; an unknown name throws zelStatusNotFound.
class ZEL_API TCIMInstance : public ICIMElement {
public:
  /// Stamps "DateTimeOfCollection" with the local time when the class declares it.
  explicit TCIMInstance(TCIMClass* cls);
  /// Not provided: always throws zelStatusNotImplemented.
  TCIMInstance(TCIMInstance& other, TCIMClass& cls);
  virtual ~TCIMInstance();

  /// Outside a diff container every key must be non-NULL: zelStatusInvalidInstance.
  virtual void Validate() const override;
  /// Validates, then hands this heap object to its class, which owns it from then on.
  virtual void AddToContainer() const override;
  virtual TContainer& GetContainer() const override;
  TCIMClass& GetClass() const;

  /// Replaces the property of that name with a deep copy.
  void SetProperty(const TCIMProperty& property);
  void SetPropertyValue(const std::string& name, const TCIMValue& value);
  void SetPrevPropertyValue(const std::string& name, const TCIMValue& value);
  void SetPrevPropertyValue(const std::string& name);
  TCIMProperty& GetProperty(const std::string& name) const;
  /// Null when absent.
  TCIMProperty* FindProperty(const std::string& name) const;
  /// In ascending normalised name.
  std::vector<const TCIMProperty*> EnumerateProperties() const;
  /// The class and the current key values.
  TCIMReference BuildPath() const;

  /// Instances at the other end of the association instances that refer to this one.
  std::vector<TCIMInstance*> Associators(const std::string& assocClass,
                                         const std::string& resultClass,
                                         const std::string& role,
                                         const std::string& resultRole) const;
  /// The association instances that refer to this one.
  std::vector<TCIMInstance*> References(const std::string& resultClass,
                                        const std::string& role) const;

  /// Same class object and pairwise equal properties.
  bool operator==(const TCIMInstance& other) const;
  /// By class identity only: instances of one class are never less than each other.
  bool operator<(const TCIMInstance& other) const;

  boost::shared_ptr<TCIMInstanceImpl> GetBody() const;

private:
  boost::shared_ptr<TCIMInstanceImpl> fBody;
};

#endif
