// Result files: an inventory written as CIM-XML (gzip when the name holds ".gz") and read
// back into a container; every file zelcollect writes is written through here, so that no
// failure leaves a half-written file and no other user can plant a link at its name.
#ifndef ZELCOLLECT_RESULTFILE_H
#define ZELCOLLECT_RESULTFILE_H

#include <string>

#include <sys/types.h>

class TContainer;

namespace zelcollect {

struct TOptions;

/// How a file is created: who may read a new one, and whether a symbolic link at its name
/// is written through or refused.
struct TFileSafety {
  mode_t fNewMode = 0600;       ///< an existing file keeps its mode and owner
  bool fFollowSymlinks = false;

  static TFileSafety From(const TOptions& options);
};

/// Checks, before anything is collected, that a file can be created at path: its directory
/// exists and is writable, path is no directory, and no symbolic link unless allowed.
/// Throws TSetUpError "cannot write PATH: REASON".
void CheckWritable(const std::string& path, const TFileSafety& safety);

/// Writes contents (gzip-compressed on request) to a new file in path's directory, flushes
/// and syncs it, then renames it over path. On failure the previous file is untouched, the
/// temporary one removed, and TSetUpError "cannot write PATH: REASON" thrown.
void WriteFileSafely(const std::string& path, const std::string& contents, bool gzip,
                     const TFileSafety& safety);

/// Opens the log file for writing (emptied; new ones with the safety's mode) and returns
/// its descriptor; throws TSetUpError "cannot open log file PATH: REASON".
int OpenLogFile(const std::string& path, const TFileSafety& safety);

/// Writes the classes that have instances and their instances, safely; gzip when the name
/// holds ".gz".
void WriteResultFile(const std::string& path, TContainer& container, const TFileSafety& safety);

/// Writes all of text to standard output; on failure says why on standard error
/// ("cannot write standard output: Broken pipe") and returns kExitTrouble, else kExitOK.
int WriteStandardOutput(const std::string& text);


void ReadResultFile(const std::string& path, TContainer& container);

/// The file's size in bytes; -1 when it cannot be told.
long FileSize(const std::string& path);

} // namespace zelcollect

#endif
