// TCIMClassImpl: the state and rules of a class: inheritance, overrides, keys,
// associations and instances.
#ifndef TCIMCLASSIMPL_H
#define TCIMCLASSIMPL_H

#include "TCIMClass.h"
#include "cim/TCIMElementImpl.h"
#include "cim/ZelQualifierHolder.h"

#include <boost/shared_ptr.hpp>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

class TCIMInstance;
class TCIMPropertyDecl;
class TCIMReference;
class TContainer;

class TCIMClassImpl : public TCIMElementImpl {
public:
  /// Normalised property name to its declaration, shared with subclasses.
  typedef std::map<std::string, boost::shared_ptr<TCIMPropertyDecl>, std::less<> > TPropertyDeclMap;
  /// Path text to the owned instances; equal paths may repeat.
  typedef std::multimap<std::string, boost::shared_ptr<TCIMInstance>, std::less<> > TInstanceMap;

  TCIMClassImpl(TCIMClass& owner, TContainer& container, const std::string& name,
                TCIMClass* superclass);
  virtual ~TCIMClassImpl();
  void Validate() const override;
  TContainer& GetContainer() const override;

  void AddToContainer();
  const std::string& GetName() const { return fName; }
  TCIMClass* GetSuperClass() const { return fSuperClass; }
  bool IsRootClass() const;
  bool IsAssociation() const;
  bool IsAbstract() const;
  bool IsSubclassOf(const TCIMClass* other) const;
  std::vector<TCIMClass*> EnumerateSubClasses(bool deep) const;

  ZEL_QUALIFIER_OPERATIONS

  void AddPropertyDecl(TCIMPropertyDecl& decl);
  TCIMPropertyDecl& GetPropertyDecl(const std::string& name) const;
  TCIMPropertyDecl* FindPropertyDecl(const std::string& name) const;
  std::vector<TCIMPropertyDecl*> EnumeratePropertyDecls() const;
  void RemovePropertyDecl(TCIMPropertyDecl& decl);
  std::vector<std::string> EnumerateKeyNames() const;
  /// The map itself, for walks that want the normalised names without normalising again.
  const TPropertyDeclMap& PropertyDecls() const { return fPropertyDecls; }

  void AddInstance(TCIMInstance& instance);
  void RemoveInstance(TCIMInstance& instance);
  TCIMInstance& GetInstance(const TCIMReference& path) const;
  TCIMInstance* FindInstance(const TCIMReference& path) const;
  std::vector<TCIMInstance*> EnumerateInstances(bool deep) const;

  std::vector<TCIMClass*> Associators(const std::string& assocClass,
                                      const std::string& resultClass, const std::string& role,
                                      const std::string& resultRole) const;
  std::vector<TCIMClass*> References(const std::string& resultClass,
                                     const std::string& role) const;

  void AddChildClass(TCIMClass& cls);
  void RemoveChildClass(TCIMClass& cls);
  void AddAssociationClass(TCIMClass& cls);
  /// Forgets an association class that leaves the container.
  void RemoveAssociationClass(TCIMClass& cls);
  void AddSubClassesToVector(std::vector<TCIMClass*>& classes, bool deep) const;
  void AddInstancesToVector(std::vector<TCIMInstance*>& instances, bool deep) const;
  std::pair<TQualifierMap::const_iterator, bool> LookupQualifier(const std::string& name) const;
  std::pair<TPropertyDeclMap::const_iterator, bool>
  LookupPropertyDecl(const std::string& name) const;

  /// The reference declarations of an association, each targeting a class not already
  /// covered by another (a subclass of another's target is dropped).
  std::vector<TCIMPropertyDecl*> ReferenceTargets() const;

private:
  TCIMClass& fOwner;
  TContainer& fContainer;
  std::string fName;
  TCIMClass* fSuperClass;
  TQualifierMap fQualifiers;
  TPropertyDeclMap fPropertyDecls;
  std::vector<TCIMClass*> fSubClasses;
  std::set<TCIMClass*> fAssociationClasses;
  TInstanceMap fInstances;
  bool fAdded;
};

#endif
