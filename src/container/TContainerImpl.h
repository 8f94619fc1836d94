// TContainerImpl: the registry of a container: classes and qualifier declarations under
// their normalised names, the root class and the diff state.
#ifndef TCONTAINERIMPL_H
#define TCONTAINERIMPL_H

#include "TContainer.h"

#include <boost/shared_ptr.hpp>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

class TCIMClass;
class TCIMInstance;
class TCIMQualifierDecl;

class TContainerImpl {
public:
  // Transparent order: a lookup passes the normal form as a view, making no string.
  typedef std::map<std::string, boost::shared_ptr<TCIMQualifierDecl>, std::less<> >
      TQualifierDeclMap;
  typedef std::map<std::string, boost::shared_ptr<TCIMClass>, std::less<> > TClassMap;

  explicit TContainerImpl(TContainer& owner);
  /// Makes the root class through the owner's (virtual) factory.
  void Initialize();

  /// ZelNormalizeName: lower case, and a valid CIM name (or empty).
  static std::string NormalizeName(const std::string& name);

  void AddClass(TCIMClass& cls);
  void AddQualifierDecl(TCIMQualifierDecl& decl);
  TCIMClass* GetClass(const std::string& name) const;
  TCIMClass* FindClass(const std::string& name) const;
  TCIMClass* GetRootClass() const { return fRootClass; }
  void RemoveClass(TCIMClass& cls);
  TCIMQualifierDecl* GetQualifierDecl(const std::string& name) const;
  TCIMQualifierDecl* FindQualifierDecl(const std::string& name) const;
  void RemoveQualifierDecl(TCIMQualifierDecl& decl);
  std::vector<TCIMQualifierDecl*> EnumerateQualifiers() const;

  std::vector<TCIMClass*> PopulateContainerFromFile(const std::string& path);

  void TurnIntoADiffContainer() { fDiff = true; }
  bool IsDiffContainer() const { return fDiff; }
  void SetDiffInstances(const std::vector<TCIMInstance*>& instances);
  std::vector<TCIMInstance*> GetDiffInstances() const;
  bool HasDifferences() const;

  /// The map position of the normalised name and whether it is there.
  std::pair<TClassMap::const_iterator, bool> LookupClass(const std::string& name) const;
  std::pair<TQualifierDeclMap::const_iterator, bool>
  LookupQualifier(const std::string& name) const;

private:
  void CheckDiffContainer() const;

  TContainer& fOwner;
  TQualifierDeclMap fQualifierDecls;
  TClassMap fClasses;
  TCIMClass* fRootClass;
  bool fDiff;
  std::vector<TCIMInstance*> fDiffInstances;
};

#endif
