// TCIMClass: a CIM class in a container: superclass, qualifiers, property declarations (own
// and inherited), subclasses, the associations that refer to it, and its instances.
#ifndef TCIMCLASS_H
#define TCIMCLASS_H

#include "ICIMAllowQualifiers.h"
#include "ICIMElement.h"
#include "zelcore.h"

#include <boost/shared_ptr.hpp>
#include <string>
#include <vector>

class TCIMClassImpl;
class TCIMInstance;
class TCIMPropertyDecl;
class TCIMQualifier;
class TCIMReference;
class TContainer;

/// Made through TContainer::AllocateClass; owned by the container once added. Failures
/// throw TZELException, after one core log line where the refusal is a schema error.
class ZEL_API TCIMClass : public ICIMElement, public ICIMAllowQualifiers {
public:
  /// A null superclass means the container's root class. Inherits the superclass's
  /// property declarations and its tosubclass qualifiers as they stand now.
  TCIMClass(TContainer& container, std::string name, TCIMClass* superclass);
  virtual ~TCIMClass();

  /// Abstract, or some declaration has a true KEY: zelStatusInvalidClass otherwise.
  virtual void Validate() const override;
  /// Validates, registers this heap object in the container, links it under its
  /// superclass and records the classes its references point to. Throws only before the
  /// container takes the object: after a TZELException the caller still owns it.
  virtual void AddToContainer() const override;
  virtual TContainer& GetContainer() const override;
  virtual void AddQualifier(TCIMQualifier& qualifier) override;
  virtual TCIMQualifier& GetQualifier(const std::string& name) const override;
  virtual std::vector<TCIMQualifier*> EnumerateQualifiers() const override;
  virtual void RemoveQualifier(TCIMQualifier& qualifier) override;

  const std::string& GetName() const;
  /// Never null except for the root class itself.
  TCIMClass* GetSuperClass() const;
  /// True for a class created without a superclass.
  bool IsRootClass() const;
  bool IsAssociation() const;
  bool IsAbstract() const;
  /// A class is a subclass of itself.
  bool IsSubclassOf(const TCIMClass* other) const;
  /// Direct subclasses in the order added; all descendants in pre-order when deep.
  std::vector<TCIMClass*> EnumerateSubClasses(bool deep) const;

  /// Null when absent.
  TCIMQualifier* FindQualifier(const std::string& name) const;

  /// Takes ownership of the heap object passed; refusals are logged and thrown.
  void AddPropertyDecl(TCIMPropertyDecl& decl);
  /// zelStatusNotFound when absent.
  TCIMPropertyDecl& GetPropertyDecl(const std::string& name) const;
  TCIMPropertyDecl* FindPropertyDecl(const std::string& name) const;
  /// Own and inherited, in ascending normalised name.
  std::vector<TCIMPropertyDecl*> EnumeratePropertyDecls() const;
  void RemovePropertyDecl(TCIMPropertyDecl& decl);
  /// Declared names of the properties with a true KEY, in ascending normalised name.
  std::vector<std::string> EnumerateKeyNames() const;

  /// Takes ownership of the heap object passed, filed under its path.
  void AddInstance(TCIMInstance& instance);
  /// Deletes every instance filed under the same path.
  void RemoveInstance(TCIMInstance& instance);
  /// zelStatusNotFound when no instance has that path.
  TCIMInstance& GetInstance(const TCIMReference& path) const;
  TCIMInstance* FindInstance(const TCIMReference& path) const;
  /// Own instances in ascending path order, then the subclasses' when deep.
  std::vector<TCIMInstance*> EnumerateInstances(bool deep) const;

  /// The classes at the other end of the associations that refer to this class.
  std::vector<TCIMClass*> Associators(const std::string& assocClass,
                                      const std::string& resultClass, const std::string& role,
                                      const std::string& resultRole) const;
  /// The association classes that refer to this class; resultClass must exist.
  std::vector<TCIMClass*> References(const std::string& resultClass,
                                     const std::string& role) const;

  /// By the stored names, case-sensitive.
  bool operator==(const TCIMClass& other) const;
  bool operator<(const TCIMClass& other) const;

  boost::shared_ptr<TCIMClassImpl> GetBody() const;

private:
  boost::shared_ptr<TCIMClassImpl> fBody;
};

#endif
