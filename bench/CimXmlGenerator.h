// Deterministic CIM-XML documents of a chosen size, for benchmarks and load tests: qualifier
// declarations, a small class hierarchy, then named instances until the size is reached.
#ifndef CIMXMLGENERATOR_H
#define CIMXMLGENERATOR_H

#include <cstddef>
#include <string>

/// A well-formed document of at least minBytes bytes (the closing tags go beyond it); the
/// same size always gives the same document.
std::string ZelGenerateCimXml(size_t minBytes);

#endif
