// The hardware plugins over fixture roots and this machine: memory modules from an SMBIOS
// table written out byte by byte, hwmon sensors, processors with their caches, and the
// memory sizes that two plugins report in one unit.
#include "BundledTest.h"

#include "TCIMPropertyDecl.h"
#include "TCIMQualifier.h"
#include "TCIMReference.h"
#include "TCIMValue.h"

#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <tuple>

namespace {

// The SMBIOS table of a two-DIMM machine (data/smbios-table.hex): two hex digits are a byte,
// "quoted text" its bytes, # starts a comment.
std::string MachineTable() {
  std::string text = ZelTest::ReadFile(ZEL_TEST_DATA_DIR "/smbios-table.hex"), bytes;
  for (size_t at = 0; at < text.size(); ++at) {
    if (text[at] == '#') {
      at = text.find('\n', at);
      if (at == std::string::npos)
        break;
    } else if (text[at] == '"') {
      size_t end = text.find('"', at + 1);
      bytes += text.substr(at + 1, end - at - 1);
      at = end;
    } else if (isxdigit(static_cast<unsigned char>(text[at]))) {
      bytes += static_cast<char>(std::stoi(text.substr(at, 2), nullptr, 16));
      ++at;
    }
  }
  return bytes;
}

} // namespace

class HardwareTest : public BundledTest {
protected:
  // A root holding only the SMBIOS table file with these bytes.
  std::string TableRoot(const std::string& bytes) {
    std::string root = TempPath("dmi");
    std::filesystem::create_directories(root + "/sys/firmware/dmi/tables");
    std::ofstream(root + "/sys/firmware/dmi/tables/DMI", std::ios::binary) << bytes;
    return root;
  }

  static std::string Display(TCIMInstance* instance, const std::string& property) {
    return instance->GetProperty(property).ToString();
  }

  // Every instance of association links the computer system to a collected instance of
  // partClass, each part once.
  static void ExpectAssociated(TContainer& container, const std::string& association,
                               const std::string& partClass) {
    std::vector<TCIMInstance*> systems = Instances(container, "KAPLA_ComputerSystem");
    ASSERT_EQ(systems.size(), 1u);
    std::set<TCIMInstance*> parts;
    for (TCIMInstance* link : Instances(container, association)) {
      TCIMReference group = link->GetProperty("GroupComponent").GetValue();
      TCIMReference part = link->GetProperty("PartComponent").GetValue();
      EXPECT_EQ(group.GetCIMElement(), systems[0]);
      EXPECT_EQ(part.GetClassName(), partClass);
      parts.insert(dynamic_cast<TCIMInstance*>(part.GetCIMElement()));
    }
    std::vector<TCIMInstance*> collected = Instances(container, partClass);
    EXPECT_EQ(parts, std::set<TCIMInstance*>(collected.begin(), collected.end()));
  }
};

TEST_F(HardwareTest, MemoryModulesComeFromTheTypeSeventeenRecordsOfTheTable) {
  std::unique_ptr<TContainer> result =
      Collect(TableRoot(MachineTable()),
              {"KAPLA_ComputerSystem", "KAPLA_PhysicalMemory", "KAPLA_SystemPhysicalMemory"});
  TContainer& c = *result;
  // The empty slot and the record after the end of the table are not modules.
  std::set<std::string> tags;
  for (TCIMInstance* module : Instances(c, "KAPLA_PhysicalMemory"))
    tags.insert(Text(module, "Tag"));
  EXPECT_EQ(tags, (std::set<std::string>{"0x1100", "0x1102", "0x1103", "0x1104"}));

  ExpectInstances(c, "KAPLA_PhysicalMemory",
                  {"Tag", "DeviceLocator", "BankLabel", "Capacity", "FormFactor", "MemoryType",
                   "Speed", "ConfiguredSpeed", "Manufacturer", "SerialNumber", "PartNumber",
                   "CreationClassName"},
                  {
      {"0x1100", "DIMM_A1", "BANK 0", "34359738368", "9", "34", "6400", "5600", "Acme Memory",
       "8A1B2C3D", "AM5-32G-6400", "KAPLA_PhysicalMemory"},
      {"0x1102", "DIMM_B1", "BANK 2", "8589934592", "13", "26", "2666", "NULL", "NULL", "NULL",
       "M4-8G", "KAPLA_PhysicalMemory"},
      {"0x1103", "SLOT 3", "NULL", "2097152", "NULL", "NULL", "NULL", "NULL", "NULL", "NULL",
       "NULL", "KAPLA_PhysicalMemory"},
      {"0x1104", "SLOT 4", "NULL", "NULL", "NULL", "24", "NULL", "NULL", "NULL", "NULL", "NULL",
       "KAPLA_PhysicalMemory"},
  });

  // Codes read through their value maps; the speed's unit has no scaling, so it shows bare.
  TCIMInstance* a1 = Find(c, "KAPLA_PhysicalMemory", "Tag", "0x1100");
  TCIMInstance* b1 = Find(c, "KAPLA_PhysicalMemory", "Tag", "0x1102");
  ASSERT_TRUE(a1 && b1);
  EXPECT_EQ(Display(a1, "MemoryType"), "DDR5");
  EXPECT_EQ(Display(a1, "FormFactor"), "DIMM");
  EXPECT_EQ(Display(b1, "MemoryType"), "DDR4");
  EXPECT_EQ(Display(b1, "FormFactor"), "SODIMM");
  EXPECT_EQ(Display(a1, "Capacity"), "32 GigaBytes");
  EXPECT_EQ(Display(a1, "Speed"), "6400");

  EXPECT_EQ(Qualifier(c, "KAPLA_PhysicalMemory", "Capacity", "UNITS"), "Bytes");
  EXPECT_EQ(Qualifier(c, "KAPLA_PhysicalMemory", "Speed", "UNITS"), "MegaTransfers per Second");
  EXPECT_EQ(Qualifier(c, "KAPLA_PhysicalMemory", "ConfiguredSpeed", "UNITS"),
            "MegaTransfers per Second");
  EXPECT_EQ(Qualifier(c, "KAPLA_PhysicalMemory", "SerialNumber", "SENSITIVE"), "true");
  EXPECT_EQ(Qualifier(c, "KAPLA_PhysicalMemory", "Capacity", "NULLDISPLAY"), "ABSENT");

  EXPECT_EQ(Instances(c, "KAPLA_SystemPhysicalMemory").size(), 4u);
  ExpectAssociated(c, "KAPLA_SystemPhysicalMemory", "KAPLA_PhysicalMemory");
}

TEST_F(HardwareTest, ACutTableKeepsTheModulesBeforeTheCutAndFailsNothing) {
  std::string table = MachineTable();
  size_t cut = table.find("M4-8G"); // inside DIMM_B1's strings: its set never ends
  ASSERT_NE(cut, std::string::npos);
  std::unique_ptr<TContainer> result =
      Collect(TableRoot(table.substr(0, cut + 2)), {"KAPLA_PhysicalMemory"});
  std::vector<TCIMInstance*> modules = Instances(*result, "KAPLA_PhysicalMemory");
  ASSERT_EQ(modules.size(), 1u);
  EXPECT_EQ(Text(modules[0], "Tag"), "0x1100");

  // A header claiming fewer bytes than itself ends the walk the same way.
  std::string bad = table;
  bad[1] = 3; // the first record's length
  result = Collect(TableRoot(bad), {"KAPLA_PhysicalMemory"});
  EXPECT_TRUE(Instances(*result, "KAPLA_PhysicalMemory").empty());
}

TEST_F(HardwareTest, SensorsGiveEachReadingInItsUnitWithItsLimits) {
  std::unique_ptr<TContainer> result =
      Collect(Fixture("hardware"),
              {"KAPLA_ComputerSystem", "KAPLA_NumericSensor", "KAPLA_SystemNumericSensor"});
  TContainer& c = *result;
  ASSERT_EQ(Instances(c, "KAPLA_NumericSensor").size(), 6u);

  ExpectInstances(c, "KAPLA_NumericSensor", {"DeviceID", "Name", "Chip", "Label"},
                  {{"hwmon0/temp1", "nct6798 CPUTIN", "nct6798", "CPUTIN"},
                   {"hwmon0/temp2", "nct6798 temp2", "nct6798", "NULL"},
                   {"hwmon0/fan1", "nct6798 fan1", "nct6798", "NULL"},
                   {"hwmon0/in0", "nct6798 in0", "nct6798", "NULL"},
                   {"hwmon0/power1", "nct6798 power1", "nct6798", "NULL"},
                   {"hwmon1/temp1", "nvme Composite", "nvme", "Composite"}});

  // Each reading in the property of its kind; the other kinds' readings stay NULL.
  const std::tuple<const char*, const char*, const char*, double> kReadings[] = {
      {"hwmon0/temp1", "Temperature", "Temperature", 45.5},
      {"hwmon0/temp2", "Temperature", "Temperature", -5.25},
      {"hwmon0/fan1", "Tachometer", "FanSpeed", 1250},
      {"hwmon0/in0", "Voltage", "Voltage", 1.224},
      {"hwmon0/power1", "Power Consumption", "Power", 12.345678},
      {"hwmon1/temp1", "Temperature", "Temperature", 38.85},
  };
  for (const auto& [id, type, property, reading] : kReadings) {
    SCOPED_TRACE(id);
    TCIMInstance* sensor = Find(c, "KAPLA_NumericSensor", "DeviceID", id);
    ASSERT_NE(sensor, nullptr);
    EXPECT_EQ(Display(sensor, "SensorType"), type);
    TCIMValue value = sensor->GetProperty(property).GetValue();
    if (std::string(property) == "FanSpeed")
      EXPECT_EQ(static_cast<unsigned int>(value), reading);
    else
      EXPECT_EQ(static_cast<double>(value), reading); // every digit the kernel gave
    for (const char* other : {"Temperature", "Voltage", "Current", "FanSpeed", "Power"}) {
      if (std::string(other) != property) {
        EXPECT_EQ(Text(sensor, other), "NULL") << other;
      }
    }
  }

  // The limits the chips give; every other one is NULL.
  ExpectInstances(c, "KAPLA_NumericSensor",
                  {"DeviceID", "TemperatureMin", "TemperatureMax", "TemperatureCritical",
                   "FanSpeedMin", "FanSpeedMax", "VoltageMin", "VoltageMax"},
                  {{"hwmon0/temp1", "NULL", "80", "95", "NULL", "NULL", "NULL", "NULL"},
                   {"hwmon0/temp2", "NULL", "NULL", "NULL", "NULL", "NULL", "NULL", "NULL"},
                   {"hwmon0/fan1", "NULL", "NULL", "NULL", "300", "NULL", "NULL", "NULL"},
                   {"hwmon0/in0", "NULL", "NULL", "NULL", "NULL", "NULL", "1", "1.5"},
                   {"hwmon1/temp1", "-273.15", "84.85", "NULL", "NULL", "NULL", "NULL", "NULL"}});

  const std::pair<const char*, const char*> kUnits[] = {
      {"Temperature", "DegreesCelsius"}, {"TemperatureCritical", "DegreesCelsius"},
      {"Voltage", "Volts"},              {"VoltageMax", "Volts"},
      {"Current", "Amperes"},            {"FanSpeed", "RPM"},
      {"FanSpeedMin", "RPM"},            {"Power", "Watts"},
      {"PowerMax", "Watts"}};
  for (const auto& unit : kUnits)
    EXPECT_EQ(Qualifier(c, "KAPLA_NumericSensor", unit.first, "UNITS"), unit.second)
        << unit.first;
  EXPECT_EQ(Qualifier(c, "KAPLA_NumericSensor", "Temperature", "VOLATILE"), "true");
  EXPECT_EQ(Qualifier(c, "KAPLA_NumericSensor", "FanSpeed", "VOLATILE"), "true");
  EXPECT_EQ(Qualifier(c, "KAPLA_NumericSensor", "TemperatureMax", "VOLATILE"), "ABSENT");

  ExpectAssociated(c, "KAPLA_SystemNumericSensor", "KAPLA_NumericSensor");
}

TEST_F(HardwareTest, ProcessorsCarryTheirIdentityFlagsAndCaches) {
  std::unique_ptr<TContainer> result = Collect(
      Fixture("hardware"), {"KAPLA_ComputerSystem", "KAPLA_Processor", "KAPLA_SystemProcessor"});
  TContainer& c = *result;
  ASSERT_EQ(Instances(c, "KAPLA_Processor").size(), 2u);
  ExpectInstances(c, "KAPLA_Processor",
                  {"DeviceID", "Name", "Manufacturer", "Family", "Model", "Stepping", "Microcode",
                   "ThreadsPerCore", "CurrentClockSpeed", "CacheSize", "L1DataCacheSize",
                   "L1InstructionCacheSize", "L2CacheSize", "L3CacheSize"},
                  {{"CPU0", "Example 8-Core Processor", "AuthenticAMD", "25", "33", "2",
                    "0xa201016", "2", "3400", "524288", "32768", "32768", "524288", "33554432"},
                   {"CPU1", "Example 8-Core Processor", "AuthenticAMD", "25", "33", "2",
                    "0xa201016", "2", "2200", "524288", "32768", "32768", "524288", "NULL"}});
  for (TCIMInstance* cpu : Instances(c, "KAPLA_Processor"))
    EXPECT_EQ(cpu->GetProperty("Flags").ToStringVector(),
              (std::vector<std::string>{"fpu", "vme", "de", "pse", "tsc", "sse2", "ht"}));
  EXPECT_EQ(Qualifier(c, "KAPLA_Processor", "CurrentClockSpeed", "UNITS"), "MegaHertz");
  EXPECT_EQ(Qualifier(c, "KAPLA_Processor", "CurrentClockSpeed", "VOLATILE"), "true");
  for (const char* size : {"CacheSize", "L1DataCacheSize", "L1InstructionCacheSize",
                           "L2CacheSize", "L3CacheSize"})
    EXPECT_EQ(Qualifier(c, "KAPLA_Processor", size, "UNITS"), "Bytes") << size;
  ExpectAssociated(c, "KAPLA_SystemProcessor", "KAPLA_Processor");
}

TEST_F(HardwareTest, MemorySizesAreBytesInEveryClass) {
  std::unique_ptr<TContainer> result =
      Collect(Fixture("hardware"), {"KAPLA_OperatingSystem", "KAPLA_Memory"});
  TContainer& c = *result;
  // 16318208 KiB; no /proc/stat in the fixture, so no boot time.
  EXPECT_EQ(Instances(c, "KAPLA_OperatingSystem").size(), 1u);
  ExpectInstances(c, "KAPLA_OperatingSystem",
                  {"OSType", "TotalVisibleMemorySize", "FreePhysicalMemory", "TotalSwapSpaceSize",
                   "LastBootUpTime"},
                  {{"36", "16709844992", "12288000000", "2147479552", "NULL"}});
  ExpectInstances(c, "KAPLA_Memory", {"DeviceID", "Capacity", "Available"},
                  {{"Memory0", "16709844992", "12288000000"}, {"Swap0", "2147479552", "2147479552"}});

  const std::pair<const char*, const char*> kSizes[] = {
      {"KAPLA_OperatingSystem", "TotalVisibleMemorySize"},
      {"KAPLA_OperatingSystem", "FreePhysicalMemory"},
      {"KAPLA_OperatingSystem", "TotalSwapSpaceSize"},
      {"KAPLA_Memory", "Capacity"},
      {"KAPLA_Memory", "Available"}};
  for (const auto& size : kSizes)
    EXPECT_EQ(Qualifier(c, size.first, size.second, "UNITS"), "Bytes") << size.second;
  EXPECT_EQ(Qualifier(c, "KAPLA_OperatingSystem", "FreePhysicalMemory", "VOLATILE"), "true");
  EXPECT_EQ(Qualifier(c, "KAPLA_OperatingSystem", "LastBootUpTime", "VOLATILE"), "true");
  EXPECT_EQ(Qualifier(c, "KAPLA_Memory", "Available", "VOLATILE"), "true");
  EXPECT_EQ(Qualifier(c, "KAPLA_Memory", "Capacity", "VOLATILE"), "ABSENT");
}

// What this machine has: as many processors as /proc/cpuinfo lists, each with the L1 data
// cache its sysfs directory gives; modules only where the table can be read; sensors only
// where there are chips.
TEST_F(HardwareTest, ThisMachineIsDescribedAsItsFilesSay) {
  std::unique_ptr<TContainer> result =
      Collect("", {"KAPLA_ComputerSystem", "KAPLA_Processor", "KAPLA_PhysicalMemory",
                   "KAPLA_SystemPhysicalMemory", "KAPLA_NumericSensor",
                   "KAPLA_SystemNumericSensor"});
  TContainer& c = *result;
  std::ifstream cpuinfo("/proc/cpuinfo");
  size_t processors = 0;
  for (std::string line; std::getline(cpuinfo, line);)
    processors += line.rfind("processor", 0) == 0;
  std::vector<TCIMInstance*> cpus = Instances(c, "KAPLA_Processor");
  ASSERT_EQ(cpus.size(), processors);
  for (TCIMInstance* cpu : cpus) {
    std::string number = Text(cpu, "DeviceID").substr(3);
    std::ifstream sizeFile("/sys/devices/system/cpu/cpu" + number + "/cache/index0/size");
    std::ifstream typeFile("/sys/devices/system/cpu/cpu" + number + "/cache/index0/type");
    std::string size, type;
    if (std::getline(sizeFile, size) && std::getline(typeFile, type) && type == "Data")
      EXPECT_EQ(Text(cpu, "L1DataCacheSize"), std::to_string(std::stoull(size) * 1024));
    else
      EXPECT_EQ(Text(cpu, "L1DataCacheSize"), "NULL");
  }

  struct stat info;
  bool table = std::ifstream("/sys/firmware/dmi/tables/DMI").good();
  if (!table) {
    EXPECT_TRUE(Instances(c, "KAPLA_PhysicalMemory").empty());
  }
  ExpectAssociated(c, "KAPLA_SystemPhysicalMemory", "KAPLA_PhysicalMemory");
  if (stat("/sys/class/hwmon", &info) != 0) {
    EXPECT_TRUE(Instances(c, "KAPLA_NumericSensor").empty());
  }
  for (TCIMInstance* sensor : Instances(c, "KAPLA_NumericSensor"))
    EXPECT_NE(Text(sensor, "SensorType"), "NULL") << Text(sensor, "DeviceID");
  ExpectAssociated(c, "KAPLA_SystemNumericSensor", "KAPLA_NumericSensor");
}
