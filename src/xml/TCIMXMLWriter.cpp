// TCIMXMLWriter: CIM-XML output in the element forms that TCIMXMLParser reads, written in
// an order that lets every name be resolved when the document is read again.
#include "TCIMXMLWriter.h"

#include "TCIMClass.h"
#include "TCIMDateTime.h"
#include "TCIMInstance.h"
#include "TCIMProperty.h"
#include "TCIMPropertyDecl.h"
#include "TCIMQualifier.h"
#include "TCIMQualifierDecl.h"
#include "TCIMReference.h"
#include "TCIMValue.h"
#include "TContainer.h"
#include "TZELException.h"
#include "log/ZelLog.h"
#include "xml/ZelGzipPath.h"
#include "xml/ZelQualifierAttributes.h"

#include <cstdio>
#include <limits>
#include <locale>
#include <set>
#include <sstream>
#include <zlib.h>

typedef TCIMValue::TCIMType TCIMType;

// Character data: the tokenizer decodes the five named entities and one-byte character
// references, and takes every other byte as it is (UTF-8 passes through).
static void AppendText(std::string& out, const std::string& text) {
  for (std::string::const_iterator c = text.begin(); c != text.end(); ++c) {
    unsigned char byte = static_cast<unsigned char>(*c);
    if (*c == '&')
      out += "&amp;";
    else if (*c == '<')
      out += "&lt;";
    else if (*c == '>')
      out += "&gt;";
    else if (byte < 0x20 && *c != '\n' && *c != '\t') // CR too, so that it survives as is
      out += "&#" + std::to_string(byte) + ";";
    else
      out += *c;
  }
}

// Attribute values are names and type names: the tokenizer takes no references in them.
static void AppendAttribute(std::string& out, std::string_view name, const std::string& value) {
  out += ' ';
  out += name;
  out += "=\"";
  out += value;
  out += '"';
}

static const char* BoolText(bool value) { return value ? "true" : "false"; }

static TCIMType ElementType(const TCIMValue& value) {
  return TCIMType::ECIMType(value.GetType() & ~TCIMType::kArray);
}

// Reals with every digit that tells them apart, in the C locale, so that they read back equal.
template <class Real>
static std::string RealText(Real value) {
  std::ostringstream out;
  out.imbue(std::locale::classic());
  out.precision(std::numeric_limits<Real>::max_digits10);
  out << value;
  return out.str();
}

// The text of one non-NULL scalar, as TCIMValue(type, text, container) parses it.
static std::string ScalarText(const TCIMValue& value) {
  switch (static_cast<TCIMType::ECIMType>(value.GetType())) {
  case TCIMType::kReal32:
    return RealText(static_cast<float>(value));
  case TCIMType::kReal64:
    return RealText(static_cast<double>(value));
  case TCIMType::kDateTime:
    return static_cast<TCIMDateTime>(value).ToString();
  default:
    return value.ToString(/*radix=*/10);
  }
}

static void AppendValue(std::string& out, const TCIMValue& value) {
  out += "<VALUE>";
  AppendText(out, ScalarText(value));
  out += "</VALUE>";
}

static void AppendReference(std::string& out, const TCIMReference& reference);

// KEYVALUE text for scalar keys, a nested VALUE.REFERENCE for reference keys.
static void AppendKeyBindings(std::string& out, const TCIMReference& reference) {
  TCIMReference::TKeyBindings bindings = reference.EnumerateKeyBindings();
  for (TCIMReference::TKeyBindings::const_iterator key = bindings.begin();
       key != bindings.end(); ++key) {
    out += "<KEYBINDING";
    AppendAttribute(out, "NAME", key->first);
    out += ">";
    if (key->second.IsReference()) {
      AppendReference(out, static_cast<TCIMReference>(key->second));
    } else {
      // VALUETYPE and TYPE as the CIM-XML DTD asks; the reader takes the type from the
      // key property's declaration and ignores both.
      TCIMType type = ElementType(key->second);
      out += "<KEYVALUE";
      AppendAttribute(out, "VALUETYPE",
                      type == TCIMType::kString || type == TCIMType::kDateTime ? "string"
                      : type == TCIMType::kBoolean                      ? "boolean"
                                                                 : "numeric");
      AppendAttribute(out, "TYPE", type.ToString());
      out += ">";
      AppendText(out, ScalarText(key->second));
      out += "</KEYVALUE>";
    }
    out += "</KEYBINDING>";
  }
}

static void AppendReference(std::string& out, const TCIMReference& reference) {
  out += "<VALUE.REFERENCE><INSTANCENAME";
  AppendAttribute(out, "CLASSNAME", reference.GetClassName());
  out += ">";
  AppendKeyBindings(out, reference);
  out += "</INSTANCENAME></VALUE.REFERENCE>";
}

// The value inside a QUALIFIER, QUALIFIER.DECLARATION or PROPERTY: nothing for NULL.
static void AppendAnyValue(std::string& out, const TCIMValue& value) {
  if (value.IsNull())
    return;
  if (value.IsReference()) {
    AppendReference(out, static_cast<TCIMReference>(value));
  } else if (value.IsArray()) {
    out += "<VALUE.ARRAY>";
    TCIMValue copy(value); // The element view is not const.
    std::vector<TCIMValue>& elements = copy;
    for (std::vector<TCIMValue>::const_iterator e = elements.begin(); e != elements.end(); ++e)
      AppendValue(out, *e);
    out += "</VALUE.ARRAY>";
  } else {
    AppendValue(out, value);
  }
}

static void AppendFlavor(std::string& out, TCIMQualifierDecl::EFlavor flavor) {
  for (const ZelAttributeBit& attribute : kFlavorAttributes)
    AppendAttribute(out, attribute.fName, BoolText(flavor & attribute.fBit));
}

static void AppendQualifierDecl(std::string& out, const TCIMQualifierDecl& decl) {
  TCIMValue value = decl.GetValue();
  out += "<QUALIFIER.DECLARATION";
  AppendAttribute(out, "NAME", decl.GetName());
  AppendAttribute(out, "TYPE", TCIMType(ElementType(value)).ToString());
  AppendAttribute(out, "ISARRAY", BoolText(decl.IsArray()));
  if (value.IsArray() && value.GetMaxArraySize())
    AppendAttribute(out, "ARRAYSIZE", std::to_string(value.GetMaxArraySize()));
  AppendFlavor(out, decl.GetFlavor());
  out += ">\n<SCOPE";
  for (const ZelAttributeBit& scope : kScopeAttributes) {
    if (decl.GetScope() & scope.fBit) // The reader counts presence, whatever the value.
      AppendAttribute(out, scope.fName, "true");
  }
  out += "/>\n";
  if (!value.IsNull()) {
    AppendAnyValue(out, value);
    out += "\n";
  }
  out += "</QUALIFIER.DECLARATION>\n";
}

// Own qualifiers only: the reader's classes inherit the propagated ones by themselves.
static void AppendQualifiers(std::string& out, const std::vector<TCIMQualifier*>& qualifiers) {
  for (std::vector<TCIMQualifier*>::const_iterator q = qualifiers.begin(); q != qualifiers.end();
       ++q) {
    if ((*q)->GetPropagated())
      continue;
    TCIMValue value = (*q)->GetValue();
    out += "<QUALIFIER";
    AppendAttribute(out, "NAME", (*q)->GetName());
    AppendAttribute(out, "TYPE",
                    TCIMType(ElementType((*q)->GetDeclaration().GetValue())).ToString());
    AppendFlavor(out, (*q)->GetFlavor());
    out += ">";
    AppendAnyValue(out, value);
    out += "</QUALIFIER>\n";
  }
}

// The opening tag of PROPERTY, PROPERTY.ARRAY or PROPERTY.REFERENCE for a value of the
// declared type; returns the element name for the closing tag.
static const char* AppendPropertyStart(std::string& out, const std::string& name,
                                       const TCIMValue& declared) {
  const char* element = "PROPERTY";
  if (declared.GetType() == TCIMType::kReference) {
    element = "PROPERTY.REFERENCE";
  } else if (declared.IsArray()) {
    if (ElementType(declared) == TCIMType::kReference)
      ZelFail(zelStatusNotSupported, "TCIMXMLWriter: reference array " + name + " not supported");
    element = "PROPERTY.ARRAY";
  }
  out += "<";
  out += element;
  AppendAttribute(out, "NAME", name);
  if (declared.GetType() == TCIMType::kReference) {
    if (TCIMClass* referenced = declared.GetReferencedClass())
      AppendAttribute(out, "REFERENCECLASS", referenced->GetName());
  } else {
    AppendAttribute(out, "TYPE", TCIMType(ElementType(declared)).ToString());
    if (declared.IsArray() && declared.GetMaxArraySize())
      AppendAttribute(out, "ARRAYSIZE", std::to_string(declared.GetMaxArraySize()));
  }
  return element;
}

static void AppendClass(std::string& out, const TCIMClass& cls) {
  out += "<VALUE.OBJECT>\n<CLASS";
  AppendAttribute(out, "NAME", cls.GetName());
  TCIMClass* superclass = cls.GetSuperClass();
  if (superclass != cls.GetContainer().GetRootClass()) // IsRootClass() means top-level
    AppendAttribute(out, "SUPERCLASS", superclass->GetName());
  out += ">\n";
  AppendQualifiers(out, cls.EnumerateQualifiers());
  std::vector<TCIMPropertyDecl*> decls = cls.EnumeratePropertyDecls();
  for (std::vector<TCIMPropertyDecl*>::const_iterator d = decls.begin(); d != decls.end(); ++d) {
    if (&(*d)->GetClass() != &cls) // Inherited: the superclass writes it.
      continue;
    const char* element = AppendPropertyStart(out, (*d)->GetName(), (*d)->GetValue());
    out += ">\n";
    AppendQualifiers(out, (*d)->EnumerateQualifiers());
    AppendAnyValue(out, (*d)->GetValue());
    out += "</";
    out += element;
    out += ">\n";
  }
  out += "</CLASS>\n</VALUE.OBJECT>\n";
}

static void AppendInstance(std::string& out, const TCIMInstance& instance) {
  out += "<VALUE.OBJECT>\n<INSTANCE";
  AppendAttribute(out, "CLASSNAME", instance.GetClass().GetName());
  out += ">\n";
  std::vector<const TCIMProperty*> properties = instance.EnumerateProperties();
  for (std::vector<const TCIMProperty*>::const_iterator p = properties.begin();
       p != properties.end(); ++p) {
    const TCIMPropertyDecl& decl = (*p)->GetDeclaration();
    const char* element = AppendPropertyStart(out, decl.GetName(), decl.GetValue());
    out += ">";
    AppendAnyValue(out, (*p)->GetValue());
    out += "</";
    out += element;
    out += ">\n";
  }
  out += "</INSTANCE>\n</VALUE.OBJECT>\n";
}

namespace {

// Puts classes in the order the reader needs: superclasses and referenced classes first.
class TClassOrder {
public:
  explicit TClassOrder(const TContainer& container) : fRoot(container.GetRootClass()) {}

  void Add(TCIMClass* cls) {
    if (!cls || cls == fRoot || !fSeen.insert(cls).second)
      return;
    Add(cls->GetSuperClass());
    std::vector<TCIMPropertyDecl*> decls = cls->EnumeratePropertyDecls();
    for (std::vector<TCIMPropertyDecl*>::const_iterator d = decls.begin(); d != decls.end(); ++d)
      Add((*d)->GetValue().GetReferencedClass());
    fOrder.push_back(cls);
  }
  const std::vector<TCIMClass*>& Get() const { return fOrder; }

private:
  const TCIMClass* fRoot;
  std::set<const TCIMClass*> fSeen;
  std::vector<TCIMClass*> fOrder;
};

} // namespace

static std::string WriteDocument(const TContainer& container,
                                 const std::vector<TCIMClass*>& classes) {
  std::string out = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
                    "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\">\n<DECLARATION>\n<DECLGROUP>\n";
  std::vector<TCIMQualifierDecl*> decls = container.EnumerateQualifiers();
  for (std::vector<TCIMQualifierDecl*>::const_iterator d = decls.begin(); d != decls.end(); ++d)
    AppendQualifierDecl(out, **d);
  for (std::vector<TCIMClass*>::const_iterator c = classes.begin(); c != classes.end(); ++c)
    AppendClass(out, **c);
  for (bool associations : {false, true}) {
    for (std::vector<TCIMClass*>::const_iterator c = classes.begin(); c != classes.end(); ++c) {
      if ((*c)->IsAssociation() != associations)
        continue;
      std::vector<TCIMInstance*> instances = (*c)->EnumerateInstances(/*deep=*/false);
      for (std::vector<TCIMInstance*>::const_iterator i = instances.begin();
           i != instances.end(); ++i)
        AppendInstance(out, **i);
    }
  }
  out += "</DECLGROUP>\n</DECLARATION>\n</CIM>\n";
  return out;
}

static void WritePlain(const std::string& path, const std::string& document) {
  FILE* file = std::fopen(path.c_str(), "wb");
  if (!file)
    ZelFail(zelStatusFileSystemError, "TCIMXMLWriter: couldn't open '" + path + "'");
  size_t written = std::fwrite(document.data(), 1, document.size(), file);
  if (std::fclose(file) != 0 || written != document.size())
    ZelFail(zelStatusFileSystemError, "TCIMXMLWriter: couldn't write '" + path + "'");
}

static void WriteGzip(const std::string& path, const std::string& document) {
  gzFile file = gzopen(path.c_str(), "wb");
  if (!file)
    ZelFail(zelStatusFileSystemError, "TCIMXMLWriter: couldn't open '" + path + "'");
  int written = document.empty() ? 0
                                 : gzwrite(file, document.data(),
                                           static_cast<unsigned int>(document.size()));
  if (gzclose(file) != Z_OK || static_cast<size_t>(written) != document.size())
    ZelFail(zelStatusFileSystemError, "TCIMXMLWriter: couldn't write '" + path + "'");
}

std::string TCIMXMLWriter::Write(const TContainer& container, EContent content) {
  if (content == eClassesWithInstances)
    return Write(container, ClassesWithInstances(container));
  return Write(container, container.GetRootClass()->EnumerateSubClasses(/*deep=*/true));
}

std::string TCIMXMLWriter::Write(const TContainer& container,
                                 const std::vector<TCIMClass*>& classes) {
  TClassOrder order(container);
  for (std::vector<TCIMClass*>::const_iterator c = classes.begin(); c != classes.end(); ++c)
    order.Add(*c);
  return WriteDocument(container, order.Get());
}

void TCIMXMLWriter::WriteFile(const std::string& path, const TContainer& container,
                              EContent content) {
  std::string document = Write(container, content);
  if (ZelIsGzipPath(path))
    WriteGzip(path, document);
  else
    WritePlain(path, document);
}

std::vector<TCIMClass*> TCIMXMLWriter::ClassesWithInstances(const TContainer& container) {
  std::vector<TCIMClass*> all = container.GetRootClass()->EnumerateSubClasses(/*deep=*/true);
  std::vector<TCIMClass*> classes;
  for (std::vector<TCIMClass*>::const_iterator c = all.begin(); c != all.end(); ++c) {
    if (!(*c)->EnumerateInstances(/*deep=*/false).empty())
      classes.push_back(*c);
  }
  return classes;
}
