// TCIMPropertyDecl: the declaration of one property of a class: name, type with default
// value, declaring class and qualifiers.
#ifndef TCIMPROPERTYDECL_H
#define TCIMPROPERTYDECL_H

#include "ICIMAllowQualifiers.h"
#include "TCIMValue.h"
#include "zelcore.h"

#include <boost/shared_ptr.hpp>
#include <string>
#include <vector>

class TCIMClass;
class TCIMPropertyDeclImpl;
class TCIMQualifier;

class ZEL_API TCIMPropertyDecl : public ICIMAllowQualifiers {
public:
  /// The type is the value's type; the declaration joins cls with AddToContainer().
  TCIMPropertyDecl(const std::string& name, TCIMClass& cls, const TCIMValue& value);
  /// Not provided: always throws zelStatusNotImplemented.
  TCIMPropertyDecl(TCIMPropertyDecl& other, TCIMClass& cls);
  virtual ~TCIMPropertyDecl();

  virtual void AddQualifier(TCIMQualifier& qualifier) override;
  virtual TCIMQualifier& GetQualifier(const std::string& name) const override;
  virtual std::vector<TCIMQualifier*> EnumerateQualifiers() const override;
  virtual void RemoveQualifier(TCIMQualifier& qualifier) override;
  /// Null when absent.
  TCIMQualifier* FindQualifier(const std::string& name) const;

  /// Accepts every declaration.
  void Validate() const;
  /// Hands this heap object to its class (TCIMClass::AddPropertyDecl), which then owns it.
  void AddToContainer() const;
  const std::string& GetName() const;
  void SetName(const std::string& name);
  /// The default value (NULL when none); its type is the declared type.
  const TCIMValue& GetValue() const;
  void SetValue(const TCIMValue& value);
  TCIMValue::TCIMType GetType() const;
  bool IsArray() const;
  /// The class that declared the property (inherited declarations keep it).
  TCIMClass& GetClass() const;

  /// By normalised name only.
  bool operator==(const TCIMPropertyDecl& other) const;
  bool operator<(const TCIMPropertyDecl& other) const;

  boost::shared_ptr<TCIMPropertyDeclImpl> GetBody() const;

private:
  boost::shared_ptr<TCIMPropertyDeclImpl> fBody;
};

#endif
