// The document generator: one DECLGROUP with the qualifier declarations and the classes, one
// DECLGROUP.WITHNAME with the instances, each an INSTANCENAME (key bindings) and an INSTANCE.
#include "CimXmlGenerator.h"

#include <cinttypes>
#include <cstdint>
#include <cstdio>

namespace {
// A fixed linear congruential sequence, so that documents vary but repeat exactly.
class TSequence {
public:
  uint32_t Next(uint32_t bound) {
    fState = fState * 6364136223846793005ULL + 1442695040888963407ULL;
    return static_cast<uint32_t>(fState >> 33) % bound;
  }

private:
  uint64_t fState = 20240229;
};

struct TDeviceClass {
  const char* fName;
  const char* fDescription;
  const char* fExtraProperty;  // a uint32 property of its own
};

const TDeviceClass kDeviceClasses[] = {
    {"ZEL_DiskDrive", "A disk drive & its media", "BytesPerSector"},
    {"ZEL_Processor", "A processor <core or package>", "CurrentClockSpeed"},
    {"ZEL_NetworkAdapter", "A network adapter", "MaxSpeedMbps"},
    {"ZEL_MemoryModule", "A memory module \"DIMM\"", "SpeedMHz"},
};

const char kQualifierDeclarations[] =
    "<QUALIFIER.DECLARATION NAME=\"Key\" TYPE=\"boolean\" OVERRIDABLE=\"false\">\n"
    " <SCOPE PROPERTY=\"true\" REFERENCE=\"true\"/>\n <VALUE>false</VALUE>\n"
    "</QUALIFIER.DECLARATION>\n"
    "<QUALIFIER.DECLARATION NAME=\"Abstract\" TYPE=\"boolean\" TOSUBCLASS=\"false\">\n"
    " <SCOPE CLASS=\"true\" ASSOCIATION=\"true\"/>\n <VALUE>false</VALUE>\n"
    "</QUALIFIER.DECLARATION>\n"
    "<QUALIFIER.DECLARATION NAME=\"Association\" TYPE=\"boolean\">\n"
    " <SCOPE ASSOCIATION=\"true\"/>\n <VALUE>false</VALUE>\n"
    "</QUALIFIER.DECLARATION>\n"
    "<QUALIFIER.DECLARATION NAME=\"Description\" TYPE=\"string\" TRANSLATABLE=\"true\">\n"
    " <SCOPE CLASS=\"true\" PROPERTY=\"true\" REFERENCE=\"true\"/>\n"
    "</QUALIFIER.DECLARATION>\n"
    "<QUALIFIER.DECLARATION NAME=\"Units\" TYPE=\"string\" TRANSLATABLE=\"true\">\n"
    " <SCOPE PROPERTY=\"true\"/>\n"
    "</QUALIFIER.DECLARATION>\n"
    "<QUALIFIER.DECLARATION NAME=\"ValueMap\" TYPE=\"string\" ISARRAY=\"true\">\n"
    " <SCOPE PROPERTY=\"true\"/>\n"
    "</QUALIFIER.DECLARATION>\n"
    "<QUALIFIER.DECLARATION NAME=\"MaxLen\" TYPE=\"uint32\">\n"
    " <SCOPE PROPERTY=\"true\"/>\n <VALUE>0</VALUE>\n"
    "</QUALIFIER.DECLARATION>\n";

const char kBaseClasses[] =
    "<VALUE.OBJECT>\n<CLASS NAME=\"ZEL_ManagedElement\">\n"
    " <QUALIFIER NAME=\"Abstract\" TYPE=\"boolean\"><VALUE>true</VALUE></QUALIFIER>\n"
    " <QUALIFIER NAME=\"Description\" TYPE=\"string\"><VALUE>The root of the "
    "hierarchy</VALUE></QUALIFIER>\n"
    " <PROPERTY NAME=\"Caption\" TYPE=\"string\">\n"
    "  <QUALIFIER NAME=\"MaxLen\" TYPE=\"uint32\"><VALUE>64</VALUE></QUALIFIER>\n"
    " </PROPERTY>\n"
    "</CLASS>\n</VALUE.OBJECT>\n"
    "<VALUE.OBJECT>\n<CLASS NAME=\"ZEL_LogicalDevice\" SUPERCLASS=\"ZEL_ManagedElement\">\n"
    " <QUALIFIER NAME=\"Abstract\" TYPE=\"boolean\"><VALUE>true</VALUE></QUALIFIER>\n"
    " <PROPERTY NAME=\"DeviceID\" TYPE=\"string\">\n"
    "  <QUALIFIER NAME=\"Key\" TYPE=\"boolean\"><VALUE>true</VALUE></QUALIFIER>\n"
    " </PROPERTY>\n"
    " <PROPERTY NAME=\"InstallDate\" TYPE=\"datetime\"/>\n"
    " <PROPERTY NAME=\"Capacity\" TYPE=\"uint64\">\n"
    "  <QUALIFIER NAME=\"Units\" TYPE=\"string\"><VALUE>Bytes</VALUE></QUALIFIER>\n"
    " </PROPERTY>\n"
    " <PROPERTY.ARRAY NAME=\"Capabilities\" TYPE=\"uint16\">\n"
    "  <QUALIFIER NAME=\"ValueMap\" TYPE=\"string\"><VALUE.ARRAY><VALUE>0</VALUE><VALUE>1</VALUE>"
    "<VALUE>2</VALUE><VALUE>3</VALUE></VALUE.ARRAY></QUALIFIER>\n"
    " </PROPERTY.ARRAY>\n"
    "</CLASS>\n</VALUE.OBJECT>\n"
    // References belong in association classes only.
    "<VALUE.OBJECT>\n<CLASS NAME=\"ZEL_DeviceOwner\">\n"
    " <QUALIFIER NAME=\"Association\" TYPE=\"boolean\"><VALUE>true</VALUE></QUALIFIER>\n"
    " <PROPERTY.REFERENCE NAME=\"Device\" REFERENCECLASS=\"ZEL_LogicalDevice\">\n"
    "  <QUALIFIER NAME=\"Key\" TYPE=\"boolean\"><VALUE>true</VALUE></QUALIFIER>\n"
    " </PROPERTY.REFERENCE>\n"
    " <PROPERTY.REFERENCE NAME=\"Owner\" REFERENCECLASS=\"ZEL_ManagedElement\"/>\n"
    "</CLASS>\n</VALUE.OBJECT>\n";
}  // namespace

static void AppendDeviceClass(std::string& out, TDeviceClass const& device) {
  out += "<VALUE.OBJECT>\n<CLASS NAME=\"";
  out += device.fName;
  out += "\" SUPERCLASS=\"ZEL_LogicalDevice\">\n"
         " <QUALIFIER NAME=\"Description\" TYPE=\"string\"><VALUE>";
  // The descriptions hold characters that must be escaped, as real schemas do.
  for (const char* c = device.fDescription; *c; ++c)
    switch (*c) {
    case '&': out += "&amp;"; break;
    case '<': out += "&lt;"; break;
    case '>': out += "&gt;"; break;
    case '"': out += "&quot;"; break;
    default: out += *c;
    }
  out += "</VALUE></QUALIFIER>\n <PROPERTY NAME=\"";
  out += device.fExtraProperty;
  out += "\" TYPE=\"uint32\"/>\n</CLASS>\n</VALUE.OBJECT>\n";
}

static void AppendInstance(std::string& out, TSequence& sequence, unsigned index) {
  TDeviceClass const& device = kDeviceClasses[sequence.Next(4)];
  char id[32], date[32], number[32];
  std::snprintf(id, sizeof id, "dev-%08u", index);
  std::snprintf(date, sizeof date, "20%02u%02u%02u%02u%02u%02u.%06u+060", sequence.Next(30),
                1 + sequence.Next(12), 1 + sequence.Next(28), sequence.Next(24), sequence.Next(60),
                sequence.Next(60), sequence.Next(1000000));
  out += "<VALUE.NAMEDOBJECT>\n<INSTANCENAME CLASSNAME=\"";
  out += device.fName;
  out += "\">\n <KEYBINDING NAME=\"DeviceID\"><KEYVALUE VALUETYPE=\"string\">";
  out += id;
  out += "</KEYVALUE></KEYBINDING>\n</INSTANCENAME>\n<INSTANCE CLASSNAME=\"";
  out += device.fName;
  out += "\">\n <PROPERTY NAME=\"DeviceID\" TYPE=\"string\"><VALUE>";
  out += id;
  out += "</VALUE></PROPERTY>\n <PROPERTY NAME=\"Caption\" TYPE=\"string\"><VALUE>";
  out += device.fName + 4;
  out += " number ";
  out += std::to_string(index);
  out += " in slot ";
  out += std::to_string(sequence.Next(64));
  out += "</VALUE></PROPERTY>\n <PROPERTY NAME=\"InstallDate\" TYPE=\"datetime\"><VALUE>";
  out += date;
  out += "</VALUE></PROPERTY>\n <PROPERTY NAME=\"Capacity\" TYPE=\"uint64\"><VALUE>";
  std::snprintf(number, sizeof number, "%" PRIu64,
                static_cast<uint64_t>(sequence.Next(1u << 30)) * (1 + sequence.Next(4096)));
  out += number;
  out += "</VALUE></PROPERTY>\n <PROPERTY NAME=\"";
  out += device.fExtraProperty;
  out += "\" TYPE=\"uint32\"><VALUE>";
  out += std::to_string(sequence.Next(100000));
  out += "</VALUE></PROPERTY>\n <PROPERTY.ARRAY NAME=\"Capabilities\" TYPE=\"uint16\">"
         "<VALUE.ARRAY>";
  for (uint32_t n = 1 + sequence.Next(4); n > 0; --n) {
    out += "<VALUE>";
    out += std::to_string(sequence.Next(4));
    out += "</VALUE>";
  }
  out += "</VALUE.ARRAY></PROPERTY.ARRAY>\n</INSTANCE>\n</VALUE.NAMEDOBJECT>\n";
}

std::string ZelGenerateCimXml(size_t minBytes) {
  std::string out;
  out.reserve(minBytes + 4096);
  out += "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
         "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\">\n<DECLARATION>\n<DECLGROUP>\n";
  out += kQualifierDeclarations;
  out += kBaseClasses;
  for (TDeviceClass const& device : kDeviceClasses)
    AppendDeviceClass(out, device);
  out += "</DECLGROUP>\n<DECLGROUP.WITHNAME>\n";
  TSequence sequence;
  for (unsigned index = 0; out.size() < minBytes; ++index)
    AppendInstance(out, sequence, index);
  out += "</DECLGROUP.WITHNAME>\n</DECLARATION>\n</CIM>\n";
  return out;
}

// ---- The schema document ---------------------------------------------------------------

static const char* const kWords[] = {
    "the",      "of",        "a",          "device",    "value",   "property", "instance",
    "class",    "that",      "is",         "for",       "which",   "system",   "when",
    "managed",  "element",   "describes",  "state",     "current", "number",   "capacity",
    "provides", "configured", "identifier", "supported", "may",     "be",       "used",
    "or",       "not",       "by",         "this",      "in",      "its",      "an",
    "operational", "status", "firmware",   "vendor",    "defined", "between",  "each"};

// About length bytes of words, ending with a full stop; "&" and "<" appear now and then.
static void AppendText(std::string& out, TSequence& sequence, size_t length) {
  size_t end = out.size() + length;
  bool first = true;
  while (out.size() < end) {
    if (!first)
      out += sequence.Next(24) == 0 ? " &amp; " : sequence.Next(40) == 0 ? " &lt;" : " ";
    out += kWords[sequence.Next(sizeof kWords / sizeof *kWords)];
    first = false;
  }
  out += '.';
}

static void AppendDescription(std::string& out, TSequence& sequence, const char* indent,
                              size_t length) {
  out += indent;
  out += "<QUALIFIER NAME=\"Description\" TYPE=\"string\"><VALUE>";
  AppendText(out, sequence, length);
  out += "</VALUE></QUALIFIER>\n";
}

static void AppendSchemaProperty(std::string& out, TSequence& sequence, unsigned cls,
                                 unsigned index) {
  static const char* const kTypes[] = {"string", "uint16", "uint32", "uint64", "boolean",
                                       "datetime", "sint32", "real64"};
  const char* type = kTypes[sequence.Next(sizeof kTypes / sizeof *kTypes)];
  bool array = sequence.Next(5) == 0;
  std::string name = "Property" + std::to_string(cls) + "x" + std::to_string(index);
  out += array ? "  <PROPERTY.ARRAY NAME=\"" : "  <PROPERTY NAME=\"";
  out += name;
  out += "\" TYPE=\"";
  out += type;
  out += "\">\n";
  AppendDescription(out, sequence, "   ", 160 + sequence.Next(320));
  switch (sequence.Next(3)) {
  case 0:
    out += "   <QUALIFIER NAME=\"Units\" TYPE=\"string\"><VALUE>";
    AppendText(out, sequence, 8);
    out += "</VALUE></QUALIFIER>\n";
    break;
  case 1:
    out += "   <QUALIFIER NAME=\"MaxLen\" TYPE=\"uint32\"><VALUE>";
    out += std::to_string(16 << sequence.Next(6));
    out += "</VALUE></QUALIFIER>\n";
    break;
  default:
    out += "   <QUALIFIER NAME=\"ValueMap\" TYPE=\"string\"><VALUE.ARRAY>";
    for (uint32_t n = 2 + sequence.Next(8), v = 0; v < n; ++v)
      out += "<VALUE>" + std::to_string(v) + "</VALUE>";
    out += "</VALUE.ARRAY></QUALIFIER>\n";
  }
  out += array ? "  </PROPERTY.ARRAY>\n" : "  </PROPERTY>\n";
}

std::string ZelGenerateCimXmlSchema(unsigned classes) {
  std::string out;
  out += "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
         "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\">\n<DECLARATION>\n<DECLGROUP>\n";
  out += kQualifierDeclarations;
  out += kBaseClasses;
  TSequence sequence;
  for (unsigned cls = 0; cls < classes; ++cls) {
    // Chains of up to eight classes under ZEL_LogicalDevice.
    std::string superclass = cls % 8 == 0 ? std::string("ZEL_LogicalDevice")
                                          : "ZEL_Schema" + std::to_string(cls - 1);
    out += "<VALUE.OBJECT>\n<CLASS NAME=\"ZEL_Schema" + std::to_string(cls) +
           "\" SUPERCLASS=\"" + superclass + "\">\n";
    AppendDescription(out, sequence, " ", 400 + sequence.Next(800));
    for (unsigned index = 0, count = 3 + sequence.Next(6); index < count; ++index)
      AppendSchemaProperty(out, sequence, cls, index);
    out += "</CLASS>\n</VALUE.OBJECT>\n";
  }
  out += "</DECLGROUP>\n</DECLARATION>\n</CIM>\n";
  return out;
}
