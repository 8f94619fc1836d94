// The states that build classes, instances, property declarations, instance properties and
// qualifiers, and the object elements that register them.
#include "xml/TCIMXMLParserStates.h"

#include "TCIMClass.h"
#include "TCIMInstance.h"
#include "TCIMProperty.h"
#include "cim/TCIMPropertyImpl.h"
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
  if (name == "class"sv)
    parser.Push<TStateClass>(attributes, &fClass);
  else if (name == "instance"sv)
    parser.Push<TStateInstance>(attributes, &fInstance);
  else
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

// <!ELEMENT VALUE.OBJECT (CLASS|INSTANCE)>
void TCIMXMLParser::TStateValueObject::StartElement(TCIMXMLParser& parser, std::string& name,
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
// Phases: 0 a path, 1 CLASS after a class path, 2 INSTANCE after an instance path, 3 done.
void TCIMXMLParser::TStateValueObjectWithPath::StartElement(TCIMXMLParser& parser,
                                                            std::string& name,
                                                            TAttributeMap& attributes) {
  if (fPhase == 0 && name == "classpath"sv) {
    fPhase = 1;
    parser.Push<TStateClassPath>(attributes, fHost, fNamespace, fClassName);
  } else if (fPhase == 0 && name == "instancepath"sv) {
    fPhase = 2;
    parser.Push<TStateInstancePath>(attributes, fHost, fNamespace, fPath);
  } else if ((fPhase == 1 && name == "class"sv) || (fPhase == 2 && name == "instance"sv)) {
    fPhase = 3;
    PushObject(parser, name, attributes);
  } else {
    parser.UnexpectedElement(name);
  }
}

// <!ELEMENT VALUE.OBJECTWITHLOCALPATH ((LOCALCLASSPATH,CLASS)|(LOCALINSTANCEPATH,INSTANCE))>
// Phases as VALUE.OBJECTWITHPATH.
void TCIMXMLParser::TStateValueObjectWithLocalPath::StartElement(TCIMXMLParser& parser,
                                                                 std::string& name,
                                                                 TAttributeMap& attributes) {
  if (fPhase == 0 && name == "localclasspath"sv) {
    fPhase = 1;
    parser.Push<TStateLocalClassPath>(attributes, fNamespace, fClassName);
  } else if (fPhase == 0 && name == "localinstancepath"sv) {
    fPhase = 2;
    parser.Push<TStateLocalInstancePath>(attributes, fNamespace, fPath);
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
      parser.Push<TStateQualifier>(attributes, fClass);
      return;
    }
    fPhase = 1;
    [[fallthrough]];
  case 1:
    if (name == "property"sv) {
      parser.Push<TStatePropertyDecl>(attributes, *fClass);
      return;
    }
    if (name == "property.array"sv) {
      parser.Push<TStatePropertyArrayDecl>(attributes, *fClass);
      return;
    }
    if (name == "property.reference"sv) {
      parser.Push<TStatePropertyReferenceDecl>(attributes, *fClass);
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
      parser.Push<TStateQualifier>(attributes, static_cast<ICIMAllowQualifiers*>(0));
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

void TCIMXMLParser::TStateQualifier::EndElement(TCIMXMLParser& parser, std::string& name) {
  TCIMQualifierDecl* decl;
  try {
    decl = parser.fContainer->GetQualifierDecl(fName);
  } catch (TZELException const& e) {
    if (e.GetCode() == zelStatusNotFound)
      ZelLog(zelLogError, "TCIMXMLParser: Couldn't find qualifier " + fName);
    throw;
  }
  if (fOwner) {
    // Made empty, then given the value read: moved, not copied twice (descriptions are long).
    TCIMQualifier* qualifier =
        new TCIMQualifier(*decl, TCIMValue(), TCIMQualifierDecl::EFlavor(fFlavor));
    TCIMValue value(fValueRead ? std::move(fValue) : TCIMValue(decl->GetType(), 0));
    try {
      qualifier->GetBody()->TakeValue(value);
      fOwner->AddQualifier(*qualifier);
    } catch (...) {
      delete qualifier;
      throw;
    }
    // An identical re-add of a locked qualifier leaves the holder as it was: still ours.
    if (&fOwner->GetQualifier(qualifier->GetName()) != qualifier)
      delete qualifier;
  }
  TParseState::EndElement(parser, name);
}

// ---- Property declarations in a CLASS -------------------------------------------------

// <!ELEMENT PROPERTY (QUALIFIER*,VALUE?)>
// <!ATTLIST PROPERTY %CIMName; %CIMType; #REQUIRED %ClassOrigin; %Propagated;>
// <!ELEMENT PROPERTY.ARRAY (QUALIFIER*,VALUE.ARRAY?)>
// <!ATTLIST PROPERTY.ARRAY %CIMName; %CIMType; #REQUIRED %ArraySize; %ClassOrigin; %Propagated;>
// <!ELEMENT PROPERTY.REFERENCE (QUALIFIER*,VALUE.REFERENCE?)>
// <!ATTLIST PROPERTY.REFERENCE %CIMName; %ReferenceClass; %ClassOrigin; %Propagated;>
// Phases: 0 qualifiers (held by the declaration), 1 the default value, 2 done.
TCIMXMLParser::TPropertyDeclState::~TPropertyDeclState() { delete fDecl; }

void TCIMXMLParser::TPropertyDeclState::HandleAttrs(TCIMXMLParser& parser,
                                                    TAttributeMap& attributes) {
  for (TAttributeMap::const_iterator a = attributes.begin(); a != attributes.end(); ++a)
    HandleCIMName(a, fName) || HandleClassOrigin(a, fClassOrigin) ||
        HandlePropagated(a, fPropagated) ||
        (fForm == kZelReferenceProperty ? HandleReferenceClass(a, fReferenceClass)
                                        : HandleCIMType(a, fType)) ||
        (fForm == kZelArrayProperty && HandleArraySize(a, fArraySize));
  switch (fForm) {
  case kZelScalarProperty:
    fDefault = TCIMValue(fType, 0);
    break;
  case kZelArrayProperty:
    fDefault = TCIMValue(TCIMValue::TCIMType::ECIMType(fType | TCIMValue::TCIMType::kArray),
                         fArraySize);
    break;
  case kZelReferenceProperty:
    fType = TCIMValue::TCIMType::kReference;
    fDefault = TCIMValue(fType, 0);
    if (!fReferenceClass.empty())
      fDefault.SetReferencedClass(*parser.fContainer->GetClass(fReferenceClass));
    break;
  }
  fValue = fDefault;
  fDecl = new TCIMPropertyDecl(fName, fClass, fDefault);
}

void TCIMXMLParser::TPropertyDeclState::StartElement(TCIMXMLParser& parser, std::string& name,
                                                     TAttributeMap& attributes) {
  if (fPhase == 0 && name == "qualifier"sv) {
    parser.Push<TStateQualifier>(attributes, fDecl);
    return;
  }
  if (fPhase > 1)
    parser.UnexpectedElement(name);
  fPhase = 2;
  fValueRead = true;
  if (fForm == kZelScalarProperty && name == "value"sv)
    parser.Push<TStateValue>(attributes, parser, fValue, fType);
  else if (fForm == kZelArrayProperty && name == "value.array"sv)
    parser.Push<TStateValueArray>(attributes, fValue, fType, fArraySize);
  else if (fForm == kZelReferenceProperty && name == "value.reference"sv)
    parser.Push<TStateValueReference>(attributes, fValue);
  else
    parser.UnexpectedElement(name);
}

void TCIMXMLParser::TPropertyDeclState::EndElement(TCIMXMLParser& parser, std::string& name) {
  fDecl->SetValue(fValueRead ? fValue : fDefault);
  fDecl->AddToContainer();  // the class takes it, or refuses it and it stays ours
  fDecl = 0;
  TParseState::EndElement(parser, name);
}

// ---- Properties of an INSTANCE --------------------------------------------------------

// <!ELEMENT PROPERTY (QUALIFIER*,VALUE?)>, PROPERTY.ARRAY (QUALIFIER*,VALUE.ARRAY?) and
// PROPERTY.REFERENCE (QUALIFIER*,VALUE.REFERENCE?), attributes as in a CLASS.
// Phases: 0 qualifiers (read and dropped), 1 the value, 2 done. The property must be one of
// the class's with the declared type, except in UX402 mode, where a value of another type
// is dropped at the end.
void TCIMXMLParser::TPropertyState::HandleAttrs(TCIMXMLParser& parser,
                                                TAttributeMap& attributes) {
  std::string referenceClass;
  bool typed = false;
  for (TAttributeMap::const_iterator a = attributes.begin(); a != attributes.end(); ++a) {
    if (HandleCIMName(a, fName) || HandleClassOrigin(a, fClassOrigin) ||
        HandlePropagated(a, fPropagated))
      continue;
    if (fForm == kZelReferenceProperty)
      HandleReferenceClass(a, referenceClass);
    else if (HandleCIMType(a, fType))
      typed = true;
    else if (fForm == kZelArrayProperty)
      HandleArraySize(a, fArraySize);
  }
  if (fForm == kZelReferenceProperty)
    fType = TCIMValue::TCIMType::kReference;
  else if (fForm == kZelArrayProperty && typed)
    fType = TCIMValue::TCIMType::ECIMType(fType | TCIMValue::TCIMType::kArray);
  if (parser.fUX402Mode)
    return;
  try {
    fProperty = &fInstance.GetProperty(fName);
  } catch (TZELException const& e) {
    if (e.GetCode() == zelStatusNotFound)
      ZelLog(zelLogError, "TCIMXMLParser: Couldn't find property " + fName);
    throw;
  }
  if (fType != fProperty->GetType())
    parser.FatalError(kPropertyTypeMismatch);
}

void TCIMXMLParser::TPropertyState::StartElement(TCIMXMLParser& parser, std::string& name,
                                                 TAttributeMap& attributes) {
  if (fPhase == 0 && name == "qualifier"sv) {
    parser.Push<TStateQualifier>(attributes, static_cast<ICIMAllowQualifiers*>(0));
    return;
  }
  if (fPhase > 1)
    parser.UnexpectedElement(name);
  fPhase = 2;
  fValueRead = true;
  TCIMValue::TCIMType element(TCIMValue::TCIMType::ECIMType(fType & ~TCIMValue::TCIMType::kArray));
  if (fForm == kZelScalarProperty && name == "value"sv)
    parser.Push<TStateValue>(attributes, parser, fValue, element);
  else if (fForm == kZelArrayProperty && name == "value.array"sv)
    parser.Push<TStateValueArray>(attributes, fValue, element, fArraySize);
  else if (fForm == kZelReferenceProperty && name == "value.reference"sv)
    parser.Push<TStateValueReference>(attributes, fValue);
  else
    parser.UnexpectedElement(name);
}

void TCIMXMLParser::TPropertyState::EndElement(TCIMXMLParser& parser, std::string& name) {
  TCIMProperty* property = parser.fUX402Mode ? fInstance.FindProperty(fName) : fProperty;
  if (property) {  // the values are moved in: the state ends here
    if (!fValueRead) {
      TCIMValue null = NullLike(property->GetDeclaration().GetValue());
      property->GetBody()->TakeValue(null);
    } else if (!parser.fUX402Mode || fValue.GetType() == property->GetType()) {
      property->GetBody()->TakeValue(fValue);
    }
  }
  TParseState::EndElement(parser, name);
}
