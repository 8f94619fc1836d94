// The request-message states: only intrinsic create requests are read, as one more way of
// bringing classes and instances into the container. Nothing is executed.
#include "xml/TCIMXMLParserStates.h"

// Element and attribute names are compared as views: the length first, no strlen.
using namespace std::string_view_literals;

static const char kUnknownProtocolVersion[] = "Unknown protocol version";
static const char kInvalidMultiReq[] = "Invalid MULTIREQ";
static const char kUnexpectedParameter[] = "Unexpected IParamValue parameter name";

// <!ELEMENT MESSAGE (SIMPLEREQ|MULTIREQ)>
// <!ATTLIST MESSAGE ID CDATA #REQUIRED PROTOCOLVERSION CDATA #REQUIRED>
void TCIMXMLParser::TStateMessage::HandleAttrs(TCIMXMLParser& parser, TAttributeMap& attributes) {
  ZelCheckVersion(parser, attributes, "protocolversion", {"1.0"sv}, kUnknownProtocolVersion);
}

void TCIMXMLParser::TStateMessage::StartElement(TCIMXMLParser& parser, std::string& name,
                                                TAttributeMap& attributes) {
  if (!ZelPushChild(name, "simplereq"sv, [&] { parser.Push<TStateSimpleReq>(attributes); },
                    "multireq"sv, [&] { parser.Push<TStateMultiReq>(attributes); }))
    parser.UnexpectedElement(name);
}

// <!ELEMENT MULTIREQ (SIMPLEREQ,SIMPLEREQ+)>
// Phase: the SIMPLEREQ children seen, counted up to 2.
void TCIMXMLParser::TStateMultiReq::StartElement(TCIMXMLParser& parser, std::string& name,
                                                 TAttributeMap& attributes) {
  if (name != "simplereq"sv)
    parser.UnexpectedElement(name);
  if (fPhase < 2)
    ++fPhase;
  parser.Push<TStateSimpleReq>(attributes);
}

void TCIMXMLParser::TStateMultiReq::EndElement(TCIMXMLParser& parser, std::string& name) {
  if (fPhase < 2)
    parser.FatalError(kInvalidMultiReq);
  TParseState::EndElement(parser, name);
}

// <!ELEMENT SIMPLEREQ (IMETHODCALL)>
void TCIMXMLParser::TStateSimpleReq::StartElement(TCIMXMLParser& parser, std::string& name,
                                                  TAttributeMap& attributes) {
  if (name != "imethodcall"sv)
    parser.UnexpectedElement(name);
  parser.Push<TStateIMethodCall>(attributes);
}

// <!ELEMENT IMETHODCALL (LOCALNAMESPACEPATH,IPARAMVALUE*)> <!ATTLIST IMETHODCALL %CIMName;>
// Phases: 0 LOCALNAMESPACEPATH (read, not used), 1 parameters.
void TCIMXMLParser::TStateIMethodCall::HandleAttrs(TCIMXMLParser& parser,
                                                   TAttributeMap& attributes) {
  std::string method;
  for (TAttributeMap::const_iterator a = attributes.begin(); a != attributes.end(); ++a)
    HandleCIMName(a, method);
  // An absent or empty name is let through, on purpose.
  if (!method.empty() && method != "CreateClass"sv && method != "CreateInstance"sv)
    parser.FatalError(("Unexpected IMethodCall method " + method).c_str());
}

void TCIMXMLParser::TStateIMethodCall::StartElement(TCIMXMLParser& parser, std::string& name,
                                                    TAttributeMap& attributes) {
  if (fPhase == 0 && name == "localnamespacepath"sv) {
    fPhase = 1;
    parser.Push<TStateLocalNamespacePath>(attributes, fNamespace);
  } else if (fPhase == 1 && name == "iparamvalue"sv) {
    parser.Push<TStateIParamValue>(attributes);
  } else {
    parser.UnexpectedElement(name);
  }
}

// <!ELEMENT IPARAMVALUE (CLASS|INSTANCE)> <!ATTLIST IPARAMVALUE %CIMName;>
// Registers like VALUE.OBJECT, but the class is not counted among the classes collected.
void TCIMXMLParser::TStateIParamValue::HandleAttrs(TCIMXMLParser& parser,
                                                   TAttributeMap& attributes) {
  std::string parameter;
  for (TAttributeMap::const_iterator a = attributes.begin(); a != attributes.end(); ++a)
    HandleCIMName(a, parameter);
  if (parameter != "NewClass"sv && parameter != "NewInstance"sv)
    parser.FatalError(kUnexpectedParameter);
}
