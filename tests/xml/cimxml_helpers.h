// CIM-XML parser test helpers: run the parser over a text or a data file into a container.
#ifndef XML_CIMXML_HELPERS_H
#define XML_CIMXML_HELPERS_H

#include "TCIMXMLParser.h"
#include "TCIMClass.h"
#include "TCIMInstance.h"
#include "TCIMProperty.h"
#include "TCIMPropertyDecl.h"
#include "TCIMQualifier.h"
#include "TContainer.h"
#include "ZelTest.h"

#include <algorithm>
#include <string>
#include <vector>

inline std::string DataText(std::string const& name) {
  return ZelTest::ReadFile(ZEL_TEST_DATA_DIR "/" + name);
}

/// Parses a writable copy of xml into container; returns the classes collected.
inline std::vector<TCIMClass*> ParseInto(TContainer& container, std::string const& xml,
                                         bool ux402 = false) {
  std::vector<char> buffer(xml.begin(), xml.end());
  buffer.push_back('\0');
  TCIMXMLParser parser(&container);
  if (ux402)
    parser.SetUX402Mode();
  parser.Parse(buffer.data());
  return parser.GetClassesCollected();
}

inline std::vector<std::string> ClassNames(std::vector<TCIMClass*> const& classes) {
  std::vector<std::string> names;
  for (TCIMClass* cls : classes)
    names.push_back(cls->GetName());
  return names;
}

// One line per declaration, class, property declaration, qualifier and instance property,
// built from the object model alone, so that two containers compare as two strings.
inline std::string ValueText(const TCIMValue& value) {
  if (value.IsNull())
    return "NULL(" + std::to_string(value.GetType()) + ")";
  return std::to_string(value.GetType()) + ":" + value.ToString(10);
}

inline std::string QualifierLines(const std::vector<TCIMQualifier*>& qualifiers) {
  std::string text;
  for (TCIMQualifier* q : qualifiers)
    text += "  [" + q->GetName() + "=" + ValueText(q->GetValue()) + " flavor " +
            std::to_string(q->GetFlavor()) + (q->GetPropagated() ? " propagated" : "") + "]\n";
  return text;
}

inline std::string Describe(const TContainer& container) {
  std::string text;
  for (TCIMQualifierDecl* decl : container.EnumerateQualifiers())
    text += "decl " + decl->GetName() + " " + ValueText(decl->GetValue()) + " scope " +
            std::to_string(decl->GetScope()) + " flavor " + std::to_string(decl->GetFlavor()) +
            (decl->IsArray() ? " array" : "") + " max " +
            std::to_string(decl->GetValue().GetMaxArraySize()) + "\n";
  // By name: the writer may register classes in another order than the original.
  std::vector<TCIMClass*> classes = container.GetRootClass()->EnumerateSubClasses(true);
  std::sort(classes.begin(), classes.end(),
            [](TCIMClass* a, TCIMClass* b) { return a->GetName() < b->GetName(); });
  for (TCIMClass* cls : classes) {
    text += "class " + cls->GetName() + " : " + cls->GetSuperClass()->GetName() + "\n";
    text += QualifierLines(cls->EnumerateQualifiers());
    for (TCIMPropertyDecl* decl : cls->EnumeratePropertyDecls()) {
      TCIMClass* referenced = decl->GetValue().GetReferencedClass();
      text += " property " + decl->GetName() + " of " + decl->GetClass().GetName() + " " +
              ValueText(decl->GetValue()) + (referenced ? " to " + referenced->GetName() : "") +
              " max " + std::to_string(decl->GetValue().GetMaxArraySize()) + "\n";
      text += QualifierLines(decl->EnumerateQualifiers());
    }
    for (TCIMInstance* instance : cls->EnumerateInstances(false)) {
      text += " instance " + instance->BuildPath().GetPath() + "\n";
      for (const TCIMProperty* property : instance->EnumerateProperties())
        text += "  " + property->GetName() + "=" + ValueText(property->GetValue()) + "\n";
    }
  }
  return text;
}

#endif
