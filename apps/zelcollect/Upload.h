// Result files sent to the site's collection server, the host that the name "zelupload"
// points at.
#ifndef ZELCOLLECT_UPLOAD_H
#define ZELCOLLECT_UPLOAD_H

#include <string>

class TContainer;

namespace zelcollect {

/// "<host>-<YYYYMMDDThhmmss>": the computer system's name and the time it was collected
/// (now, when the inventory does not tell), in characters safe for a file name.
std::string DefaultUploadName(TContainer& inventory);

/// The name as given, or a TUsageError when it cannot name a file on the server.
const std::string& CheckUploadName(const std::string& name);

/// Uploads a CIM-XML result file (a plain one is compressed first) as name + ".xml.gz";
/// throws TSetUpError with the reason.
void UploadResultFile(const std::string& path, const std::string& name);

/// Uploads the inventory of a container, written as gzip CIM-XML for the transfer.
void UploadInventory(TContainer& inventory, const std::string& name);

} // namespace zelcollect

#endif
