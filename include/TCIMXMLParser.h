// TCIMXMLParser: reads a CIM-XML document into a container: a stack of parse states, one per
// open element, driven by the TXmlParser callbacks.
#ifndef TCIMXMLPARSER_H
#define TCIMXMLPARSER_H

#include "TCIMValue.h"
#include "TXmlParser.h"
#include "zelcore.h"

#include <boost/shared_ptr.hpp>
#include <deque>
#include <map>
#include <string>
#include <vector>

class TCIMClass;
class TContainer;

/// One parser per document and container. Errors end the parse with a TZELException after
/// a log line naming the line; objects registered before the error stay in the container.
class ZEL_API TCIMXMLParser : public TXmlParser {
public:
  typedef std::map<std::string, std::string> TAttributeMap;

  /// Everything read is created in and registered with container (not owned).
  explicit TCIMXMLParser(TContainer* container);
  virtual ~TCIMXMLParser();

  virtual void StartElement(const char* name,
                            std::map<std::string, std::string>& attributes) override;
  virtual void EndElement(const char* name) override;
  /// Ignored.
  virtual void processingInstruction(const char* target, const char* data) override;
  virtual void characters(const char* text, unsigned int length) override;
  /// Ignored.
  virtual void notationDecl(const char* name, const char* publicId, const char* systemId) override;
  /// Logs "CIM-XML Parser line N:message", throws zelStatusInvalidSpecificationDocument.
  [[noreturn]] virtual void FatalError(const char* message) override;

  /// Relaxes the instance property type checks: mismatching values are dropped silently.
  void SetUX402Mode();
  /// Classes defined by VALUE.OBJECT-family elements, in the order registered.
  std::vector<TCIMClass*> GetClassesCollected() const;

  /// Exactly "true" is true.
  static bool ConvertBool(std::string& text);
  static unsigned int ConvertUnsignedInt(std::string& text);
  /// The text of a VALUE as a scalar of type; an unreadable date-time is logged and read as
  /// 1970-01-01 00:00:00.
  TCIMValue ParseValue(TCIMValue::TCIMType type, std::string& text);

  /// Shared attribute handlers: each returns whether the attribute was its own and then
  /// stores its converted value.
  static bool HandleCIMName(TAttributeMap::const_iterator attribute, std::string& name);
  static bool HandleCIMType(TAttributeMap::const_iterator attribute, TCIMValue::TCIMType& type);
  static bool HandleQualifierFlavor(TAttributeMap::const_iterator attribute, unsigned int& flavor);
  static bool HandleClassOrigin(TAttributeMap::const_iterator attribute, std::string& origin);
  static bool HandlePropagated(TAttributeMap::const_iterator attribute, bool& propagated);
  static bool HandleArraySize(TAttributeMap::const_iterator attribute, unsigned int& size);
  static bool HandleSuperClass(TAttributeMap::const_iterator attribute, std::string& superclass);
  static bool HandleClassName(TAttributeMap::const_iterator attribute, std::string& className);
  static bool HandleReferenceClass(TAttributeMap::const_iterator attribute,
                                   std::string& referenceClass);

  class TParseState;

private:
#define CIMXML_STATE(element, State) class State;
#define CIMXML_STATE_NOT_PUSHED(element, State) class State;
#include "TCIMXMLParser.def"
#undef CIMXML_STATE
#undef CIMXML_STATE_NOT_PUSHED
  class TObjectState;        // VALUE.OBJECT family and IPARAMVALUE: one class or instance
  class TPropertyDeclState;  // PROPERTY* in a CLASS
  class TPropertyState;      // PROPERTY* in an INSTANCE

  /// Pushes a new child state and hands it the element's attributes.
  template <class State, class... Args> State& Push(TAttributeMap& attributes, Args&&... args);
  /// Reports "Unexpected element " + name.
  [[noreturn]] void UnexpectedElement(const std::string& name);

  std::deque<boost::shared_ptr<TParseState> > fStateStack;
  TContainer* fContainer;
  std::vector<TCIMClass*> fClassesCollected;
  std::string fCharData;
  bool fUX402Mode;
};

/// The base of every state: the state of one open element.
class TCIMXMLParser::TParseState {
public:
  virtual ~TParseState();
  /// A child element starts: push its state or report it. The base ignores the child.
  virtual void StartElement(TCIMXMLParser& parser, std::string& name,
                            std::map<std::string, std::string>& attributes);
  /// This element ends: finish its object, then pop (the base only pops).
  virtual void EndElement(TCIMXMLParser& parser, std::string& name);
  /// Right after the push, with the element's own attributes.
  virtual void HandleAttrs(TCIMXMLParser& parser, std::map<std::string, std::string>& attributes);
};

#endif
