// Result files: an inventory written as CIM-XML (gzip when the name holds ".gz") and read
// back into a container.
#ifndef ZELCOLLECT_RESULTFILE_H
#define ZELCOLLECT_RESULTFILE_H

#include <string>

class TContainer;

namespace zelcollect {

/// Writes the classes that have instances and their instances; throws TSetUpError with the
/// reason.
void WriteResultFile(const std::string& path, TContainer& container);

/// Writes a result file of other contents (JSON, HTML), gzip when the name ends in ".gz";
/// throws TSetUpError with the reason.
void WriteResultBytes(const std::string& path, const std::string& bytes);

/// Reads a result file into the container; throws TSetUpError with the reason.
void ReadResultFile(const std::string& path, TContainer& container);

/// The file's size in bytes; -1 when it cannot be told.
long FileSize(const std::string& path);

} // namespace zelcollect

#endif
