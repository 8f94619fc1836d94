/* The system plugin: the computer system and its BIOS from DMI (/sys/class/dmi/id, some
 * files readable by root only), and the data source itself. */
#include "zelplugin.h"


#define DMI_DIR "/sys/class/dmi/id/"

/* The machine type and model of product names written "... -[mmmmxxx]-". */
static int MachineTypeModel(const char* productName, char* mtm) {
  const char* open = strstr(productName, "-[");
  int i;
  if (!open || strlen(open) < 10 || open[9] != ']')
    return 0;
  for (i = 0; i < 7; ++i) {
    char c = open[2 + i];
    if (!isalnum((unsigned char)c) && !(i >= 4 && c == ' '))
      return 0;
  }
  memcpy(mtm, open + 2, 7);
  mtm[7] = '\0';
  return 1;
}

static zelStatusCode AddComputerSystem(zelIOHandle* io) {
  char host[256];
  zelStatusCode status;
  ZelPluginHostName(host, sizeof host);
  status = ZelPluginOpenInstance(io, "KAPLA_ComputerSystem", "Name", host);
  if (status != zelStatusOK)
    return status;
  ZelPluginAddFileProperty(io, "ProductName", DMI_DIR "product_name");
  ZelPluginAddFileProperty(io, "ProductVersion", DMI_DIR "product_version");
  ZelPluginAddFileProperty(io, "Manufacturer", DMI_DIR "sys_vendor");
  ZelPluginAddFileProperty(io, "SerialNumber", DMI_DIR "product_serial");
  ZelPluginAddFileProperty(io, "UUID", DMI_DIR "product_uuid");
  ZelPluginAddFileProperty(io, "ChassisVendor", DMI_DIR "chassis_vendor");
  return zelStatusOK;
}

static zelStatusCode AddBIOS(zelIOHandle* io) {
  char product[512];
  char mtm[8];
  zelStatusCode status = zelAddClass(io, "KAPLA_SystemBIOSElement");
  if (status != zelStatusOK)
    return status;
  zelAddStringProperty(io, "Name", "System BIOS");
  ZelPluginAddFileProperty(io, "Manufacturer", DMI_DIR "bios_vendor");
  ZelPluginAddFileProperty(io, "Version", DMI_DIR "bios_version");
  ZelPluginAddFileProperty(io, "ReleaseDate", DMI_DIR "bios_date");
  if (ZelPluginReadLine(DMI_DIR "product_name", product, sizeof product) &&
      MachineTypeModel(product, mtm))
    zelAddStringProperty(io, "MachineTypeModel", mtm);
  return zelStatusOK;
}

static zelStatusCode AddDataSource(zelIOHandle* io) {
  zelStatusCode status = zelAddClass(io, "KAPLA_VOKProduct");
  if (status != zelStatusOK)
    return status;
  zelAddStringProperty(io, "Name", "zelcollect");
  zelAddStringProperty(io, "Vendor", "zelcore");
  return zelAddStringProperty(io, "Version", ZEL_PLUGIN_VERSION);
}

static zelStatusCode GetData(TCPluginCallbacks* self, zelIOHandle* io, const char** classNames,
                             int classCount) {
  zelStatusCode status = zelStatusOK;
  (void)self;
  if (ZelPluginAsked(classNames, classCount, "KAPLA_ComputerSystem"))
    status = AddComputerSystem(io);
  if (status == zelStatusOK && ZelPluginAsked(classNames, classCount, "KAPLA_SystemBIOSElement"))
    status = AddBIOS(io);
  if (status == zelStatusOK && ZelPluginAsked(classNames, classCount, "KAPLA_VOKProduct"))
    status = AddDataSource(io);
  return status;
}

ZEL_PLUGIN("System", GetData, ZelPluginNothingToDo)
