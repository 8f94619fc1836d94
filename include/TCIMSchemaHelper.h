// TCIMSchemaHelper: the examined system's identity read from collected data: name, product,
// machine type and model, serial number, operating system and data-source version.
#ifndef TCIMSCHEMAHELPER_H
#define TCIMSCHEMAHELPER_H

#include "zelcore.h"

#include <string>

class TContainer;

/// Static operations over a container of collected instances. Lookups need exactly one
/// instance of the class asked (zelStatusNotFound otherwise); shapes that do not fit throw
/// zelStatusInvalidFormat.
class ZEL_API TCIMSchemaHelper {
public:
  static const std::string kSystemCreationClassName;          ///< "KAPLA_ComputerSystem"
  static const std::string kOperatingSystemCreationClassName; ///< "KAPLA_OperatingSystem"

  /// Always kSystemCreationClassName; the container is not read.
  static std::string GetSystemCreationClassName(TContainer* container);
  static std::string GetSystemName(TContainer* container);
  static std::string GetSystemProductName(TContainer* container);
  /// Always kOperatingSystemCreationClassName; the container is not read.
  static std::string GetOperatingSystemCreationClassName(TContainer* container);
  static std::string GetOperatingSystemName(TContainer* container);
  static std::string GetOperatingSystemVersion(TContainer* container);
  static unsigned short GetOperatingSystemType(TContainer* container);

  /// Four alphanumeric characters first.
  static bool IsValidMachineType(const std::string& machineType);
  /// A valid machine type, then three alphanumeric or blank characters.
  static bool IsValidMTM(const std::string& mtm);
  /// The BIOS element's MachineTypeModel, else the computer system's ProductName.
  static std::string GetRawMTMString(TContainer* container);
  /// Seven characters: machine type, then model ("xxx" when unknown).
  static std::string GetMTM(TContainer* container);
  static std::string GetMachineType(TContainer* container);
  static std::string GetModelNumber(TContainer* container);
  static std::string GetRawSerialNumberString(TContainer* container);
  /// Seven alphanumeric characters, trailing blanks cut.
  static std::string GetSerialNumber(TContainer* container);

  static std::string GetDataSourceVersion(TContainer* container);
  /// Up to the first ".".
  static std::string GetDataSourceMajorVersion(TContainer* container);
  /// From after the first ".", one character longer than the major part ("2.1.0" gives "1.").
  static std::string GetDataSourceMinorVersion(TContainer* container);
  /// After the last ".".
  static std::string GetDataSourceBuildVersion(TContainer* container);

private:
  TCIMSchemaHelper();
};

#endif
