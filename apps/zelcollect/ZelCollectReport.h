// What zelcollect prints: the inventory grouped by class and the system's identity, as text
// for people or as JSON.
#ifndef ZELCOLLECTREPORT_H
#define ZELCOLLECTREPORT_H

#include <nlohmann/json.hpp>

#include <ostream>
#include <string>
#include <vector>

class TCIMClass;
class TContainer;

/// The identity of the examined system; "unknown" where the data do not tell.
struct ZelIdentity {
  std::string fName;
  std::string fMachineTypeModel;
  std::string fSerialNumber;
  std::string fOperatingSystem;
  std::string fOperatingSystemVersion;
  std::string fOperatingSystemType;
  std::string fDataSourceVersion;
};

ZelIdentity ZelReadIdentity(TContainer& container);

/// One block per class (a heading with its plugin, then each instance's path and properties
/// as displayed), then the identity.
void ZelPrintText(std::ostream& out, const std::vector<TCIMClass*>& classes,
                  const ZelIdentity& identity);

/// {"classes": [{"name", "plugin", "version", "instances": [{"path", "properties",
/// "display"}]}], "identity": {...}}; values keep their types.
nlohmann::json ZelReportJSON(const std::vector<TCIMClass*>& classes, const ZelIdentity& identity);

#endif
