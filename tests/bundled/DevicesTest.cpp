// The pci, usb and video plugins over a fixture tree (five PCI functions with a GPU, its DRM
// card and a virtual one, an xHCI root hub with a hub and a keyboard, pci.ids and usb.ids
// excerpts) and over this machine.
#include "BundledTest.h"

#include "TCIMPropertyDecl.h"
#include "TCIMQualifier.h"
#include "TCIMValue.h"

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <set>

namespace {

const std::vector<std::string> kDeviceClasses = {
    "KAPLA_ComputerSystem",      "KAPLA_PCIDevice",       "KAPLA_SystemPCIDevice",
    "KAPLA_USBDevice",           "KAPLA_SystemUSBDevice", "KAPLA_USBConnection",
    "KAPLA_USBControllerHasHub", "KAPLA_VideoController", "KAPLA_SystemVideoController",
    "KAPLA_PCIDeviceVideoController"};

struct Expected {
  const char* fDevice;
  const char* fProperty;
  const char* fText;
};

class DevicesTest : public BundledTest {
protected:
  std::unique_ptr<TContainer> CollectFixture() {
    return Collect(Fixture("devices"), kDeviceClasses);
  }

  // The fixture's /sys alone, without the ID databases.
  std::string BareRoot() {
    std::string root = TempPath("bare");
    EXPECT_EQ(mkdir(root.c_str(), 0755), 0);
    EXPECT_EQ(symlink((Fixture("devices") + "/sys").c_str(), (root + "/sys").c_str()), 0);
    return root;
  }

  static void ExpectRows(TContainer& result, const std::string& cls,
                         const std::vector<Expected>& rows) {
    for (const Expected& row : rows) {
      TCIMInstance* instance = Find(result, cls, "DeviceID", row.fDevice);
      ASSERT_NE(instance, nullptr);
      EXPECT_EQ(Text(instance, row.fProperty), row.fText) << row.fDevice << " " << row.fProperty;
    }
  }

  // A property as people see it, formatted by its qualifiers.
  static std::string Display(TContainer& result, const std::string& cls, const std::string& device,
                             const std::string& property) {
    TCIMInstance* instance = Find(result, cls, "DeviceID", device);
    TCIMProperty* held = instance ? instance->FindProperty(property) : nullptr;
    return held ? held->ToString() : "ABSENT";
  }

  // The key value named in a reference: DeviceID, or Name for the computer system.
  static std::string KeyIn(const std::string& path) {
    for (const char* key : {"DeviceID=\"", "Name=\""}) {
      size_t at = path.find(key);
      if (at != std::string::npos) {
        at += std::string(key).size();
        return path.substr(at, path.find('"', at) - at);
      }
    }
    return path;
  }

  // Each association instance as "first key > second key".
  static std::set<std::string> Pairs(TContainer& result, const std::string& cls,
                                     const std::string& first, const std::string& second) {
    std::set<std::string> pairs;
    for (TCIMInstance* instance : Instances(result, cls))
      pairs.insert(KeyIn(Text(instance, first)) + " > " + KeyIn(Text(instance, second)));
    return pairs;
  }

  static std::set<std::string> Directory(const std::string& path) {
    std::set<std::string> names;
    if (DIR* directory = opendir(path.c_str())) {
      while (dirent* entry = readdir(directory))
        if (entry->d_name[0] != '.')
          names.insert(entry->d_name);
      closedir(directory);
    }
    return names;
  }

  static std::string FirstLine(const std::string& path) {
    std::ifstream in(path.c_str());
    std::string line;
    std::getline(in, line);
    return line;
  }
};

TEST_F(DevicesTest, PciFunctionsCarryTheirIdsNamesDriverGroupNodeAndLink) {
  std::unique_ptr<TContainer> result = CollectFixture();
  EXPECT_EQ(Instances(*result, "KAPLA_PCIDevice").size(), 5u);
  ExpectRows(*result, "KAPLA_PCIDevice", {
      {"0000:01:00.0", "ClassCode", "3"},
      {"0000:01:00.0", "ClassName", "Display controller"},
      {"0000:01:00.0", "SubClassName", "VGA compatible controller"},
      {"0000:01:00.0", "ProgrammingInterfaceName", "VGA controller"},
      {"0000:01:00.0", "VendorID", "4098"},
      {"0000:01:00.0", "VendorName", "Advanced Micro Devices, Inc. [AMD/ATI]"},
      {"0000:01:00.0", "PCIDeviceID", "29631"},
      {"0000:01:00.0", "Name", "Navi 21 [Radeon RX 6800/6800 XT / 6900 XT]"},
      {"0000:01:00.0", "SubsystemVendorID", "7586"},
      {"0000:01:00.0", "SubsystemVendorName", "Sapphire Technology Limited"},
      {"0000:01:00.0", "SubsystemID", "58437"},
      {"0000:01:00.0", "SubsystemName", "Sapphire Radeon RX 6800 XT Nitro+"},
      {"0000:01:00.0", "RevisionID", "193"},
      {"0000:01:00.0", "Driver", "amdgpu"},
      {"0000:01:00.0", "IOMMUGroup", "1"},
      {"0000:01:00.0", "NUMANode", "0"},
      {"0000:01:00.0", "CurrentLinkSpeed", "2500000000"},
      {"0000:01:00.0", "CurrentLinkWidth", "16"},
      {"0000:01:00.0", "MaxLinkSpeed", "16000000000"},
      {"0000:01:00.0", "MaxLinkWidth", "16"},
      // A subsystem listed under another device of the vendor is not this one's.
      {"0000:00:1c.0", "SubsystemName", "NULL"},
      {"0000:00:1c.0", "Name", "Cannon Lake PCH PCI Express Root Port #5"},
      // An empty slot: "Unknown" speed and width 0 are no link.
      {"0000:00:1c.0", "CurrentLinkSpeed", "NULL"},
      {"0000:00:1c.0", "CurrentLinkWidth", "NULL"},
      {"0000:00:1c.0", "MaxLinkSpeed", "8000000000"},
      {"0000:00:14.0", "ClassName", "Serial bus controller"},
      {"0000:00:14.0", "SubClassName", "USB controller"},
      {"0000:00:14.0", "ProgrammingInterfaceName", "XHCI"},
      {"0000:00:14.0", "Name", "Cannon Lake PCH USB 3.1 xHCI Host Controller"},
      // The host bridge: its device is not in the database, nor bound, nor grouped; one node.
      {"0000:00:00.0", "VendorName", "Intel Corporation"},
      {"0000:00:00.0", "Name", "NULL"},
      {"0000:00:00.0", "SubClassName", "Host bridge"},
      {"0000:00:00.0", "ProgrammingInterfaceName", "NULL"},
      {"0000:00:00.0", "Driver", "NULL"},
      {"0000:00:00.0", "IOMMUGroup", "NULL"},
      {"0000:00:00.0", "NUMANode", "NULL"},
      {"0000:00:00.0", "CurrentLinkSpeed", "NULL"},
  });
  EXPECT_EQ(Pairs(*result, "KAPLA_SystemPCIDevice", "GroupComponent", "PartComponent").size(),
            5u);
}

TEST_F(DevicesTest, QuantitiesCarryUnitsAndIdsShowInHex) {
  std::unique_ptr<TContainer> result = CollectFixture();
  struct Row {
    const char* fClass;
    const char* fDevice;
    const char* fProperty;
    const char* fShown;
  } rows[] = {
      {"KAPLA_PCIDevice", "0000:01:00.0", "CurrentLinkSpeed", "2.5 Gbps"},
      {"KAPLA_PCIDevice", "0000:01:00.0", "MaxLinkSpeed", "16 Gbps"},
      {"KAPLA_PCIDevice", "0000:01:00.0", "VendorID", "1002"},
      {"KAPLA_PCIDevice", "0000:01:00.0", "PCIDeviceID", "73BF"},
      {"KAPLA_PCIDevice", "0000:01:00.0", "RevisionID", "C1"},
      {"KAPLA_USBDevice", "1-1.2", "Speed", "1.5 Mbps"},
      {"KAPLA_USBDevice", "1-1", "Speed", "480 Mbps"},
      {"KAPLA_USBDevice", "1-1.2", "ProductID", "C31C"},
      {"KAPLA_VideoController", "0000:01:00.0", "VideoMemory", "16 GigaBytes"},
  };
  for (const Row& row : rows)
    EXPECT_EQ(Display(*result, row.fClass, row.fDevice, row.fProperty), row.fShown)
        << row.fDevice << " " << row.fProperty;
  EXPECT_EQ(Qualifier(*result, "KAPLA_PCIDevice", "MaxLinkSpeed", "UNITS"), "Bits per Second");
  EXPECT_EQ(Qualifier(*result, "KAPLA_PCIDevice", "MaxLinkWidth", "UNITS"), "Lanes");
  EXPECT_EQ(Qualifier(*result, "KAPLA_USBDevice", "MaxPower", "UNITS"), "MilliAmperes");
  EXPECT_EQ(Qualifier(*result, "KAPLA_USBDevice", "SerialNumber", "SENSITIVE"), "true");
  EXPECT_EQ(Qualifier(*result, "KAPLA_VideoController", "VideoMemory", "UNITS"), "Bytes");
}

TEST_F(DevicesTest, UsbDevicesHangOnTheirHubsAndTheRootHubOnItsController) {
  std::unique_ptr<TContainer> result = CollectFixture();
  EXPECT_EQ(Instances(*result, "KAPLA_USBDevice").size(), 3u); // Interfaces are no devices.
  ExpectRows(*result, "KAPLA_USBDevice", {
      {"1-1.2", "Name", "USB Keyboard"},
      {"1-1.2", "BusNumber", "1"},
      {"1-1.2", "DeviceNumber", "3"},
      {"1-1.2", "PortPath", "1.2"},
      {"1-1.2", "VendorID", "1133"},
      {"1-1.2", "VendorName", "Logitech, Inc."},
      {"1-1.2", "ProductID", "49948"},
      {"1-1.2", "ProductName", "Keyboard K120"},
      {"1-1.2", "Manufacturer", "Logitech"},
      {"1-1.2", "SerialNumber", "KB0042X7"},
      {"1-1.2", "Speed", "1500000"},
      {"1-1.2", "USBVersion", "1.10"},
      {"1-1.2", "ClassCode", "0"},
      {"1-1.2", "ClassName", "(Defined at Interface level)"},
      {"1-1.2", "SubClassName", "NULL"},
      {"1-1.2", "NumberOfPorts", "NULL"},
      {"1-1.2", "MaxPower", "90"},
      {"1-1.2", "Driver", "usb"},
      {"1-1.2", "InterfaceDrivers", "{ usbhid }"}, // Two interfaces, one driver.
      {"1-1", "SerialNumber", "NULL"},
      {"1-1", "ClassName", "Hub"},
      {"1-1", "SubClassName", "Unused"},
      {"1-1", "ProtocolName", "TT per port"},
      {"1-1", "NumberOfPorts", "4"},
      {"1-1", "InterfaceDrivers", "{ hub }"},
      {"usb1", "PortPath", "0"},
      {"usb1", "ProductName", "2.0 root hub"},
      {"usb1", "VendorName", "Linux Foundation"},
      {"usb1", "Speed", "480000000"},
      {"usb1", "NumberOfPorts", "16"},
      {"usb1", "MaxPower", "0"},
  });
  EXPECT_EQ(Pairs(*result, "KAPLA_USBConnection", "Antecedent", "Dependent"),
            (std::set<std::string>{"usb1 > 1-1", "1-1 > 1-1.2"}));
  EXPECT_EQ(Pairs(*result, "KAPLA_USBControllerHasHub", "Antecedent", "Dependent"),
            (std::set<std::string>{"0000:00:14.0 > usb1"}));
  EXPECT_EQ(Pairs(*result, "KAPLA_SystemUSBDevice", "GroupComponent", "PartComponent").size(),
            3u);
}

TEST_F(DevicesTest, VideoControllersAreTheCardsAndTheirPciFunctions) {
  std::unique_ptr<TContainer> result = CollectFixture();
  EXPECT_EQ(Instances(*result, "KAPLA_VideoController").size(), 2u);
  ExpectRows(*result, "KAPLA_VideoController", {
      {"0000:01:00.0", "PCIAddress", "0000:01:00.0"},
      {"0000:01:00.0", "Card", "card0"},
      {"0000:01:00.0", "Name", "Navi 21 [Radeon RX 6800/6800 XT / 6900 XT]"},
      {"0000:01:00.0", "VendorName", "Advanced Micro Devices, Inc. [AMD/ATI]"},
      {"0000:01:00.0", "Driver", "amdgpu"},
      {"0000:01:00.0", "VideoMemory", "17163091968"},
      {"0000:01:00.0", "Connectors", "{ DP-1, DP-2, HDMI-A-1 }"},
      {"0000:01:00.0", "ConnectedConnectors", "{ DP-1 }"},
      // A virtual card on the platform bus: no PCI function, no names.
      {"card1", "PCIAddress", "NULL"},
      {"card1", "Name", "NULL"},
      {"card1", "Driver", "vkms"},
      {"card1", "VideoMemory", "NULL"},
      {"card1", "Connectors", "{ Virtual-1 }"},
  });
  EXPECT_EQ(Pairs(*result, "KAPLA_PCIDeviceVideoController", "SystemElement", "SameElement"),
            (std::set<std::string>{"0000:01:00.0 > 0000:01:00.0"}));
  std::set<std::string> parts;
  for (const std::string& pair :
       Pairs(*result, "KAPLA_SystemVideoController", "GroupComponent", "PartComponent"))
    parts.insert(pair.substr(pair.find(" > ") + 3));
  EXPECT_EQ(parts, (std::set<std::string>{"0000:01:00.0", "card1"}));
}

TEST_F(DevicesTest, WithoutTheIdDatabasesTheNamesAreNullAndTheIdsStay) {
  std::unique_ptr<TContainer> result = Collect(BareRoot(), kDeviceClasses);
  ExpectRows(*result, "KAPLA_PCIDevice", {
      {"0000:01:00.0", "VendorID", "4098"},
      {"0000:01:00.0", "VendorName", "NULL"},
      {"0000:01:00.0", "Name", "NULL"},
      {"0000:01:00.0", "ClassName", "NULL"},
      {"0000:01:00.0", "SubsystemName", "NULL"},
      {"0000:01:00.0", "Driver", "amdgpu"},
  });
  ExpectRows(*result, "KAPLA_USBDevice", {
      {"1-1.2", "ProductID", "49948"},
      {"1-1.2", "ProductName", "NULL"},
      {"1-1.2", "VendorName", "NULL"},
      {"1-1.2", "ClassName", "NULL"},
      {"1-1.2", "Name", "USB Keyboard"}, // The device's own string needs no database.
  });
  ExpectRows(*result, "KAPLA_VideoController", {{"0000:01:00.0", "Name", "NULL"}});
}

TEST_F(DevicesTest, AnAssociationWithAPartNotCollectedIsLeftOut) {
  std::unique_ptr<TContainer> result =
      Collect(Fixture("devices"),
              {"KAPLA_USBDevice", "KAPLA_USBConnection", "KAPLA_USBControllerHasHub",
               "KAPLA_VideoController", "KAPLA_PCIDeviceVideoController"});
  EXPECT_EQ(Pairs(*result, "KAPLA_USBConnection", "Antecedent", "Dependent").size(), 2u);
  EXPECT_TRUE(Instances(*result, "KAPLA_USBControllerHasHub").empty());
  EXPECT_TRUE(Instances(*result, "KAPLA_PCIDeviceVideoController").empty());
  EXPECT_TRUE(Instances(*result, "KAPLA_PCIDevice").empty());
  EXPECT_EQ(fErr.find("[Error]"), std::string::npos) << fErr;
}

TEST_F(DevicesTest, ThisMachineShowsEveryPciFunctionAndNothingFails) {
  std::unique_ptr<TContainer> result = Collect("", kDeviceClasses);
  std::set<std::string> functions = Directory("/sys/bus/pci/devices");
  std::vector<TCIMInstance*> found = Instances(*result, "KAPLA_PCIDevice");
  EXPECT_EQ(found.size(), functions.size());
  size_t displays = 0;
  for (const std::string& address : functions) {
    TCIMInstance* instance = Find(*result, "KAPLA_PCIDevice", "DeviceID", address);
    ASSERT_NE(instance, nullptr);
    std::string vendor = FirstLine("/sys/bus/pci/devices/" + address + "/vendor");
    EXPECT_EQ(Text(instance, "VendorID"), std::to_string(std::stoul(vendor, nullptr, 16)));
    if (FirstLine("/sys/bus/pci/devices/" + address + "/class").compare(0, 4, "0x03") == 0)
      ++displays;
  }
  size_t devices = 0;
  for (const std::string& name : Directory("/sys/bus/usb/devices"))
    devices += name.find(':') == std::string::npos;
  EXPECT_EQ(Instances(*result, "KAPLA_USBDevice").size(), devices);
  size_t cards = 0;
  for (const std::string& name : Directory("/sys/class/drm"))
    cards += name.compare(0, 4, "card") == 0 && name.find('-') == std::string::npos;
  // Each card is one adapter, and a display function without one is another.
  EXPECT_GE(Instances(*result, "KAPLA_VideoController").size(), std::max(displays, cards));
  if (access("/usr/share/misc/pci.ids", R_OK) == 0 && !functions.empty()) {
    EXPECT_NE(Text(found[0], "VendorName"), "NULL");
  }
}

} // namespace
