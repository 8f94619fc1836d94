// TCIMReferenceImpl: the state of an object path: container, class, key bindings and the
// element found by the last resolution.
#ifndef TCIMREFERENCEIMPL_H
#define TCIMREFERENCEIMPL_H

#include "TCIMReference.h"

#include <string>

class ICIMElement;
class TCIMClass;
class TContainer;

/// Appends name="value", to a path text: every value quoted, nothing escaped, a NULL value
/// as an empty text.
void ZelAppendKeyBinding(std::string& path, std::string const& name, TCIMValue const& value);

/// A buffer this thread keeps, emptied, for a path text that is only looked up or copied
/// once: its room stays for the next. For the outermost caller only, never while a path is
/// being built in it.
std::string& ZelPathBuffer();

class TCIMReferenceImpl {
public:
  TCIMReferenceImpl(TCIMReference& owner, TContainer const* container);
  /// A copy of other's state (the cache included) for another handle.
  TCIMReferenceImpl(TCIMReference& owner, TCIMReferenceImpl const& other);

  void SetContainer(TContainer* container);
  void Clear();
  void SetPath(std::string const& path);
  void SetClassName(std::string const& name);
  void SetClass(TCIMClass& cls);
  TCIMClass* GetClass() const;
  std::string GetClassName() const;
  /// Both are moved into the binding.
  void AddKeyValue(std::string name, TCIMValue value);
  TCIMReference::TKeyBindings const& EnumerateKeyBindings() const { return fKeyBindings; }
  void SetKeyBindings(TCIMReference::TKeyBindings const& bindings);
  std::string GetPath() const;
  /// The same text, appended.
  void AppendPath(std::string& path) const;
  ICIMElement* GetCIMElement();
  bool operator==(TCIMReferenceImpl const& other) const;
  bool operator<(TCIMReferenceImpl const& other) const;

private:
  TCIMReference* fOwner;
  TContainer const* fContainer;
  TCIMClass* fClass;
  TCIMReference::TKeyBindings fKeyBindings;
  ICIMElement* fCachedElement;
};

#endif
