// TCIMReference: a CIM object path (a class and the values of its keys), resolvable in its
// container. Copies get their own key bindings.
#ifndef TCIMREFERENCE_H
#define TCIMREFERENCE_H

#include "TCIMValue.h"
#include "zelcore.h"

#include <boost/shared_ptr.hpp>
#include <map>
#include <string>

class ICIMElement;
class TCIMClass;
class TCIMReferenceImpl;
class TContainer;

/// Built in the order container, class, key values. Failures throw TZELException after one
/// core log line.
class ZEL_API TCIMReference {
public:
  typedef std::map<std::string const, TCIMValue const> TKeyBindings;

  explicit TCIMReference(TContainer const* container);
  /// Path text is never parsed: always throws (see SetPath).
  TCIMReference(TContainer const* container, std::string path);
  TCIMReference(TCIMReference const& other);
  TCIMReference& operator=(TCIMReference const& other);
  ~TCIMReference();

  void SetContainer(TContainer* container);
  /// Container and class become null, key bindings emptied, cache dropped.
  void Clear();
  /// Not supported: zelStatusNotImplemented with a container, zelStatusInvalidOpSequence
  /// without one.
  void SetPath(std::string path);
  /// The container's class of that name; zelStatusInvalidOpSequence without a container or
  /// once key values were added.
  void SetClassName(std::string name);
  void SetClass(TCIMClass& referencedClass);
  /// zelStatusInvalidReference while no class is set.
  TCIMClass* GetClass() const;
  std::string GetClassName() const;
  /// Only for KEY properties of the class, with the declaration's exact type.
  void AddKeyValue(std::string name, TCIMValue value);
  TKeyBindings EnumerateKeyBindings() const;
  void SetKeyBindings(TKeyBindings bindings);
  /// Class name, then ".key=\"value\",..." in key order.
  std::string GetPath() const;
  /// The class (no keys) or the instance named (cached); zelStatusNotFound if none.
  ICIMElement* GetCIMElement();

  bool operator==(TCIMReference const& other) const;
  bool operator<(TCIMReference const& other) const;

  TCIMReferenceImpl* GetBody() const;

private:
  boost::shared_ptr<TCIMReferenceImpl> fBody;
};

#endif
