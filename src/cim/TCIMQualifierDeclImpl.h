// TCIMQualifierDeclImpl: the state of a qualifier declaration.
#ifndef TCIMQUALIFIERDECLIMPL_H
#define TCIMQUALIFIERDECLIMPL_H

#include "TCIMQualifierDecl.h"
#include "TCIMValue.h"

#include <string>

class TContainer;

class TCIMQualifierDeclImpl {
public:
  TCIMQualifierDeclImpl(TCIMQualifierDecl& owner, TContainer& container,
                        const std::string& name, const TCIMValue& value,
                        TCIMQualifierDecl::EScope scope, TCIMQualifierDecl::EFlavor flavor);
  /// A copy of other's name, value, scope and flavor, belonging to another container.
  TCIMQualifierDeclImpl(TCIMQualifierDecl& owner, TContainer& container,
                        const TCIMQualifierDeclImpl& other);

  void Validate() const;
  void AddToContainer() const;
  const std::string& GetName() const { return fName; }
  void SetName(const std::string& name) { fName = name; }
  const TCIMValue& GetValue() const { return fValue; }
  void SetValue(const TCIMValue& value) { fValue = value; }
  TContainer& GetContainer() const { return fContainer; }
  TCIMQualifierDecl::EScope GetScope() const;
  void SetFlavor(TCIMQualifierDecl::EFlavor flavor);
  void UnsetFlavor(TCIMQualifierDecl::EFlavor flavor);
  TCIMQualifierDecl::EFlavor GetFlavor() const;

private:
  TCIMQualifierDecl& fOwner;
  TContainer& fContainer;
  std::string fName;
  TCIMValue fValue;
  unsigned int fScope;
  unsigned int fFlavor;
};

#endif
