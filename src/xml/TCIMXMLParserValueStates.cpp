// The states that read the leaves of a document: VALUE texts, value lists, references, and
// the object paths with their key bindings.
#include "xml/TCIMXMLParserStates.h"

#include "TCIMClass.h"
#include "TCIMPropertyDecl.h"
#include "TContainer.h"

// Element and attribute names are compared as views: the length first, no strlen.
using namespace std::string_view_literals;

static const char kNoNamespace[] = "Unexpected at least 1 NAMESPACE element";

// The message for a class whose bound property is not a key.
static std::string NoKeysMessage(const TCIMClass& cls) {
  return "Class " + cls.GetName() + " doesn't have any key properties";
}

// ---- Values ---------------------------------------------------------------------------

// <!ELEMENT VALUE (#PCDATA)>
// The text is every byte between the tags, whitespace included.
TCIMXMLParser::TStateValue::TStateValue(TCIMXMLParser& parser, TCIMValue& target,
                                        TCIMValue::TCIMType type)
    : fTarget(target), fType(type) {
  parser.fCharData.clear();
}

void TCIMXMLParser::TStateValue::EndElement(TCIMXMLParser& parser, std::string& name) {
  fTarget = parser.ParseValue(fType, parser.fCharData);
  parser.fCharData.clear();
  TParseState::EndElement(parser, name);
}

// <!ELEMENT VALUE.ARRAY (VALUE*)>
TCIMXMLParser::TStateValueArray::TStateValueArray(TCIMValue& target, TCIMValue::TCIMType type,
                                                  unsigned int arraySize)
    : fTarget(target),
      fType(TCIMValue::TCIMType::ECIMType(type & ~TCIMValue::TCIMType::kArray)),
      fArraySize(arraySize) {}

void TCIMXMLParser::TStateValueArray::StartElement(TCIMXMLParser& parser, std::string& name,
                                                   TAttributeMap& attributes) {
  if (name != "value"sv)
    parser.UnexpectedElement(name);
  if (fValues.size() == fValues.capacity()) {
    // Grown by moving: the vector would copy every element, a value's move not being
    // noexcept.
    TValues grown;
    grown.reserve(fValues.empty() ? 8 : 2 * fValues.size());
    for (TCIMValue& value : fValues)
      grown.push_back(std::move(value));
    fValues.swap(grown);
  }
  fValues.emplace_back();
  parser.Push<TStateValue>(attributes, parser, fValues.back(), fType);
}

// The elements are moved into the array, not cloned, when they all have the element type;
// otherwise Set reports the first that has not.
void TCIMXMLParser::TStateValueArray::EndElement(TCIMXMLParser& parser, std::string& name) {
  std::vector<TCIMValue> elements;
  elements.reserve(fValues.size());
  bool typed = true;
  for (TCIMValue& value : fValues) {
    typed = typed && value.GetType() == fType;
    elements.push_back(std::move(value));
  }
  if (typed) {
    fTarget.Set(fType, fArraySize, std::vector<TCIMValue>());
    static_cast<std::vector<TCIMValue>&>(fTarget).swap(elements);
  } else {
    fTarget.Set(fType, fArraySize, elements);
  }
  TParseState::EndElement(parser, name);
}

// <!ELEMENT VALUE.REFERENCE (CLASSPATH|LOCALCLASSPATH|CLASSNAME|INSTANCEPATH|
//                            LOCALINSTANCEPATH|INSTANCENAME)>
// Phases: 0 the path, 1 a class path read, 2 an instance path read. The value resolves the
// path, so the class or instance named must exist already.
TCIMXMLParser::TStateValueReference::TStateValueReference(TCIMValue& target)
    : fTarget(target), fPath(0), fPhase(0) {}

void TCIMXMLParser::TStateValueReference::HandleAttrs(TCIMXMLParser& parser, TAttributeMap&) {
  fPath.SetContainer(parser.fContainer);
}

void TCIMXMLParser::TStateValueReference::StartElement(TCIMXMLParser& parser,
                                                       std::string& name,
                                                       TAttributeMap& attributes) {
  if (fPhase != 0)
    parser.UnexpectedElement(name);
  fPhase = 1;
  if (name == "classpath"sv)
    parser.Push<TStateClassPath>(attributes, fHost, fNamespace, fClassName);
  else if (name == "localclasspath"sv)
    parser.Push<TStateLocalClassPath>(attributes, fNamespace, fClassName);
  else if (name == "classname"sv)
    parser.Push<TStateClassName>(attributes, fClassName);
  else if ((fPhase = 2), name == "instancepath"sv)
    parser.Push<TStateInstancePath>(attributes, fHost, fNamespace, fPath);
  else if (name == "localinstancepath"sv)
    parser.Push<TStateLocalInstancePath>(attributes, fNamespace, fPath);
  else if (name == "instancename"sv)
    parser.Push<TStateInstanceName>(attributes, fPath);
  else
    parser.UnexpectedElement(name);
}

void TCIMXMLParser::TStateValueReference::EndElement(TCIMXMLParser& parser, std::string& name) {
  switch (fPhase) {
  case 0:
    break;
  case 1:
    fPath.SetClassName(fClassName);
    fTarget.Set(fPath);
    break;
  case 2:
    fTarget.Set(fPath);
    break;
  default:
    parser.FatalError(kStateCorrupt);
  }
  TParseState::EndElement(parser, name);
}

// <!ELEMENT VALUE.REFARRAY (VALUE.REFERENCE*)>
TCIMXMLParser::TStateValueRefArray::TStateValueRefArray(TCIMValue& target) : fTarget(target) {}

void TCIMXMLParser::TStateValueRefArray::StartElement(TCIMXMLParser& parser, std::string& name,
                                                      TAttributeMap& attributes) {
  if (name != "value.reference"sv)
    parser.UnexpectedElement(name);
  fValues.push_back(TCIMValue());
  parser.Push<TStateValueReference>(attributes, fValues.back());
}

void TCIMXMLParser::TStateValueRefArray::EndElement(TCIMXMLParser& parser, std::string& name) {
  fTarget.Set(TCIMValue::TCIMType::kReference, 0, fValues);
  TParseState::EndElement(parser, name);
}

// ---- Paths ----------------------------------------------------------------------------

// <!ELEMENT NAMESPACEPATH (HOST,LOCALNAMESPACEPATH)>
// Phases: 0 HOST, 1 LOCALNAMESPACEPATH, 2 done.
TCIMXMLParser::TStateNamespacePath::TStateNamespacePath(std::string& host,
                                                        std::string& nameSpace)
    : fHost(host), fNamespace(nameSpace), fPhase(0) {}

void TCIMXMLParser::TStateNamespacePath::StartElement(TCIMXMLParser& parser, std::string& name,
                                                      TAttributeMap& attributes) {
  if (fPhase == 0 && name == "host"sv)
    parser.Push<TStateHost>(attributes, parser, fHost);
  else if (fPhase == 1 && name == "localnamespacepath"sv)
    parser.Push<TStateLocalNamespacePath>(attributes, fNamespace);
  else
    parser.UnexpectedElement(name);
  ++fPhase;
}

// <!ELEMENT LOCALNAMESPACEPATH (NAMESPACE+)>
TCIMXMLParser::TStateLocalNamespacePath::TStateLocalNamespacePath(std::string& nameSpace)
    : fNamespace(nameSpace), fCount(0) {}

void TCIMXMLParser::TStateLocalNamespacePath::StartElement(TCIMXMLParser& parser,
                                                           std::string& name,
                                                           TAttributeMap& attributes) {
  if (name != "namespace"sv)
    parser.UnexpectedElement(name);
  ++fCount;
  parser.Push<TStateNamespace>(attributes, fNamespace);
}

void TCIMXMLParser::TStateLocalNamespacePath::EndElement(TCIMXMLParser& parser,
                                                         std::string& name) {
  if (fCount == 0)
    parser.FatalError(kNoNamespace);
  TParseState::EndElement(parser, name);
}

// <!ELEMENT CLASSPATH (NAMESPACEPATH,CLASSNAME)>
// <!ELEMENT LOCALCLASSPATH (LOCALNAMESPACEPATH,CLASSNAME)>
// <!ELEMENT INSTANCEPATH (NAMESPACEPATH,INSTANCENAME)>
// <!ELEMENT LOCALINSTANCEPATH (LOCALNAMESPACEPATH,INSTANCENAME)>
// Phases: 0 the namespace path, 1 the name, 2 done.
void TCIMXMLParser::TStateClassPath::StartElement(TCIMXMLParser& parser, std::string& name,
                                                  TAttributeMap& attributes) {
  if (fPhase == 0 && fHost && name == "namespacepath"sv)
    parser.Push<TStateNamespacePath>(attributes, *fHost, fNamespace);
  else if (fPhase == 0 && !fHost && name == "localnamespacepath"sv)
    parser.Push<TStateLocalNamespacePath>(attributes, fNamespace);
  else if (fPhase == 1 && fClassName && name == "classname"sv)
    parser.Push<TStateClassName>(attributes, *fClassName);
  else if (fPhase == 1 && fPath && name == "instancename"sv)
    parser.Push<TStateInstanceName>(attributes, *fPath);
  else
    parser.UnexpectedElement(name);
  ++fPhase;
}

// <!ELEMENT CLASSNAME EMPTY> <!ATTLIST CLASSNAME %CIMName;>
// <!ELEMENT NAMESPACE EMPTY> <!ATTLIST NAMESPACE %CIMName;>
void TCIMXMLParser::TStateClassName::HandleAttrs(TCIMXMLParser&, TAttributeMap& attributes) {
  std::string name;
  bool named = false;
  for (TAttributeMap::const_iterator a = attributes.begin(); a != attributes.end(); ++a)
    named = HandleCIMName(a, name) || named;
  if (!fSegment) {
    if (named)
      fTarget = name;
    return;
  }
  if (!fTarget.empty())
    fTarget += '/';
  fTarget += name;
}

// <!ELEMENT OBJECTPATH (INSTANCEPATH|CLASSPATH)>
TCIMXMLParser::TStateObjectPath::TStateObjectPath(std::string& host, std::string& nameSpace,
                                                  TCIMReference& path, std::string& className)
    : fHost(host), fNamespace(nameSpace), fPath(path), fClassName(className), fPhase(0) {}

void TCIMXMLParser::TStateObjectPath::StartElement(TCIMXMLParser& parser, std::string& name,
                                                   TAttributeMap& attributes) {
  if (fPhase == 0 && name == "instancepath"sv)
    parser.Push<TStateInstancePath>(attributes, fHost, fNamespace, fPath);
  else if (fPhase == 0 && name == "classpath"sv)
    parser.Push<TStateClassPath>(attributes, fHost, fNamespace, fClassName);
  else
    parser.UnexpectedElement(name);
  fPhase = 1;
}

// ---- Instance names and key bindings --------------------------------------------------

// Converts a KEYVALUE text to the type of the class's key property name and binds it.
static void BindKeyText(TCIMXMLParser& parser, TCIMClass& cls, TCIMReference& path,
                        const std::string& name, std::string& text) {
  TCIMPropertyDecl* decl = cls.FindPropertyDecl(name);
  if (!decl)
    parser.FatalError(("Couldn't find property name " + name + " in class " + cls.GetName())
                          .c_str());
  if (!ZelIsKeyDecl(*decl))
    parser.FatalError(NoKeysMessage(cls).c_str());
  path.AddKeyValue(name, parser.ParseValue(decl->GetType(), text));
}

// <!ELEMENT KEYBINDING (KEYVALUE|VALUE.REFERENCE)> <!ATTLIST KEYBINDING %CIMName;>
TCIMXMLParser::TStateKeyBinding::TStateKeyBinding(TCIMClass* cls, TCIMReference& path)
    : fClass(cls), fPath(path), fPhase(0) {}

void TCIMXMLParser::TStateKeyBinding::HandleAttrs(TCIMXMLParser&, TAttributeMap& attributes) {
  for (TAttributeMap::const_iterator a = attributes.begin(); a != attributes.end(); ++a)
    HandleCIMName(a, fName);
}

void TCIMXMLParser::TStateKeyBinding::StartElement(TCIMXMLParser& parser, std::string& name,
                                                   TAttributeMap& attributes) {
  if (!PushKeyValue(parser, name, attributes))
    parser.UnexpectedElement(name);
}

void TCIMXMLParser::TStateKeyBinding::EndElement(TCIMXMLParser& parser, std::string& name) {
  BindKeyValue(parser, fName);
  TParseState::EndElement(parser, name);
}

bool TCIMXMLParser::TStateKeyBinding::PushKeyValue(TCIMXMLParser& parser, std::string& name,
                                                   TAttributeMap& attributes) {
  if (fPhase == 0 && name == "keyvalue"sv) {
    fPhase = 1;
    parser.Push<TStateKeyValue>(attributes, parser, fKeyText);
  } else if (fPhase == 0 && name == "value.reference"sv) {
    fPhase = 2;
    parser.Push<TStateValueReference>(attributes, fKeyReference);
  } else {
    return false;
  }
  return true;
}

void TCIMXMLParser::TStateKeyBinding::BindKeyValue(TCIMXMLParser& parser,
                                                   const std::string& property) {
  if (fPhase == 1)
    BindKeyText(parser, *fClass, fPath, property, fKeyText);
  else if (fPhase == 2)
    fPath.AddKeyValue(property, fKeyReference);
}

// <!ELEMENT INSTANCENAME (KEYBINDING*|KEYVALUE?|VALUE.REFERENCE?)>
// <!ATTLIST INSTANCENAME %ClassName;>
// Key bindings, or one unnamed KEYVALUE or VALUE.REFERENCE, which goes to the first key
// property of the class.
TCIMXMLParser::TStateInstanceName::TStateInstanceName(TCIMReference& path)
    : TStateKeyBinding(0, path), fBindings(false) {}

void TCIMXMLParser::TStateInstanceName::HandleAttrs(TCIMXMLParser& parser,
                                                    TAttributeMap& attributes) {
  std::string className;
  for (TAttributeMap::const_iterator a = attributes.begin(); a != attributes.end(); ++a)
    HandleClassName(a, className);
  fPath.SetContainer(parser.fContainer);
  fClass = parser.fContainer->FindClass(className);
  if (!fClass)
    parser.FatalError(("Couldn't find class name " + className).c_str());
  fPath.SetClassName(className);
}

void TCIMXMLParser::TStateInstanceName::StartElement(TCIMXMLParser& parser, std::string& name,
                                                     TAttributeMap& attributes) {
  if (fPhase == 0 && name == "keybinding"sv) {
    fBindings = true;
    parser.Push<TStateKeyBinding>(attributes, fClass, fPath);
  } else if (fBindings || !PushKeyValue(parser, name, attributes)) {
    parser.UnexpectedElement(name);
  }
}

void TCIMXMLParser::TStateInstanceName::EndElement(TCIMXMLParser& parser, std::string& name) {
  if (fPhase != 0) {
    TCIMPropertyDecl* key = 0;
    std::vector<TCIMPropertyDecl*> decls = fClass->EnumeratePropertyDecls();
    for (std::vector<TCIMPropertyDecl*>::const_iterator d = decls.begin(); d != decls.end(); ++d)
      if (ZelIsKeyDecl(**d)) {
        key = *d;
        break;
      }
    if (!key)
      parser.FatalError(NoKeysMessage(*fClass).c_str());
    BindKeyValue(parser, key->GetName());
  }
  TParseState::EndElement(parser, name);
}

// <!ELEMENT KEYVALUE (#PCDATA)> and <!ELEMENT HOST (#PCDATA)>
TCIMXMLParser::TStateKeyValue::TStateKeyValue(TCIMXMLParser& parser, std::string& text)
    : fText(text) {
  parser.fCharData.clear();
}

void TCIMXMLParser::TStateKeyValue::EndElement(TCIMXMLParser& parser, std::string& name) {
  fText = parser.fCharData;
  parser.fCharData.clear();
  TParseState::EndElement(parser, name);
}
