// The hardware plugins over fixture roots and this machine: memory modules from an SMBIOS
// table assembled here byte by byte, hwmon sensors, processors with their caches, and the
// memory sizes that two plugins report in one unit.
#include "BundledTest.h"

#include "TCIMPropertyDecl.h"
#include "TCIMQualifier.h"
#include "TCIMReference.h"
#include "TCIMValue.h"

#include <sys/stat.h>

#include <cstdint>
#include <fstream>
#include <set>
#include <sstream>
#include <tuple>

namespace {

// An SMBIOS structure table built record by record: each record is its formatted area
// (type, length, handle, then fields at their offsets) followed by its string set, which
// ends with an empty string. Fields are written at an offset from the record's start; the
// bytes skipped are zero, and the length is set when the strings begin.
class TSmbiosTable {
public:
  TSmbiosTable& Record(uint8_t type, uint16_t handle) {
    fStart = fBytes.size();
    fBytes += static_cast<char>(type);
    fBytes += '\0'; // length, set by Strings
    return Word(handle);
  }
  // Moves to offset within the record, which must lie at or after what is written.
  TSmbiosTable& At(size_t offset) {
    EXPECT_LE(fBytes.size() - fStart, offset) << "fields out of order";
    fBytes.resize(fStart + offset, '\0');
    return *this;
  }
  TSmbiosTable& Byte(uint8_t value) {
    fBytes += static_cast<char>(value);
    return *this;
  }
  TSmbiosTable& Word(uint16_t value) { // little-endian
    return Byte(static_cast<uint8_t>(value)).Byte(static_cast<uint8_t>(value >> 8));
  }
  TSmbiosTable& DoubleWord(uint32_t value) {
    return Word(static_cast<uint16_t>(value)).Word(static_cast<uint16_t>(value >> 16));
  }
  // Ends the formatted area at length and appends the strings, numbered from 1.
  TSmbiosTable& Strings(size_t length, const std::vector<std::string>& strings) {
    At(length);
    fBytes[fStart + 1] = static_cast<char>(length);
    for (const std::string& text : strings)
      fBytes += text + '\0';
    if (strings.empty())
      fBytes += '\0'; // no string: the set is two NULs
    fBytes += '\0';
    return *this;
  }
  std::string fBytes;

private:
  size_t fStart = 0;
};

// Memory device (type 17) field offsets.
enum : size_t {
  kArrayHandle = 0x04,
  kErrorHandle = 0x06,
  kTotalWidth = 0x08,
  kDataWidth = 0x0A,
  kSize = 0x0C,
  kFormFactor = 0x0E,
  kDeviceSet = 0x0F,
  kDeviceLocator = 0x10,
  kBankLocator = 0x11,
  kMemoryType = 0x12,
  kTypeDetail = 0x13,
  kSpeed = 0x15,
  kManufacturer = 0x17,
  kSerialNumber = 0x18,
  kAssetTag = 0x19,
  kPartNumber = 0x1A,
  kAttributes = 0x1B,
  kExtendedSize = 0x1C,
  kConfiguredSpeed = 0x20,
  kMinimumVoltage = 0x22,
  kMemoryTechnology = 0x28,
  kExtendedSpeed = 0x54,
  kExtendedConfiguredSpeed = 0x58,
  // Record lengths of the versions that added fields.
  kLength23 = 0x1B,
  kLength27 = 0x22,
  kLength28 = 0x28,
  kLength33 = 0x5C
};

// A table as firmware of a two-DIMM machine writes it, with records of other types around
// the memory devices, an empty slot, modules of older record versions, and a record after
// the end-of-table marker that must not be read.
std::string MachineTable() {
  TSmbiosTable table;
  // Type 0, firmware information: skipped, strings and all.
  table.Record(0, 0x0000)
      .At(0x04).Byte(1)                 // vendor: string 1
      .At(0x05).Byte(2)                 // version: string 2
      .At(0x06).Word(0xE800)            // starting address segment
      .At(0x08).Byte(3)                 // release date: string 3
      .At(0x09).Byte(0xFF)              // ROM size
      .At(0x0A).DoubleWord(0x00000080)  // characteristics
      .Strings(0x18, {"Example Firmware", "1.2.3", "01/02/2025"});
  // Type 1, system information, with no string at all.
  table.Record(1, 0x0001)
      .At(0x08).Byte(0x11).Byte(0x22)   // UUID, first bytes
      .At(0x18).Byte(0x06)              // wake-up type: power switch
      .Strings(0x1B, {});
  // DIMM_A1, an SMBIOS 3.3 record: 32 GiB through the extended size, DDR5 in a DIMM, the
  // speed through the extended speed.
  table.Record(17, 0x1100)
      .At(kArrayHandle).Word(0x1000)
      .At(kErrorHandle).Word(0xFFFE)    // no error information
      .At(kTotalWidth).Word(64)
      .At(kDataWidth).Word(64)
      .At(kSize).Word(0x7FFF)           // 32 GiB - 1 MiB or more: see the extended size
      .At(kFormFactor).Byte(0x09)       // DIMM
      .At(kDeviceSet).Byte(0)
      .At(kDeviceLocator).Byte(1)
      .At(kBankLocator).Byte(2)
      .At(kMemoryType).Byte(0x22)       // DDR5
      .At(kTypeDetail).Word(0x0080)     // synchronous
      .At(kSpeed).Word(0xFFFF)          // see the extended speed
      .At(kManufacturer).Byte(3)
      .At(kSerialNumber).Byte(4)
      .At(kAssetTag).Byte(0)
      .At(kPartNumber).Byte(5)
      .At(kAttributes).Byte(0x02)       // rank 2
      .At(kExtendedSize).DoubleWord(32768) // MiB
      .At(kConfiguredSpeed).Word(5600)  // MT/s
      .At(kMinimumVoltage).Word(1100).Word(1100).Word(1100) // minimum, maximum, configured
      .At(kMemoryTechnology).Byte(0x03) // DRAM
      .At(kExtendedSpeed).DoubleWord(6400)
      .At(kExtendedConfiguredSpeed).DoubleWord(0)
      .Strings(kLength33, {"DIMM_A1", "BANK 0", "Acme Memory", "8A1B2C3D", "AM5-32G-6400   "});
  // DIMM_A2, an empty slot (size 0) of an SMBIOS 2.8 record.
  table.Record(17, 0x1101)
      .At(kArrayHandle).Word(0x1000)
      .At(kSize).Word(0)
      .At(kFormFactor).Byte(0x09)
      .At(kDeviceLocator).Byte(1)
      .At(kBankLocator).Byte(2)
      .At(kMemoryType).Byte(0x02)       // unknown
      .At(kManufacturer).Byte(3)
      .Strings(kLength28, {"DIMM_A2", "BANK 1", "NO DIMM"});
  // DIMM_B1, an SMBIOS 2.3 record: 8 GiB in MiB, DDR4 SODIMM, a placeholder manufacturer, no
  // serial, and no configured speed field at all.
  table.Record(17, 0x1102)
      .At(kArrayHandle).Word(0x1000)
      .At(kSize).Word(8192)             // MiB
      .At(kFormFactor).Byte(0x0D)       // SODIMM
      .At(kDeviceLocator).Byte(1)
      .At(kBankLocator).Byte(2)
      .At(kMemoryType).Byte(0x1A)       // DDR4
      .At(kSpeed).Word(2666)
      .At(kManufacturer).Byte(3)
      .At(kSerialNumber).Byte(0)        // none
      .At(kPartNumber).Byte(4)
      .Strings(kLength23, {"DIMM_B1", "BANK 2", "Not Specified", "M4-8G"});
  // SLOT 3, an SMBIOS 2.7 record: 2 MiB in KiB granularity, unknown form factor and type,
  // unknown speeds, a manufacturer string number beyond the set.
  table.Record(17, 0x1103)
      .At(kSize).Word(0x8000 | 2048)    // KiB
      .At(kFormFactor).Byte(0x02)       // unknown
      .At(kDeviceLocator).Byte(1)
      .At(kMemoryType).Byte(0x02)       // unknown
      .At(kSpeed).Word(0)               // unknown
      .At(kManufacturer).Byte(9)
      .At(kConfiguredSpeed).Word(0)
      .Strings(kLength27, {"SLOT 3"});
  // SLOT 4: a module of unknown size is still a module.
  table.Record(17, 0x1104)
      .At(kSize).Word(0xFFFF)
      .At(kDeviceLocator).Byte(1)
      .At(kMemoryType).Byte(0x18)       // DDR3
      .Strings(kLength27, {"SLOT 4"});
  table.Record(127, 0xFEFF).Strings(4, {}); // end of table
  table.Record(17, 0x1105)                  // after the end: never read
      .At(kSize).Word(4096)
      .Strings(kLength23, {});
  return table.fBytes;
}

} // namespace

class HardwareTest : public BundledTest {
protected:
  // A root holding only the SMBIOS table file with these bytes.
  std::string TableRoot(const std::string& bytes) {
    std::string root = TempPath("dmi");
    std::string path = root + "/sys/firmware/dmi/tables";
    std::string made;
    for (size_t slash = 0; slash != std::string::npos;) {
      slash = path.find('/', slash + 1);
      made = path.substr(0, slash);
      mkdir(made.c_str(), 0755);
    }
    std::ofstream(path + "/DMI", std::ios::binary) << bytes;
    return root;
  }

  static double Real(TCIMInstance* instance, const std::string& property) {
    return static_cast<double>(instance->GetProperty(property).GetValue());
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
                   "Speed", "ConfiguredSpeed", "Manufacturer", "SerialNumber", "PartNumber"},
                  {
      {"0x1100", "DIMM_A1", "BANK 0", "34359738368", "9", "34", "6400", "5600", "Acme Memory",
       "8A1B2C3D", "AM5-32G-6400"},
      {"0x1102", "DIMM_B1", "BANK 2", "8589934592", "13", "26", "2666", "NULL", "NULL", "NULL",
       "M4-8G"},
      {"0x1103", "SLOT 3", "NULL", "2097152", "NULL", "NULL", "NULL", "NULL", "NULL", "NULL",
       "NULL"},
      {"0x1104", "SLOT 4", "NULL", "NULL", "NULL", "24", "NULL", "NULL", "NULL", "NULL", "NULL"},
  });
  for (TCIMInstance* module : Instances(c, "KAPLA_PhysicalMemory"))
    EXPECT_EQ(Text(module, "CreationClassName"), "KAPLA_PhysicalMemory");

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

  TCIMInstance* cpu = Find(c, "KAPLA_NumericSensor", "DeviceID", "hwmon0/temp1");
  TCIMInstance* cold = Find(c, "KAPLA_NumericSensor", "DeviceID", "hwmon0/temp2");
  TCIMInstance* fan = Find(c, "KAPLA_NumericSensor", "DeviceID", "hwmon0/fan1");
  TCIMInstance* core = Find(c, "KAPLA_NumericSensor", "DeviceID", "hwmon0/in0");
  TCIMInstance* disk = Find(c, "KAPLA_NumericSensor", "DeviceID", "hwmon1/temp1");
  ASSERT_TRUE(cpu && cold && fan && core && disk);
  EXPECT_EQ(Real(cpu, "TemperatureMax"), 80.0);
  EXPECT_EQ(Real(cpu, "TemperatureCritical"), 95.0);
  EXPECT_EQ(Text(cpu, "TemperatureMin"), "NULL");
  EXPECT_EQ(Text(cold, "TemperatureMax"), "NULL");
  EXPECT_EQ(Text(fan, "FanSpeedMin"), "300");
  EXPECT_EQ(Text(fan, "FanSpeedMax"), "NULL");
  EXPECT_EQ(Real(core, "VoltageMin"), 1.0);
  EXPECT_EQ(Real(core, "VoltageMax"), 1.5);
  EXPECT_EQ(Real(disk, "TemperatureMin"), -273.15);
  EXPECT_EQ(Real(disk, "TemperatureMax"), 84.85);

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
  std::vector<TCIMInstance*> systems = Instances(c, "KAPLA_OperatingSystem");
  ASSERT_EQ(systems.size(), 1u);
  TCIMInstance* os = systems[0];
  TCIMInstance* memory = Find(c, "KAPLA_Memory", "DeviceID", "Memory0");
  TCIMInstance* swap = Find(c, "KAPLA_Memory", "DeviceID", "Swap0");
  ASSERT_TRUE(memory && swap);
  EXPECT_EQ(Text(os, "TotalVisibleMemorySize"), "16709844992"); // 16318208 KiB
  EXPECT_EQ(Text(memory, "Capacity"), "16709844992");
  EXPECT_EQ(Text(os, "FreePhysicalMemory"), "12288000000");
  EXPECT_EQ(Text(memory, "Available"), "12288000000");
  EXPECT_EQ(Text(os, "TotalSwapSpaceSize"), "2147479552");
  EXPECT_EQ(Text(swap, "Capacity"), "2147479552");
  EXPECT_EQ(Text(os, "LastBootUpTime"), "NULL"); // no /proc/stat in the fixture

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

TEST_F(HardwareTest, WithoutTableAndChipsThereAreNoModulesAndNoSensors) {
  std::unique_ptr<TContainer> result =
      Collect(TempPath("empty"), {"KAPLA_ComputerSystem", "KAPLA_PhysicalMemory",
                                  "KAPLA_SystemPhysicalMemory", "KAPLA_NumericSensor",
                                  "KAPLA_SystemNumericSensor", "KAPLA_Processor"});
  EXPECT_TRUE(Instances(*result, "KAPLA_PhysicalMemory").empty());
  EXPECT_TRUE(Instances(*result, "KAPLA_SystemPhysicalMemory").empty());
  EXPECT_TRUE(Instances(*result, "KAPLA_NumericSensor").empty());
  EXPECT_TRUE(Instances(*result, "KAPLA_Processor").empty());
  EXPECT_EQ(Instances(*result, "KAPLA_ComputerSystem").size(), 1u);
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

  // Keys are unique: no two instances of a class share a path.
  for (const char* cls : {"KAPLA_Processor", "KAPLA_PhysicalMemory", "KAPLA_NumericSensor"}) {
    std::set<std::string> paths;
    for (TCIMInstance* instance : Instances(c, cls))
      EXPECT_TRUE(paths.insert(instance->BuildPath().GetPath()).second) << cls;
  }
}
