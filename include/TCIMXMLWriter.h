// TCIMXMLWriter: writes the qualifier declarations, classes and instances of a container as
// a CIM-XML document that TContainer::PopulateContainerFromFile reads back.
#ifndef TCIMXMLWRITER_H
#define TCIMXMLWRITER_H

#include "zelcore.h"

#include <string>
#include <vector>

class TCIMClass;
class TContainer;

/// Static operations. A document holds every qualifier declaration of the container, then
/// the classes (each after its superclass and the classes its references name), then the
/// instances of those classes, associations last, so that their references resolve when
/// the document is read. Instances carry every property; NULL values have no VALUE.
class ZEL_API TCIMXMLWriter {
public:
  /// Which classes a document holds.
  enum EContent {
    eEverything,          ///< every class of the container
    eClassesWithInstances ///< the classes that hold instances, and the classes they need
  };

  static std::string Write(const TContainer& container, EContent content = eEverything);
  /// These classes and the classes they need (superclasses, referenced classes), with the
  /// instances of all of them, so that the references of the instances resolve.
  static std::string Write(const TContainer& container, const std::vector<TCIMClass*>& classes);
  /// Gzip when the path holds ".gz", as the reader decides; an existing file is replaced.
  /// zelStatusFileSystemError, after one log line, when it cannot be written.
  static void WriteFile(const std::string& path, const TContainer& container,
                        EContent content = eEverything);
  /// The classes of the container that hold instances of their own, in superclass order.
  static std::vector<TCIMClass*> ClassesWithInstances(const TContainer& container);
};

#endif
