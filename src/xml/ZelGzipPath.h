// The one rule by which documents are read and written as gzip.
#ifndef ZELGZIPPATH_H
#define ZELGZIPPATH_H

#include <string>

/// ".gz" anywhere in the path, not only as the suffix: archive.gz.xml is gzip too.
inline bool ZelIsGzipPath(const std::string& path) { return path.find(".gz") != std::string::npos; }

#endif
