// The parse states of TCIMXMLParser, one class per row of
// TCIMXMLParser.def, and the helpers they share.
#ifndef TCIMXMLPARSERSTATES_H
#define TCIMXMLPARSERSTATES_H

#include "TCIMXMLParser.h"

#include "cim/ZelQualifierHolder.h"
#include "TCIMReference.h"
#include "TCIMValue.h"

#include <boost/make_shared.hpp>
#include <cstddef>
#include <initializer_list>
#include <map>
#include <utility>
#include <string>
#include <string_view>
#include <vector>

class TCIMInstance;
class TCIMProperty;
class TCIMPropertyDecl;

typedef TCIMXMLParser::TAttributeMap TAttributeMap;

/// A state lives for one element: its block, state and count together, is taken from and
/// given back to short free lists of the thread, by size, not to the heap per element.
void* ZelStateBlockTake(std::size_t size);
void ZelStateBlockGive(void* block, std::size_t size) noexcept;

template <class T>
struct TZelStateAllocator {
  typedef T value_type;
  TZelStateAllocator() = default;
  template <class U>
  TZelStateAllocator(const TZelStateAllocator<U>&) {}
  T* allocate(std::size_t n) { return static_cast<T*>(ZelStateBlockTake(n * sizeof(T))); }
  void deallocate(T* block, std::size_t n) noexcept { ZelStateBlockGive(block, n * sizeof(T)); }
  template <class U>
  bool operator==(const TZelStateAllocator<U>&) const { return true; }
  template <class U>
  bool operator!=(const TZelStateAllocator<U>&) const { return false; }
};

template <class State, class... Args>
State& TCIMXMLParser::Push(TAttributeMap& attributes, Args&&... args) {
  // Moved into the stack, not copied: no count is touched on the way.
  fStateStack.push_back(
      boost::allocate_shared<State>(TZelStateAllocator<State>(), std::forward<Args>(args)...));
  State& state = static_cast<State&>(*fStateStack.back());
  state.HandleAttrs(*this, attributes);
  return state;
}

/// Dispatch by element name: runs the push that follows the element equal to name, as in
/// ZelPushChild(name, "cim"sv, [&] { parser.Push<TStateCIM>(attributes); }); false when
/// no element is.
inline bool ZelPushChild(const std::string&) { return false; }

template <class Push, class... Rest>
bool ZelPushChild(const std::string& name, std::string_view element, Push push, Rest... rest) {
  if (name == element) {
    push();
    return true;
  }
  return ZelPushChild(name, rest...);
}

/// The fatal error of a state that finds the stack or its own phase not as it left them.
inline constexpr char kStateCorrupt[] = "Parser state corrupt";

/// Reports message when the attribute is given with none of the accepted values.
void ZelCheckVersion(TCIMXMLParser& parser, const TAttributeMap& attributes,
                     const std::string& attribute, std::initializer_list<std::string_view> accepted,
                     const char* message);

/// A property declaration whose "KEY" qualifier is present, not NULL and true.
bool ZelIsKeyDecl(const TCIMPropertyDecl& decl);

// ---- Document and declarations --------------------------------------------------------

class TCIMXMLParser::TStateStart : public TParseState {
public:
  void StartElement(TCIMXMLParser& parser, std::string& name, TAttributeMap& attributes) override;
};

class TCIMXMLParser::TStateCIM : public TParseState {
public:
  void StartElement(TCIMXMLParser& parser, std::string& name, TAttributeMap& attributes) override;
  void HandleAttrs(TCIMXMLParser& parser, TAttributeMap& attributes) override;
};

class TCIMXMLParser::TStateDeclaration : public TParseState {
public:
  void StartElement(TCIMXMLParser& parser, std::string& name, TAttributeMap& attributes) override;
};

class TCIMXMLParser::TStateDeclGroup : public TParseState {
public:
  TStateDeclGroup() : fObjectElement("value.object"), fPhase(0) {}
  void StartElement(TCIMXMLParser& parser, std::string& name, TAttributeMap& attributes) override;

protected:
  explicit TStateDeclGroup(const char* objectElement) : fObjectElement(objectElement), fPhase(0) {}

private:
  const char* fObjectElement;
  int fPhase;
  std::string fHost;
  std::string fNamespace;
};

class TCIMXMLParser::TStateDeclGroupWithName : public TStateDeclGroup {
public:
  TStateDeclGroupWithName() : TStateDeclGroup("value.namedobject") {}
};

class TCIMXMLParser::TStateDeclGroupWithPath : public TParseState {
public:
  void StartElement(TCIMXMLParser& parser, std::string& name, TAttributeMap& attributes) override;
};

class TCIMXMLParser::TStateQualifierDeclaration : public TParseState {
public:
  TStateQualifierDeclaration();
  void StartElement(TCIMXMLParser& parser, std::string& name, TAttributeMap& attributes) override;
  void EndElement(TCIMXMLParser& parser, std::string& name) override;
  void HandleAttrs(TCIMXMLParser& parser, TAttributeMap& attributes) override;

private:
  std::string fName;
  TCIMValue::TCIMType fType;
  bool fIsArray;
  bool fIsArrayGiven;
  unsigned int fArraySize;
  unsigned int fFlavor;
  unsigned int fScope;
  TCIMValue fValue;
  bool fValueRead;
  int fPhase;
};

class TCIMXMLParser::TStateScope : public TParseState {
public:
  explicit TStateScope(unsigned int& scope) : fScope(scope) {}
  void HandleAttrs(TCIMXMLParser& parser, TAttributeMap& attributes) override;

private:
  unsigned int& fScope;
};

// ---- Objects, classes, instances, properties, qualifiers ------------------------------

/// Holds the class or instance read inside it until its element ends, then registers it.
class TCIMXMLParser::TObjectState : public TParseState {
public:
  ~TObjectState();
  /// One "class" or "instance" child (VALUE.OBJECT and IPARAMVALUE).
  void StartElement(TCIMXMLParser& parser, std::string& name, TAttributeMap& attributes) override;
  void EndElement(TCIMXMLParser& parser, std::string& name) override;

protected:
  explicit TObjectState(bool collect) : fClass(0), fInstance(0), fPhase(0), fCollect(collect) {}
  /// "class" or "instance": pushes the state that fills the matching slot.
  void PushObject(TCIMXMLParser& parser, std::string& name, TAttributeMap& attributes);

  TCIMClass* fClass;        // owned until registered
  TCIMInstance* fInstance;  // owned until registered
  int fPhase;

private:
  bool fCollect;
};

class TCIMXMLParser::TStateValueObject : public TObjectState {
public:
  TStateValueObject() : TObjectState(true) {}
};

class TCIMXMLParser::TStateValueNamedInstance : public TObjectState {
public:
  TStateValueNamedInstance() : TObjectState(true), fPath(0) {}
  void StartElement(TCIMXMLParser& parser, std::string& name, TAttributeMap& attributes) override;

private:
  TCIMReference fPath;
};

// A named object is a class, or the content of a named instance.
class TCIMXMLParser::TStateValueNamedObject : public TStateValueNamedInstance {
public:
  void StartElement(TCIMXMLParser& parser, std::string& name, TAttributeMap& attributes) override;
};

class TCIMXMLParser::TStateValueObjectWithPath : public TObjectState {
public:
  TStateValueObjectWithPath() : TStateValueObjectWithPath(false) {}
  void StartElement(TCIMXMLParser& parser, std::string& name, TAttributeMap& attributes) override;

protected:
  /// local: the paths are LOCALCLASSPATH and LOCALINSTANCEPATH, without a host.
  explicit TStateValueObjectWithPath(bool local) : TObjectState(true), fLocal(local), fPath(0) {}

private:
  bool fLocal;
  std::string fHost;
  std::string fNamespace;
  std::string fClassName;
  TCIMReference fPath;
};

class TCIMXMLParser::TStateValueObjectWithLocalPath : public TStateValueObjectWithPath {
public:
  TStateValueObjectWithLocalPath() : TStateValueObjectWithPath(true) {}
};

/// The qualifier declarations named by the qualifiers of one class and its properties, by
/// the name as written: a class names the same few again and again, and no declaration
/// comes or goes inside a CLASS element.
class TZelQualifierDecls {
public:
  /// zelStatusNotFound, logged, when the container has none of that name.
  TCIMQualifierDecl& Get(TContainer& container, const std::string& name);

private:
  std::vector<std::pair<std::string, TCIMQualifierDecl*>,
              TZelStateAllocator<std::pair<std::string, TCIMQualifierDecl*> > >
      fDecls;
};

class TCIMXMLParser::TStateClass : public TParseState {
public:
  explicit TStateClass(TCIMClass** slot) : fClass(0), fSlot(slot), fPhase(0) {}
  void StartElement(TCIMXMLParser& parser, std::string& name, TAttributeMap& attributes) override;
  void HandleAttrs(TCIMXMLParser& parser, TAttributeMap& attributes) override;

private:
  std::string fName;
  std::string fSuperClass;
  TCIMClass* fClass;
  TCIMClass** fSlot;
  int fPhase;
  TZelQualifierDecls fDecls;
};

class TCIMXMLParser::TStateInstance : public TParseState {
public:
  explicit TStateInstance(TCIMInstance** slot) : fSlot(slot), fPhase(0) {}
  void StartElement(TCIMXMLParser& parser, std::string& name, TAttributeMap& attributes) override;
  void HandleAttrs(TCIMXMLParser& parser, TAttributeMap& attributes) override;

private:
  std::string fClassName;
  TCIMInstance** fSlot;
  int fPhase;
};

class TCIMXMLParser::TStateQualifier : public TParseState {
public:
  /// Null qualifiers: read and checked, then dropped (instances hold none). Declarations
  /// are looked up through decls when given.
  TStateQualifier(TQualifierMap* owner, TZelQualifierDecls* decls)
      : fOwner(owner), fDecls(decls), fFlavor(0), fPropagated(false), fValueRead(false) {}
  void StartElement(TCIMXMLParser& parser, std::string& name, TAttributeMap& attributes) override;
  void EndElement(TCIMXMLParser& parser, std::string& name) override;
  void HandleAttrs(TCIMXMLParser& parser, TAttributeMap& attributes) override;

private:
  TQualifierMap* fOwner;  // the owner's map, added to as its AddQualifier does
  TZelQualifierDecls* fDecls;
  std::string fName;
  TCIMValue::TCIMType fType;
  unsigned int fFlavor;
  bool fPropagated;
  TCIMValue fValue;
  bool fValueRead;
};

/// The three forms of property elements: which attribute gives the type and which value
/// element they take.
enum EZelPropertyForm { kZelScalarProperty, kZelArrayProperty, kZelReferenceProperty };

/// What a property element carries, in a class and in an instance alike: its attributes,
/// the value read and the phase of its children (0 qualifiers, 2 after the value).
struct TZelPropertyElement {
  explicit TZelPropertyElement(EZelPropertyForm form) : fForm(form) {}
  /// name, classorigin, propagated, then referenceclass, or type and (arrays) arraysize;
  /// returns whether a type was given.
  bool ReadAttributes(const TAttributeMap& attributes);

  EZelPropertyForm fForm;
  std::string fName;
  TCIMValue::TCIMType fType;
  std::string fClassOrigin;
  bool fPropagated = false;
  unsigned int fArraySize = 0;
  std::string fReferenceClass;
  TCIMValue fValue;
  bool fValueRead = false;
  int fPhase = 0;
};

class TCIMXMLParser::TPropertyDeclState : public TParseState {
public:
  ~TPropertyDeclState();
  void StartElement(TCIMXMLParser& parser, std::string& name, TAttributeMap& attributes) override;
  void EndElement(TCIMXMLParser& parser, std::string& name) override;
  void HandleAttrs(TCIMXMLParser& parser, TAttributeMap& attributes) override;

  /// A child of a property element in a class or an instance: QUALIFIER (for owner; none
  /// takes those of an instance), then the value element of its form.
  static void StartChild(TCIMXMLParser& parser, std::string& name, TAttributeMap& attributes,
                         TZelPropertyElement& element, TQualifierMap* owner,
                         TZelQualifierDecls* decls);

protected:
  TPropertyDeclState(TCIMClass& cls, TZelQualifierDecls& decls, EZelPropertyForm form)
      : fClass(cls), fDecls(decls), fElement(form), fDecl(0) {}

private:
  TCIMClass& fClass;
  TZelQualifierDecls& fDecls;  // the class's
  TZelPropertyElement fElement;
  TCIMPropertyDecl* fDecl;  // owned until registered
  TCIMValue fDefault;       // NULL of the declared type
};

class TCIMXMLParser::TStatePropertyDecl : public TPropertyDeclState {
public:
  TStatePropertyDecl(TCIMClass& cls, TZelQualifierDecls& decls)
      : TPropertyDeclState(cls, decls, kZelScalarProperty) {}
};
class TCIMXMLParser::TStatePropertyArrayDecl : public TPropertyDeclState {
public:
  TStatePropertyArrayDecl(TCIMClass& cls, TZelQualifierDecls& decls)
      : TPropertyDeclState(cls, decls, kZelArrayProperty) {}
};
class TCIMXMLParser::TStatePropertyReferenceDecl : public TPropertyDeclState {
public:
  TStatePropertyReferenceDecl(TCIMClass& cls, TZelQualifierDecls& decls)
      : TPropertyDeclState(cls, decls, kZelReferenceProperty) {}
};

class TCIMXMLParser::TPropertyState : public TParseState {
public:
  void StartElement(TCIMXMLParser& parser, std::string& name, TAttributeMap& attributes) override;
  void EndElement(TCIMXMLParser& parser, std::string& name) override;
  void HandleAttrs(TCIMXMLParser& parser, TAttributeMap& attributes) override;

protected:
  TPropertyState(TCIMInstance& instance, EZelPropertyForm form)
      : fInstance(instance), fElement(form), fProperty(0) {}

private:
  TCIMInstance& fInstance;
  TZelPropertyElement fElement;  // the type as written, array bit added for the array form
  TCIMProperty* fProperty;       // looked up at the start unless in UX402 mode
};

class TCIMXMLParser::TStateProperty : public TPropertyState {
public:
  explicit TStateProperty(TCIMInstance& instance) : TPropertyState(instance, kZelScalarProperty) {}
};
class TCIMXMLParser::TStatePropertyArray : public TPropertyState {
public:
  explicit TStatePropertyArray(TCIMInstance& instance)
      : TPropertyState(instance, kZelArrayProperty) {}
};
class TCIMXMLParser::TStatePropertyReference : public TPropertyState {
public:
  explicit TStatePropertyReference(TCIMInstance& instance)
      : TPropertyState(instance, kZelReferenceProperty) {}
};

// ---- Values, key bindings and paths ---------------------------------------------------

class TCIMXMLParser::TStateValue : public TParseState {
public:
  TStateValue(TCIMXMLParser& parser, TCIMValue& target, TCIMValue::TCIMType type);
  void EndElement(TCIMXMLParser& parser, std::string& name) override;

private:
  TCIMValue& fTarget;
  TCIMValue::TCIMType fType;
};

class TCIMXMLParser::TStateValueArray : public TParseState {
public:
  TStateValueArray(TCIMValue& target, TCIMValue::TCIMType type, unsigned int arraySize);
  void StartElement(TCIMXMLParser& parser, std::string& name, TAttributeMap& attributes) override;
  void EndElement(TCIMXMLParser& parser, std::string& name) override;

private:
  TCIMValue& fTarget;
  TCIMValue::TCIMType fType;  // of the elements
  unsigned int fArraySize;
  typedef std::vector<TCIMValue, TZelStateAllocator<TCIMValue> > TValues;
  // Blocks from the parser's free lists; grown by StartElement only, between two VALUEs,
  // so the target of the open VALUE stays in place.
  TValues fValues;
};

class TCIMXMLParser::TStateValueReference : public TParseState {
public:
  explicit TStateValueReference(TCIMValue& target);
  void StartElement(TCIMXMLParser& parser, std::string& name, TAttributeMap& attributes) override;
  void EndElement(TCIMXMLParser& parser, std::string& name) override;
  void HandleAttrs(TCIMXMLParser& parser, TAttributeMap& attributes) override;

private:
  TCIMValue& fTarget;
  std::string fHost;
  std::string fNamespace;
  std::string fClassName;
  TCIMReference fPath;
  int fPhase;
};

class TCIMXMLParser::TStateValueRefArray : public TParseState {
public:
  explicit TStateValueRefArray(TCIMValue& target);
  void StartElement(TCIMXMLParser& parser, std::string& name, TAttributeMap& attributes) override;
  void EndElement(TCIMXMLParser& parser, std::string& name) override;

private:
  TCIMValue& fTarget;
  std::vector<TCIMValue> fValues;
};

class TCIMXMLParser::TStateNamespacePath : public TParseState {
public:
  TStateNamespacePath(std::string& host, std::string& nameSpace);
  void StartElement(TCIMXMLParser& parser, std::string& name, TAttributeMap& attributes) override;

private:
  std::string& fHost;
  std::string& fNamespace;
  int fPhase;
};

class TCIMXMLParser::TStateLocalNamespacePath : public TParseState {
public:
  explicit TStateLocalNamespacePath(std::string& nameSpace);
  void StartElement(TCIMXMLParser& parser, std::string& name, TAttributeMap& attributes) override;
  void EndElement(TCIMXMLParser& parser, std::string& name) override;

private:
  std::string& fNamespace;
  unsigned int fCount;
};

/// KEYVALUE and HOST: the character data between the tags is the text.
class TCIMXMLParser::TStateKeyValue : public TParseState {
public:
  TStateKeyValue(TCIMXMLParser& parser, std::string& text);
  void EndElement(TCIMXMLParser& parser, std::string& name) override;

private:
  std::string& fText;
};

class TCIMXMLParser::TStateHost : public TStateKeyValue {
public:
  TStateHost(TCIMXMLParser& parser, std::string& host) : TStateKeyValue(parser, host) {}
};

/// The four path elements: a namespace path (NAMESPACEPATH, or LOCALNAMESPACEPATH in the
/// local forms, which have no host), then CLASSNAME in the class forms or INSTANCENAME in
/// the instance forms. The other three are this one with other targets.
class TCIMXMLParser::TStateClassPath : public TParseState {
public:
  TStateClassPath(std::string& host, std::string& nameSpace, std::string& className)
      : TStateClassPath(&host, nameSpace, &className, nullptr) {}
  void StartElement(TCIMXMLParser& parser, std::string& name, TAttributeMap& attributes) override;

protected:
  TStateClassPath(std::string* host, std::string& nameSpace, std::string* className,
                  TCIMReference* path)
      : fHost(host), fNamespace(nameSpace), fClassName(className), fPath(path), fPhase(0) {}

private:
  std::string* fHost;       // null in the local forms
  std::string& fNamespace;
  std::string* fClassName;  // null in the instance forms
  TCIMReference* fPath;     // null in the class forms
  int fPhase;
};

class TCIMXMLParser::TStateLocalClassPath : public TStateClassPath {
public:
  TStateLocalClassPath(std::string& nameSpace, std::string& className)
      : TStateClassPath(nullptr, nameSpace, &className, nullptr) {}
};

class TCIMXMLParser::TStateInstancePath : public TStateClassPath {
public:
  TStateInstancePath(std::string& host, std::string& nameSpace, TCIMReference& path)
      : TStateClassPath(&host, nameSpace, nullptr, &path) {}
};

class TCIMXMLParser::TStateLocalInstancePath : public TStateClassPath {
public:
  TStateLocalInstancePath(std::string& nameSpace, TCIMReference& path)
      : TStateClassPath(nullptr, nameSpace, nullptr, &path) {}
};

/// CLASSNAME and NAMESPACE, read for their "name" alone: a class name is stored; a
/// namespace adds one segment to the namespace path (root/cimv2).
class TCIMXMLParser::TStateClassName : public TParseState {
public:
  explicit TStateClassName(std::string& className) : TStateClassName(className, false) {}
  void HandleAttrs(TCIMXMLParser& parser, TAttributeMap& attributes) override;

protected:
  TStateClassName(std::string& target, bool segment) : fTarget(target), fSegment(segment) {}

private:
  std::string& fTarget;
  bool fSegment;
};

class TCIMXMLParser::TStateNamespace : public TStateClassName {
public:
  explicit TStateNamespace(std::string& nameSpace) : TStateClassName(nameSpace, true) {}
};

class TCIMXMLParser::TStateKeyBinding : public TParseState {
public:
  TStateKeyBinding(TCIMClass* cls, TCIMReference& path);
  void StartElement(TCIMXMLParser& parser, std::string& name, TAttributeMap& attributes) override;
  void EndElement(TCIMXMLParser& parser, std::string& name) override;
  void HandleAttrs(TCIMXMLParser& parser, TAttributeMap& attributes) override;

protected:
  /// A KEYVALUE or VALUE.REFERENCE child, the first one only: false for anything else.
  bool PushKeyValue(TCIMXMLParser& parser, std::string& name, TAttributeMap& attributes);
  /// Binds the key value read, if any, to the key property named.
  void BindKeyValue(TCIMXMLParser& parser, const std::string& property);

  TCIMClass* fClass;
  TCIMReference& fPath;
  int fPhase;  // 0 nothing read, 1 KEYVALUE, 2 VALUE.REFERENCE

private:
  std::string fName;
  std::string fKeyText;
  TCIMValue fKeyReference;
};

/// Read as KEYBINDING children, or as one unnamed key binding whose property is the first
/// key property of the class.
class TCIMXMLParser::TStateInstanceName : public TStateKeyBinding {
public:
  explicit TStateInstanceName(TCIMReference& path);
  void StartElement(TCIMXMLParser& parser, std::string& name, TAttributeMap& attributes) override;
  void EndElement(TCIMXMLParser& parser, std::string& name) override;
  void HandleAttrs(TCIMXMLParser& parser, TAttributeMap& attributes) override;

private:
  bool fBindings;  // KEYBINDING children read
};

class TCIMXMLParser::TStateObjectPath : public TParseState {
public:
  TStateObjectPath(std::string& host, std::string& nameSpace, TCIMReference& path,
                   std::string& className);
  void StartElement(TCIMXMLParser& parser, std::string& name, TAttributeMap& attributes) override;

private:
  std::string& fHost;
  std::string& fNamespace;
  TCIMReference& fPath;
  std::string& fClassName;
  int fPhase;
};

// ---- Request messages -----------------------------------------------------------------

class TCIMXMLParser::TStateMessage : public TParseState {
public:
  void StartElement(TCIMXMLParser& parser, std::string& name, TAttributeMap& attributes) override;
  void HandleAttrs(TCIMXMLParser& parser, TAttributeMap& attributes) override;
};

class TCIMXMLParser::TStateMultiReq : public TParseState {
public:
  TStateMultiReq() : fPhase(0) {}
  void StartElement(TCIMXMLParser& parser, std::string& name, TAttributeMap& attributes) override;
  void EndElement(TCIMXMLParser& parser, std::string& name) override;

private:
  int fPhase;  // SIMPLEREQ children seen, up to 2
};

class TCIMXMLParser::TStateSimpleReq : public TParseState {
public:
  void StartElement(TCIMXMLParser& parser, std::string& name, TAttributeMap& attributes) override;
};

class TCIMXMLParser::TStateIMethodCall : public TParseState {
public:
  TStateIMethodCall() : fPhase(0) {}
  void StartElement(TCIMXMLParser& parser, std::string& name, TAttributeMap& attributes) override;
  void HandleAttrs(TCIMXMLParser& parser, TAttributeMap& attributes) override;

private:
  std::string fNamespace;
  int fPhase;
};

class TCIMXMLParser::TStateIParamValue : public TObjectState {
public:
  TStateIParamValue() : TObjectState(false) {}
  void HandleAttrs(TCIMXMLParser& parser, TAttributeMap& attributes) override;
};

#endif
