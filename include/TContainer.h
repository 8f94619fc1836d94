// TContainer: the repository of one schema and its data: qualifier declarations, classes
// (which hold their instances) and the implicit root class; the factory of schema objects.
#ifndef TCONTAINER_H
#define TCONTAINER_H

#include "TCIMQualifierDecl.h"
#include "TCIMValue.h"
#include "zelcore.h"

#include <boost/shared_ptr.hpp>
#include <string>
#include <vector>

class TCIMClass;
class TCIMInstance;
class TContainerImpl;

/// Names are normalised (lower case, validated: zelStatusInvalidCIMName). The container
/// owns what is added and must outlive everything taken from it. Subclasses may override
/// the three factories to substitute their own object types.
class ZEL_API TContainer {
public:
  /// Starts with the root class only.
  TContainer();
  virtual ~TContainer();

  /// A new unregistered class; the caller owns it until AddClass.
  virtual TCIMClass* AllocateClass(const std::string& name, TCIMClass* superclass) const;
  /// A new instance of cls; the caller owns it until TCIMInstance::AddToContainer.
  virtual TCIMInstance* AllocateInstance(TCIMClass* cls) const;
  /// A new unregistered declaration; the caller owns it until AddQualifierDecl.
  virtual TCIMQualifierDecl* AllocateQualifierDecl(const std::string& name,
                                                   const TCIMValue& defaultValue,
                                                   TCIMQualifierDecl::EScope scope,
                                                   TCIMQualifierDecl::EFlavor flavor) const;

  /// Takes ownership of the heap object passed; zelStatusAlreadyExists for a known name
  /// (the object then stays the caller's).
  void AddClass(TCIMClass& cls);
  void AddQualifierDecl(TCIMQualifierDecl& decl);
  /// The empty name gives the root class; zelStatusNotFound when absent.
  TCIMClass* GetClass(const std::string& name) const;
  /// The empty name gives the root class; null when absent.
  TCIMClass* FindClass(const std::string& name) const;
  /// Lives as long as the process, so classes that outlive the container stay sound.
  TCIMClass* GetRootClass() const;
  /// Deletes the class (and its instances); zelStatusNotFound when not registered.
  void RemoveClass(TCIMClass& cls);
  TCIMQualifierDecl* GetQualifierDecl(const std::string& name) const;
  TCIMQualifierDecl* FindQualifierDecl(const std::string& name) const;
  void RemoveQualifierDecl(TCIMQualifierDecl& decl);
  /// In ascending normalised name; owned by the container.
  std::vector<TCIMQualifierDecl*> EnumerateQualifiers() const;

  /// Reads a CIM-XML file (plain or gzip) into this container; returns the classes it
  /// defined, owned by the container.
  std::vector<TCIMClass*> PopulateContainerFromFile(const std::string& path);

  /// There is no way back.
  void hackhack_TurnIntoADiffContainer();
  bool isDiffContainer();
  /// The three diff accessors throw zelStatusNotSupported on a non-diff container. The
  /// instances are not owned.
  void setDiffInstances(std::vector<TCIMInstance*> instances);
  std::vector<TCIMInstance*> getDiffInstances();
  bool hasDifferences();

  boost::shared_ptr<TContainerImpl> GetBody() const;

private:
  boost::shared_ptr<TContainerImpl> fBody;
};

#endif
