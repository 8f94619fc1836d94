// zelcollect upload FILE [NAME]: sends a result file written earlier (on a machine that
// collects offline) to the collection server.
#include "Commands.h"

#include "CoreSession.h"
#include "Errors.h"
#include "Options.h"
#include "ResultFile.h"
#include "Upload.h"

#include "TContainer.h"

#include <iostream>

namespace zelcollect {

int RunUpload(const TOptions& options) {
  if (options.fArguments.empty() || options.fArguments.size() > 2)
    throw TUsageError("upload takes a result file and, optionally, the name to give it");
  const std::string& path = options.fArguments[0];
  TCoreSession session(options);
  TContainer inventory; // Read first: only an inventory is sent, and it names itself.
  ReadResultFile(path, inventory);
  std::string name = options.fArguments.size() > 1 ? CheckUploadName(options.fArguments[1])
                                                    : DefaultUploadName(inventory);
  UploadResultFile(path, name);
  std::cout << "uploaded " << path << " to zelupload as " << name << ".xml.gz\n";
  return kExitOK;
}

} // namespace zelcollect
