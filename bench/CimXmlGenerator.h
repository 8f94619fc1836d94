// Deterministic CIM-XML documents of a chosen size, for benchmarks and load tests: qualifier
// declarations, a small class hierarchy, then named instances until the size is reached.
#ifndef CIMXMLGENERATOR_H
#define CIMXMLGENERATOR_H

#include <cstddef>
#include <string>

/// A well-formed document of at least minBytes bytes (the closing tags go beyond it); the
/// same size always gives the same document.
std::string ZelGenerateCimXml(size_t minBytes);

/// A schema-like document: the same qualifier declarations and base classes, then classes
/// classes (subclasses of the earlier ones), each with a long description, and properties
/// that all carry qualifiers, with no instances. The same count gives the same document.
std::string ZelGenerateCimXmlSchema(unsigned classes);

#endif
