// The states that build classes, instances, property declarations, instance properties and
// qualifiers, and the object elements that register them.
#include "xml/TCIMXMLParserStates.h"

#include "TCIMClass.h"
#include "TCIMInstance.h"
#include "TCIMProperty.h"
#include "cim/TCIMPropertyImpl.h"
#include "cim/TCIMClassImpl.h"
#include "cim/TCIMPropertyDeclImpl.h"
#include "cim/TCIMQualifierImpl.h"
#include "TCIMPropertyDecl.h"
#include "TCIMQualifier.h"
#include "TCIMQualifierDecl.h"
#include "TContainer.h"
#include "TZELException.h"
#include "log/ZelLog.h"

// Element and attribute names are compared as views: the length first, no strlen.
using namespace std::string_view_literals;

static const char kSyntaxError[] = "CIM element syntax error";
static const char kPropertyTypeMismatch[] = "Property type != property declaration type";

// A NULL value of the type of like, keeping its referenced class and array bound.
static TCIMValue NullLike(const TCIMValue& like) {
  TCIMValue value(like);
  value.SetNullValue(like.GetType(), like.GetMaxArraySize());
  return value;
}

// ---- The object elements --------------------------------------------------------------

TCIMXMLParser::TObjectState::~TObjectState() {
  delete fInstance;
  delete fClass;
}

void TCIMXMLParser::TObjectState::PushObject(TCIMXMLParser& parser, std::string& name,
                                             TAttributeMap& attributes) {
  if (!ZelPushChild(name, "class"sv, [&] { parser.Push<TStateClass>(attributes, &fClass); },
                    "instance"sv, [&] { parser.Push<TStateInstance>(attributes, &fInstance); }))
    parser.UnexpectedElement(name);
}

// Registers what was read; a class defined twice keeps its first definition, on purpose.
void TCIMXMLParser::TObjectState::EndElement(TCIMXMLParser& parser, std::string& name) {
  if (!fClass && !fInstance)
    parser.FatalError(kSyntaxError);
  if (fClass) {
    try {
      fClass->AddToContainer();
      TCIMClass* added = fClass;
      fClass = 0;  // the container's from here on
      if (fCollect)
        parser.fClassesCollected.push_back(added);
    } catch (TZELException const& e) {
      // A refused class is still this state's, for its destructor to delete.
      if (e.GetCode() != zelStatusAlreadyExists)
        throw;
    }
  }
  if (fInstance) {
    fInstance->AddToContainer();
    fInstance = 0;
  }
  TParseState::EndElement(parser, name);
}

// <!ELEMENT VALUE.OBJECT (CLASS|INSTANCE)> and <!ELEMENT IPARAMVALUE (CLASS|INSTANCE)>
void TCIMXMLParser::TObjectState::StartElement(TCIMXMLParser& parser, std::string& name,
                                               TAttributeMap& attributes) {
  if (fPhase != 0)
    parser.UnexpectedElement(name);
  fPhase = 1;
  PushObject(parser, name, attributes);
}

// <!ELEMENT VALUE.NAMEDOBJECT (CLASS|(INSTANCENAME,INSTANCE))>
// Phases: 0 CLASS or INSTANCENAME, 1 INSTANCE after the name, 2 done.
void TCIMXMLParser::TStateValueNamedObject::StartElement(TCIMXMLParser& parser,
                                                         std::string& name,
                                                         TAttributeMap& attributes) {
  if (fPhase == 0 && name == "class"sv) {
    fPhase = 2;
    PushObject(parser, name, attributes);
  } else {
    TStateValueNamedInstance::StartElement(parser, name, attributes);
  }
}

// <!ELEMENT VALUE.NAMEDINSTANCE (INSTANCENAME,INSTANCE)>
// Phases: 0 INSTANCENAME, 1 INSTANCE, 2 done.
void TCIMXMLParser::TStateValueNamedInstance::StartElement(TCIMXMLParser& parser,
                                                           std::string& name,
                                                           TAttributeMap& attributes) {
  if (fPhase == 0 && name == "instancename"sv) {
    fPhase = 1;
    parser.Push<TStateInstanceName>(attributes, fPath);
  } else if (fPhase == 1 && name == "instance"sv) {
    fPhase = 2;
    PushObject(parser, name, attributes);
  } else {
    parser.UnexpectedElement(name);
  }
}

// <!ELEMENT VALUE.OBJECTWITHPATH ((CLASSPATH,CLASS)|(INSTANCEPATH,INSTANCE))>
// <!ELEMENT VALUE.OBJECTWITHLOCALPATH ((LOCALCLASSPATH,CLASS)|(LOCALINSTANCEPATH,INSTANCE))>
// Phases: 0 a path, 1 CLASS after a class path, 2 INSTANCE after an instance path, 3 done.
void TCIMXMLParser::TStateValueObjectWithPath::StartElement(TCIMXMLParser& parser,
                                                            std::string& name,
                                                            TAttributeMap& attributes) {
  if (fPhase == 0 && name == (fLocal ? "localclasspath"sv : "classpath"sv)) {
    fPhase = 1;
    if (fLocal)
      parser.Push<TStateLocalClassPath>(attributes, fNamespace, fClassName);
    else
      parser.Push<TStateClassPath>(attributes, fHost, fNamespace, fClassName);
  } else if (fPhase == 0 && name == (fLocal ? "localinstancepath"sv : "instancepath"sv)) {
    fPhase = 2;
    if (fLocal)
      parser.Push<TStateLocalInstancePath>(attributes, fNamespace, fPath);
    else
      parser.Push<TStateInstancePath>(attributes, fHost, fNamespace, fPath);
  } else if ((fPhase == 1 && name == "class"sv) || (fPhase == 2 && name == "instance"sv)) {
    fPhase = 3;
    PushObject(parser, name, attributes);
  } else {
    parser.UnexpectedElement(name);
  }
}

// ---- CLASS and INSTANCE ---------------------------------------------------------------

// <!ELEMENT CLASS (QUALIFIER*,(PROPERTY|PROPERTY.ARRAY|PROPERTY.REFERENCE)*,METHOD*)>
// <!ATTLIST CLASS %CIMName; %SuperClass;>
// Phases: 0 qualifiers, 1 properties, 2 methods. The enclosing object element registers
// the class; a METHOD pushes nothing, so nothing of it is read and its end tag closes this
// state.
void TCIMXMLParser::TStateClass::HandleAttrs(TCIMXMLParser& parser, TAttributeMap& attributes) {
  for (TAttributeMap::const_iterator a = attributes.begin(); a != attributes.end(); ++a)
    HandleCIMName(a, fName) || HandleSuperClass(a, fSuperClass);
  TCIMClass* superclass = parser.fContainer->GetClass(fSuperClass);  // "" is the root
  fClass = parser.fContainer->AllocateClass(fName, superclass);
  *fSlot = fClass;
}

void TCIMXMLParser::TStateClass::StartElement(TCIMXMLParser& parser, std::string& name,
                                              TAttributeMap& attributes) {
  switch (fPhase) {
  case 0:
    if (name == "qualifier"sv) {
      parser.Push<TStateQualifier>(attributes, &fClass->GetBody()->Qualifiers(), &fDecls);
      return;
    }
    fPhase = 1;
    [[fallthrough]];
  case 1:
    if (name == "property"sv) {
      parser.Push<TStatePropertyDecl>(attributes, *fClass, fDecls);
      return;
    }
    if (name == "property.array"sv) {
      parser.Push<TStatePropertyArrayDecl>(attributes, *fClass, fDecls);
      return;
    }
    if (name == "property.reference"sv) {
      parser.Push<TStatePropertyReferenceDecl>(attributes, *fClass, fDecls);
      return;
    }
    fPhase = 2;
    [[fallthrough]];
  case 2:
    if (name == "method"sv)
      return;
    parser.UnexpectedElement(name);
  default:
    parser.FatalError(kStateCorrupt);
  }
}

// <!ELEMENT INSTANCE (QUALIFIER*,(PROPERTY|PROPERTY.ARRAY|PROPERTY.REFERENCE)*)>
// <!ATTLIST INSTANCE %ClassName;>
// Phases: 0 qualifiers, 1 properties. The instance starts with its class's properties and is
// registered by the enclosing object element.
void TCIMXMLParser::TStateInstance::HandleAttrs(TCIMXMLParser& parser,
                                                TAttributeMap& attributes) {
  for (TAttributeMap::const_iterator a = attributes.begin(); a != attributes.end(); ++a)
    HandleClassName(a, fClassName);
  TCIMClass* cls;
  try {
    cls = parser.fContainer->GetClass(fClassName);  // "" gives the root class; keep it so
  } catch (TZELException const& e) {
    if (e.GetCode() == zelStatusNotFound)
      ZelLog(zelLogError, "TCIMXMLParser: Couldn't find class " + fClassName);
    throw;
  }
  *fSlot = parser.fContainer->AllocateInstance(cls);
}

void TCIMXMLParser::TStateInstance::StartElement(TCIMXMLParser& parser, std::string& name,
                                                 TAttributeMap& attributes) {
  TCIMInstance& instance = **fSlot;
  switch (fPhase) {
  case 0:
    if (name == "qualifier"sv) {
      parser.Push<TStateQualifier>(attributes, static_cast<TQualifierMap*>(0),
                                   static_cast<TZelQualifierDecls*>(0));
      return;
    }
    fPhase = 1;
    [[fallthrough]];
  case 1:
    if (name == "property"sv)
      parser.Push<TStateProperty>(attributes, instance);
    else if (name == "property.array"sv)
      parser.Push<TStatePropertyArray>(attributes, instance);
    else if (name == "property.reference"sv)
      parser.Push<TStatePropertyReference>(attributes, instance);
    else
      parser.UnexpectedElement(name);
    return;
  default:
    parser.FatalError(kStateCorrupt);
  }
}

// ---- QUALIFIER ------------------------------------------------------------------------

// <!ELEMENT QUALIFIER ((VALUE|VALUE.ARRAY)?)>
// <!ATTLIST QUALIFIER %CIMName; %CIMType; #REQUIRED %Propagated; %QualifierFlavor;>
// The declaration must already be in the container; the owner takes the qualifier.
void TCIMXMLParser::TStateQualifier::HandleAttrs(TCIMXMLParser&, TAttributeMap& attributes) {
  for (TAttributeMap::const_iterator a = attributes.begin(); a != attributes.end(); ++a)
    HandleCIMName(a, fName) || HandleCIMType(a, fType) || HandleQualifierFlavor(a, fFlavor) ||
        HandlePropagated(a, fPropagated);
}

void TCIMXMLParser::TStateQualifier::StartElement(TCIMXMLParser& parser, std::string& name,
                                                  TAttributeMap& attributes) {
  if (fValueRead)
    parser.UnexpectedElement(name);
  if (name == "value"sv)
    parser.Push<TStateValue>(attributes, parser, fValue, fType);
  else if (name == "value.array"sv)
    parser.Push<TStateValueArray>(attributes, fValue, fType, 0);
  else
    parser.UnexpectedElement(name);
  fValueRead = true;
}

static TCIMQualifierDecl& FindDecl(TContainer& container, const std::string& name) {
  try {
    return *container.GetQualifierDecl(name);
  } catch (TZELException const& e) {
    if (e.GetCode() == zelStatusNotFound)
      ZelLog(zelLogError, "TCIMXMLParser: Couldn't find qualifier " + name);
    throw;
  }
}

TCIMQualifierDecl& TZelQualifierDecls::Get(TContainer& container, const std::string& name) {
  for (const std::pair<std::string, TCIMQualifierDecl*>& known : fDecls)
    if (known.first == name)
      return *known.second;
  TCIMQualifierDecl& decl = FindDecl(container, name);
  if (fDecls.empty())
    fDecls.reserve(8);
  fDecls.emplace_back(name, &decl);
  return decl;
}

void TCIMXMLParser::TStateQualifier::EndElement(TCIMXMLParser& parser, std::string& name) {
  TCIMQualifierDecl* decl =
      fDecls ? &fDecls->Get(*parser.fContainer, fName) : &FindDecl(*parser.fContainer, fName);
  if (fOwner) {
    // Made empty, then given the value read: moved, not copied twice (descriptions are long).
    TCIMQualifier* qualifier =
        new TCIMQualifier(*decl, TCIMValue(), TCIMQualifierDecl::EFlavor(fFlavor));
    TCIMValue value(fValueRead ? std::move(fValue) : TCIMValue(decl->GetType(), 0));
    try {
      qualifier->GetBody()->TakeValue(value);
      // An identical re-add of a locked qualifier leaves the holder as it was: still ours.
      if (!ZelAddQualifier(*fOwner, *qualifier))
        delete qualifier;
    } catch (...) {
      delete qualifier;
      throw;
    }
  }
  TParseState::EndElement(parser, name);
}

// ---- Property elements ----------------------------------------------------------------

// <!ELEMENT PROPERTY (QUALIFIER*,VALUE?)>
// <!ATTLIST PROPERTY %CIMName; %CIMType; #REQUIRED %ClassOrigin; %Propagated;>
// <!ELEMENT PROPERTY.ARRAY (QUALIFIER*,VALUE.ARRAY?)>
// <!ATTLIST PROPERTY.ARRAY %CIMName; %CIMType; #REQUIRED %ArraySize; %ClassOrigin; %Propagated;>
// <!ELEMENT PROPERTY.REFERENCE (QUALIFIER*,VALUE.REFERENCE?)>
// <!ATTLIST PROPERTY.REFERENCE %CIMName; %ReferenceClass; %ClassOrigin; %Propagated;>
bool TZelPropertyElement::ReadAttributes(const TAttributeMap& attributes) {
  bool typed = false;
  for (TAttributeMap::const_iterator a = attributes.begin(); a != attributes.end(); ++a) {
    if (TCIMXMLParser::HandleCIMName(a, fName) ||
        TCIMXMLParser::HandleClassOrigin(a, fClassOrigin) ||
        TCIMXMLParser::HandlePropagated(a, fPropagated))
      continue;
    if (fForm == kZelReferenceProperty)
      TCIMXMLParser::HandleReferenceClass(a, fReferenceClass);
    else if (TCIMXMLParser::HandleCIMType(a, fType))
      typed = true;
    else if (fForm == kZelArrayProperty)
      TCIMXMLParser::HandleArraySize(a, fArraySize);
  }
  return typed;
}

// Phases: 0 qualifiers, 1 the value, 2 done.
void TCIMXMLParser::TPropertyDeclState::StartChild(TCIMXMLParser& parser, std::string& name,
                                                   TAttributeMap& attributes,
                                                   TZelPropertyElement& element,
                                                   TQualifierMap* owner,
                                                   TZelQualifierDecls* decls) {
  if (element.fPhase == 0 && name == "qualifier"sv) {
    parser.Push<TStateQualifier>(attributes, owner, decls);
    return;
  }
  if (element.fPhase > 1)
    parser.UnexpectedElement(name);
  element.fPhase = 2;
  element.fValueRead = true;
  if (element.fForm == kZelScalarProperty && name == "value"sv)
    parser.Push<TStateValue>(attributes, parser, element.fValue, element.fType);
  else if (element.fForm == kZelArrayProperty && name == "value.array"sv)
    parser.Push<TStateValueArray>(attributes, element.fValue, element.fType, element.fArraySize);
  else if (element.fForm == kZelReferenceProperty && name == "value.reference"sv)
    parser.Push<TStateValueReference>(attributes, element.fValue);
  else
    parser.UnexpectedElement(name);
}

// ---- Property declarations in a CLASS -------------------------------------------------

// The qualifiers go to the declaration; the value read is its default.
TCIMXMLParser::TPropertyDeclState::~TPropertyDeclState() { delete fDecl; }

void TCIMXMLParser::TPropertyDeclState::HandleAttrs(TCIMXMLParser& parser,
                                                    TAttributeMap& attributes) {
  TZelPropertyElement& e = fElement;
  e.ReadAttributes(attributes);
  switch (e.fForm) {
  case kZelScalarProperty:
    fDefault = TCIMValue(e.fType, 0);
    break;
  case kZelArrayProperty:
    fDefault = TCIMValue(TCIMValue::TCIMType::ECIMType(e.fType | TCIMValue::TCIMType::kArray),
                         e.fArraySize);
    break;
  case kZelReferenceProperty:
    e.fType = TCIMValue::TCIMType::kReference;
    fDefault = TCIMValue(e.fType, 0);
    if (!e.fReferenceClass.empty())
      fDefault.SetReferencedClass(*parser.fContainer->GetClass(e.fReferenceClass));
    break;
  }
  e.fValue = fDefault;
  fDecl = new TCIMPropertyDecl(e.fName, fClass, fDefault);
}

void TCIMXMLParser::TPropertyDeclState::StartElement(TCIMXMLParser& parser, std::string& name,
                                                     TAttributeMap& attributes) {
  StartChild(parser, name, attributes, fElement, &fDecl->GetBody()->Qualifiers(), &fDecls);
}

void TCIMXMLParser::TPropertyDeclState::EndElement(TCIMXMLParser& parser, std::string& name) {
  fDecl->SetValue(fElement.fValueRead ? fElement.fValue : fDefault);
  fDecl->AddToContainer();  // the class takes it, or refuses it and it stays ours
  fDecl = 0;
  TParseState::EndElement(parser, name);
}

// ---- Properties of an INSTANCE --------------------------------------------------------

// The qualifiers are read and dropped. The property must be one of the class's with the
// declared type, except in UX402 mode, where a value of another type is dropped at the end.
void TCIMXMLParser::TPropertyState::HandleAttrs(TCIMXMLParser& parser,
                                                TAttributeMap& attributes) {
  TZelPropertyElement& e = fElement;
  bool typed = e.ReadAttributes(attributes);
  if (e.fForm == kZelReferenceProperty)
    e.fType = TCIMValue::TCIMType::kReference;
  else if (e.fForm == kZelArrayProperty && typed)
    e.fType = TCIMValue::TCIMType::ECIMType(e.fType | TCIMValue::TCIMType::kArray);
  if (parser.fUX402Mode)
    return;
  try {
    fProperty = &fInstance.GetProperty(e.fName);
  } catch (TZELException const& ex) {
    if (ex.GetCode() == zelStatusNotFound)
      ZelLog(zelLogError, "TCIMXMLParser: Couldn't find property " + e.fName);
    throw;
  }
  if (e.fType != fProperty->GetType())
    parser.FatalError(kPropertyTypeMismatch);
}

void TCIMXMLParser::TPropertyState::StartElement(TCIMXMLParser& parser, std::string& name,
                                                 TAttributeMap& attributes) {
  TPropertyDeclState::StartChild(parser, name, attributes, fElement, nullptr, nullptr);
}

void TCIMXMLParser::TPropertyState::EndElement(TCIMXMLParser& parser, std::string& name) {
  TZelPropertyElement& e = fElement;
  TCIMProperty* property = parser.fUX402Mode ? fInstance.FindProperty(e.fName) : fProperty;
  if (property) {  // the values are moved in: the state ends here
    if (!e.fValueRead) {
      TCIMValue null = NullLike(property->GetDeclaration().GetValue());
      property->GetBody()->TakeValue(null);
    } else if (!parser.fUX402Mode || e.fValue.GetType() == property->GetType()) {
      property->GetBody()->TakeValue(e.fValue);
    }
  }
  TParseState::EndElement(parser, name);
}
