// TCIMQualifierDecl: a qualifier declaration registered in a container: name, type and
// default value, scope and default flavors.
#ifndef TCIMQUALIFIERDECL_H
#define TCIMQUALIFIERDECL_H

#include "TCIMValue.h"
#include "zelcore.h"

#include <boost/shared_ptr.hpp>
#include <string>

class TCIMQualifierDeclImpl;
class TContainer;

class ZEL_API TCIMQualifierDecl {
public:
  /// Flavor bits, combined by OR.
  enum EFlavor { eOverridable = 1, eToSubclass = 2, eTranslatable = 4 };
  /// Scope bits, combined by OR; stored and reported, never checked.
  enum EScope { eClass = 1, eAssociation = 2, eProperty = 4, eReference = 8 };

  /// Empty name, NULL value, scope and flavor 0.
  explicit TCIMQualifierDecl(TContainer& container);
  TCIMQualifierDecl(TContainer& container, const std::string& name, const TCIMValue& value,
                    EScope scope, EFlavor flavor);
  virtual ~TCIMQualifierDecl();

  /// Accepts every declaration.
  void Validate() const;
  /// Registers this heap object in its container, which then owns it
  /// (zelStatusAlreadyExists for a name already declared).
  void AddToContainer() const;
  const std::string& GetName() const;
  void SetName(const std::string& name);
  TCIMValue::TCIMType GetType() const;
  bool IsArray() const;
  TCIMValue GetValue() const;
  void SetValue(const TCIMValue& value);
  TContainer& GetContainer() const;
  EScope GetScope() const;
  /// ORs the bits in.
  void SetFlavor(EFlavor flavor);
  void UnsetFlavor(EFlavor flavor);
  EFlavor GetFlavor() const;

  /// By normalised name only.
  bool operator==(const TCIMQualifierDecl& other) const;
  bool operator<(const TCIMQualifierDecl& other) const;

  boost::shared_ptr<TCIMQualifierDeclImpl> GetBody() const;

private:
  boost::shared_ptr<TCIMQualifierDeclImpl> fBody;
};

#endif
