// The pci, usb and video plugins over a fixture tree (five PCI functions with a GPU, its DRM
// card and a virtual one, an xHCI root hub with a hub and a keyboard, pci.ids and usb.ids
// excerpts) and over this machine.
#include "BundledTest.h"

#include "TCIMValue.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <set>

namespace {

const std::vector<std::string> kDeviceClasses = {
    "KAPLA_ComputerSystem",      "KAPLA_PCIDevice",       "KAPLA_SystemPCIDevice",
    "KAPLA_USBDevice",           "KAPLA_SystemUSBDevice", "KAPLA_USBConnection",
    "KAPLA_USBControllerHasHub", "KAPLA_VideoController", "KAPLA_SystemVideoController",
    "KAPLA_PCIDeviceVideoController"};

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
    std::vector<std::string> names = Lines(Shell("ls " + path + " 2>/dev/null").second);
    return {names.begin(), names.end()};
  }
};

TEST_F(DevicesTest, PciFunctionsCarryTheirIdsNamesDriverGroupNodeAndLink) {
  std::unique_ptr<TContainer> result = CollectFixture();
  EXPECT_EQ(Instances(*result, "KAPLA_PCIDevice").size(), 5u);
  ExpectInstances(*result, "KAPLA_PCIDevice",
                  {"DeviceID", "ClassCode", "ClassName", "SubClassName", "ProgrammingInterfaceName",
                   "VendorID", "VendorName", "PCIDeviceID", "Name", "SubsystemVendorID",
                   "SubsystemVendorName", "SubsystemID", "SubsystemName", "RevisionID", "Driver",
                   "IOMMUGroup", "NUMANode", "CurrentLinkSpeed", "CurrentLinkWidth",
                   "MaxLinkSpeed", "MaxLinkWidth"},
                  {
      {"0000:01:00.0", "3", "Display controller", "VGA compatible controller", "VGA controller",
       "4098", "Advanced Micro Devices, Inc. [AMD/ATI]", "29631",
       "Navi 21 [Radeon RX 6800/6800 XT / 6900 XT]", "7586", "Sapphire Technology Limited",
       "58437", "Sapphire Radeon RX 6800 XT Nitro+", "193", "amdgpu", "1", "0", "2500000000",
       "16", "16000000000", "16"},
      // A subsystem listed under another device of the vendor is not this one's; an empty
      // slot: "Unknown" speed and width 0 are no link.
      {"0000:00:1c.0", "6", "Bridge", "PCI bridge", "Normal decode", "32902", "Intel Corporation",
       "41788", "Cannon Lake PCH PCI Express Root Port #5", "4163", "ASUSTeK Computer Inc.",
       "34452", "NULL", "240", "pcieport", "4", "NULL", "NULL", "NULL", "8000000000", "1"},
      {"0000:00:14.0", "12", "Serial bus controller", "USB controller", "XHCI", "32902",
       "Intel Corporation", "41837", "Cannon Lake PCH USB 3.1 xHCI Host Controller", "4163",
       "ASUSTeK Computer Inc.", "34452", "PRIME H310M-E", "16", "xhci_hcd", "3", "NULL", "NULL",
       "NULL", "NULL", "NULL"},
      // The host bridge: its device is not in the database, nor bound, nor grouped; one node.
      {"0000:00:00.0", "6", "Bridge", "Host bridge", "NULL", "32902", "Intel Corporation",
       "15920", "NULL", "4163", "ASUSTeK Computer Inc.", "34452", "NULL", "13", "NULL", "NULL",
       "NULL", "NULL", "NULL", "NULL", "NULL"},
  });
  EXPECT_EQ(Pairs(*result, "KAPLA_SystemPCIDevice", "GroupComponent", "PartComponent").size(),
            5u);
  // Quantities carry units and IDs show in hex.
  for (const auto& shown : {std::make_pair("CurrentLinkSpeed", "2.5 Gbps"),
                            std::make_pair("MaxLinkSpeed", "16 Gbps"),
                            std::make_pair("VendorID", "1002"), std::make_pair("PCIDeviceID", "73BF"),
                            std::make_pair("RevisionID", "C1")})
    EXPECT_EQ(Display(*result, "KAPLA_PCIDevice", "0000:01:00.0", shown.first), shown.second);
  EXPECT_EQ(Qualifier(*result, "KAPLA_PCIDevice", "MaxLinkSpeed", "UNITS"), "Bits per Second");
  EXPECT_EQ(Qualifier(*result, "KAPLA_PCIDevice", "MaxLinkWidth", "UNITS"), "Lanes");
}

TEST_F(DevicesTest, UsbDevicesHangOnTheirHubsAndTheRootHubOnItsController) {
  std::unique_ptr<TContainer> result = CollectFixture();
  EXPECT_EQ(Instances(*result, "KAPLA_USBDevice").size(), 3u); // Interfaces are no devices.
  ExpectInstances(*result, "KAPLA_USBDevice",
                  {"DeviceID", "Name", "BusNumber", "DeviceNumber", "PortPath", "VendorID",
                   "VendorName", "ProductID", "ProductName", "Manufacturer", "SerialNumber",
                   "Speed", "USBVersion", "ClassCode", "ClassName", "SubClassName",
                   "ProtocolName", "NumberOfPorts", "MaxPower", "Driver", "InterfaceDrivers"},
                  {
      // Two interfaces, one driver.
      {"1-1.2", "USB Keyboard", "1", "3", "1.2", "1133", "Logitech, Inc.", "49948",
       "Keyboard K120", "Logitech", "KB0042X7", "1500000", "1.10", "0",
       "(Defined at Interface level)", "NULL", "NULL", "NULL", "90", "usb", "{ usbhid }"},
      {"1-1", "USB2.1 Hub", "1", "2", "1", "1507", "Genesys Logic, Inc.", "1552", "Hub",
       "GenesysLogic", "NULL", "480000000", "2.10", "9", "Hub", "Unused", "TT per port", "4",
       "100", "usb", "{ hub }"},
      {"usb1", "xHCI Host Controller", "1", "1", "0", "7531", "Linux Foundation", "2",
       "2.0 root hub", "Linux 5.15.0-91-generic xhci-hcd", "0000:00:14.0", "480000000", "2.00",
       "9", "Hub", "Unused", "Single TT", "16", "0", "usb", "NULL"},
  });
  EXPECT_EQ(Pairs(*result, "KAPLA_USBConnection", "Antecedent", "Dependent"),
            (std::set<std::string>{"usb1 > 1-1", "1-1 > 1-1.2"}));
  EXPECT_EQ(Pairs(*result, "KAPLA_USBControllerHasHub", "Antecedent", "Dependent"),
            (std::set<std::string>{"0000:00:14.0 > usb1"}));
  EXPECT_EQ(Pairs(*result, "KAPLA_SystemUSBDevice", "GroupComponent", "PartComponent").size(),
            3u);
  EXPECT_EQ(Display(*result, "KAPLA_USBDevice", "1-1.2", "Speed"), "1.5 Mbps");
  EXPECT_EQ(Display(*result, "KAPLA_USBDevice", "1-1", "Speed"), "480 Mbps");
  EXPECT_EQ(Display(*result, "KAPLA_USBDevice", "1-1.2", "ProductID"), "C31C");
  EXPECT_EQ(Qualifier(*result, "KAPLA_USBDevice", "MaxPower", "UNITS"), "MilliAmperes");
  EXPECT_EQ(Qualifier(*result, "KAPLA_USBDevice", "SerialNumber", "SENSITIVE"), "true");
}

TEST_F(DevicesTest, VideoControllersAreTheCardsAndTheirPciFunctions) {
  std::unique_ptr<TContainer> result = CollectFixture();
  EXPECT_EQ(Instances(*result, "KAPLA_VideoController").size(), 2u);
  ExpectInstances(*result, "KAPLA_VideoController",
                  {"DeviceID", "PCIAddress", "Card", "Name", "VendorName", "Driver", "VideoMemory",
                   "Connectors", "ConnectedConnectors"},
                  {
      {"0000:01:00.0", "0000:01:00.0", "card0", "Navi 21 [Radeon RX 6800/6800 XT / 6900 XT]",
       "Advanced Micro Devices, Inc. [AMD/ATI]", "amdgpu", "17163091968",
       "{ DP-1, DP-2, HDMI-A-1 }", "{ DP-1 }"},
      // A virtual card on the platform bus: no PCI function, no names.
      {"card1", "NULL", "card1", "NULL", "NULL", "vkms", "NULL", "{ Virtual-1 }",
       "{ Virtual-1 }"},
  });
  EXPECT_EQ(Pairs(*result, "KAPLA_PCIDeviceVideoController", "SystemElement", "SameElement"),
            (std::set<std::string>{"0000:01:00.0 > 0000:01:00.0"}));
  std::set<std::string> parts;
  for (const std::string& pair :
       Pairs(*result, "KAPLA_SystemVideoController", "GroupComponent", "PartComponent"))
    parts.insert(pair.substr(pair.find(" > ") + 3));
  EXPECT_EQ(parts, (std::set<std::string>{"0000:01:00.0", "card1"}));
  EXPECT_EQ(Display(*result, "KAPLA_VideoController", "0000:01:00.0", "VideoMemory"),
            "16 GigaBytes");
  EXPECT_EQ(Qualifier(*result, "KAPLA_VideoController", "VideoMemory", "UNITS"), "Bytes");
}

TEST_F(DevicesTest, WithoutTheIdDatabasesTheNamesAreNullAndTheIdsStay) {
  std::unique_ptr<TContainer> result = Collect(BareRoot(), kDeviceClasses);
  ExpectInstances(*result, "KAPLA_PCIDevice",
                  {"DeviceID", "VendorID", "VendorName", "Name", "ClassName", "SubsystemName", "Driver"},
                  {{"0000:01:00.0", "4098", "NULL", "NULL", "NULL", "NULL", "amdgpu"}});
  // The device's own string needs no database.
  ExpectInstances(*result, "KAPLA_USBDevice",
                  {"DeviceID", "ProductID", "ProductName", "VendorName", "ClassName", "Name"},
                  {{"1-1.2", "49948", "NULL", "NULL", "NULL", "USB Keyboard"}});
  ExpectInstances(*result, "KAPLA_VideoController", {"DeviceID", "Name"}, {{"0000:01:00.0", "NULL"}});
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
    std::string vendor = ReadFile("/sys/bus/pci/devices/" + address + "/vendor");
    EXPECT_EQ(Text(instance, "VendorID"), std::to_string(std::stoul(vendor, nullptr, 16)));
    if (ReadFile("/sys/bus/pci/devices/" + address + "/class").compare(0, 4, "0x03") == 0)
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
