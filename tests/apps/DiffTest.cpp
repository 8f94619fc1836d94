// zelcollect diff, show and --compare run as child processes over real result files: two
// collections of a fixture root with packages changed in between, and hand-written
// inventories of two schema versions (tests/apps/data/disks-*.xml).
#include "ZelCollectRun.h"

#include <nlohmann/json.hpp>

#include <filesystem>
#include <map>

namespace {

std::string Data(const std::string& name) { return std::string(ZEL_TEST_DATA_DIR) + "/" + name; }

// A dpkg status file of "name version" pairs.
std::string DpkgStatus(const std::vector<std::pair<std::string, std::string>>& packages) {
  std::string text;
  for (const auto& package : packages)
    text += "Package: " + package.first + "\nStatus: install ok installed\nArchitecture: amd64\n"
            "Installed-Size: 12\nVersion: " + package.second + "\n\n";
  return text;
}

} // namespace

class DiffTest : public ZelCollectTest {
protected:
  void SetUp() override {
    ZelCollectTest::SetUp();
    fRoot = TempPath("root");
    std::filesystem::create_directories(fRoot + "/var/lib/dpkg");
  }

  // zelcollect with the fixture root as the machine, in the test's directory.
  TRun Zel(const std::vector<std::string>& arguments) {
    TRunSetup setup;
    setup.fRoot = fRoot;
    return Run(arguments, setup);
  }

  // One collection of the fixture root with these packages installed, written to result.
  void Collect(const std::vector<std::pair<std::string, std::string>>& packages,
               const std::string& result) {
    WriteFile("root/var/lib/dpkg/status", DpkgStatus(packages));
    TRun run = Zel({"-o", result, "-f", "xml"});
    ASSERT_EQ(run.fExit, 0) << run.fErr;
  }

  std::string fRoot;
};

static const char kPackagesChanged[] = "KAPLA_SoftwarePackage\n"
                                       "  ~ KAPLA_SoftwarePackage.Architecture=\"amd64\",Name=\"bash\"\n"
                                       "      Version: 5.2.15-2 -> 5.2.15-3\n"
                                       "  - KAPLA_SoftwarePackage.Architecture=\"amd64\",Name=\"curl\"\n"
                                       "  + KAPLA_SoftwarePackage.Architecture=\"amd64\",Name=\"zstd\"\n"
                                       "1 added, 1 removed, 1 changed\n";

TEST_F(DiffTest, TwoCollectionsShowTheChangedAddedAndRemovedPackagesOnly) {
  // Between the two runs every time stamp and the free memory moved: volatile, not shown.
  Collect({{"bash", "5.2.15-2"}, {"curl", "7.88"}}, "monday.xml");
  Collect({{"bash", "5.2.15-3"}, {"zstd", "1.5"}}, "tuesday.xml.gz");

  TRun run = Zel({"diff", "monday.xml", "tuesday.xml.gz"});
  EXPECT_EQ(run.fExit, 1) << run.fErr;
  EXPECT_EQ(run.fOut, kPackagesChanged);
  EXPECT_EQ(run.fErr, "");

  // The time stamps differ underneath: --all shows them for every instance.
  run = Zel({"diff", "--all", "monday.xml", "tuesday.xml.gz"});
  EXPECT_EQ(run.fExit, 1);
  EXPECT_NE(run.fOut.find("      DateTimeOfCollection: "), std::string::npos);
  EXPECT_EQ(run.fOut.find("1 added, 1 removed, 1 changed\n"), std::string::npos);

  run = Zel({"diff", "tuesday.xml.gz", "tuesday.xml.gz"});
  EXPECT_EQ(run.fExit, 0);
  EXPECT_EQ(run.fOut, "0 added, 0 removed, 0 changed\n");
}

TEST_F(DiffTest, CompareCollectsWritesTheResultAndPrintsTheDifferences) {
  Collect({{"bash", "5.2.15-2"}, {"curl", "7.88"}}, "monday.xml");
  WriteFile("root/var/lib/dpkg/status", DpkgStatus({{"bash", "5.2.15-3"}, {"zstd", "1.5"}}));

  TRun run = Zel({"--compare", "monday.xml", "-o", "now.xml"});
  EXPECT_EQ(run.fExit, 1) << run.fErr;
  EXPECT_EQ(run.fOut, "\nResult file  " + TempPath("now.xml") + " (" +
                          std::to_string(ReadFile(TempPath("now.xml")).size()) + " bytes)\n" +
                          kPackagesChanged);
  // The result file is the collection, untouched by the comparison.
  EXPECT_EQ(Zel({"diff", "monday.xml", "now.xml"}).fOut, kPackagesChanged);

  run = Zel({"--compare", "now.xml", "-n", "-f", "json"});
  EXPECT_EQ(run.fExit, 0) << run.fErr;
  nlohmann::json report = nlohmann::json::parse(run.fOut);
  EXPECT_EQ(report["summary"], nlohmann::json({{"added", 0}, {"removed", 0}, {"changed", 0}}));
}

TEST_F(DiffTest, HandWrittenInventoriesOfTwoSchemaVersions) {
  // sdb replaced (same class, new serial key), sda taken off line (value map) and its model
  // gone (NULL, shown as its NULLDISPLAY), sdc's model known again; Speed became uint64,
  // Firmware is no longer declared and Label is new; TEST_Card and TEST_Fan are on one side
  // only; the temperatures are volatile.
  TRun run = Zel({"diff", Data("disks-old.xml"), Data("disks-new.xml")});
  EXPECT_EQ(run.fExit, 1) << run.fErr;
  EXPECT_EQ(run.fOut, "TEST_Card\n"
                      "  - TEST_Card.Name=\"card0\"\n"
                      "TEST_DiskDrive\n"
                      "  ~ TEST_DiskDrive.DeviceID=\"sda\",SerialNumber=\"S1\"\n"
                      "      Availability: Running -> Off Line\n"
                      "      Firmware: 1.0 -> (absent)\n"
                      "      Label: (absent) -> boot\n"
                      "      Model: Alpha -> -\n"
                      "      Speed: 100 -> 100  (type uint32 -> uint64)\n"
                      "  - TEST_DiskDrive.DeviceID=\"sdb\",SerialNumber=\"S2\"\n"
                      "  + TEST_DiskDrive.DeviceID=\"sdb\",SerialNumber=\"S9\"\n"
                      "  ~ TEST_DiskDrive.DeviceID=\"sdc\",SerialNumber=\"S7\"\n"
                      "      Firmware: 3.0 -> (absent)\n"
                      "      Label: (absent) -> -\n"
                      "      Model: - -> Delta\n"
                      "      Speed: 100 -> 100  (type uint32 -> uint64)\n"
                      "TEST_Fan\n"
                      "  + TEST_Fan.Name=\"fan0\"\n"
                      "2 added, 2 removed, 2 changed\n");

  run = Zel({"diff", "--all", Data("disks-old.xml"), Data("disks-new.xml")});
  EXPECT_NE(run.fOut.find("      Model: Alpha -> -\n"
                          "      Speed: 100 -> 100  (type uint32 -> uint64)\n"
                          "      Temperature: 30 -> 45\n"),
            std::string::npos);

  // Backwards, the NULL model becomes a value again and the other changes turn round.
  run = Zel({"diff", Data("disks-new.xml"), Data("disks-old.xml")});
  EXPECT_NE(run.fOut.find("      Model: - -> Alpha\n"), std::string::npos);
  EXPECT_NE(run.fOut.find("  + TEST_Card.Name=\"card0\"\n"), std::string::npos);
  EXPECT_NE(run.fOut.find("      Speed: 100 -> 100  (type uint64 -> uint32)\n"), std::string::npos);
}

TEST_F(DiffTest, TheJsonReportKeepsTheTypesOfTheInventorysJson) {
  TRun run = Zel({"diff", "-f", "json", Data("disks-old.xml"), Data("disks-new.xml")});
  EXPECT_EQ(run.fExit, 1) << run.fErr;
  nlohmann::json report = nlohmann::json::parse(run.fOut);
  EXPECT_EQ(report["summary"], nlohmann::json({{"added", 2}, {"removed", 2}, {"changed", 2}}));
  EXPECT_EQ(report["changed"][0], nlohmann::json::parse(R"({
    "class": "TEST_DiskDrive", "path": "TEST_DiskDrive.DeviceID=\"sda\",SerialNumber=\"S1\"",
    "properties": {"Availability": {"old": 3, "new": 8}, "Firmware": {"old": "1.0", "new": null},
                   "Label": {"old": null, "new": "boot"}, "Model": {"old": "Alpha", "new": null},
                   "Speed": {"old": 100, "new": 100}}})"));
  EXPECT_EQ(report["removed"][0], nlohmann::json::parse(R"({
    "class": "TEST_Card", "path": "TEST_Card.Name=\"card0\"",
    "properties": {"Name": "card0", "Speed": 10}})"));
  EXPECT_EQ(report["added"][1], nlohmann::json::parse(R"({
    "class": "TEST_Fan", "path": "TEST_Fan.Name=\"fan0\"",
    "properties": {"Name": "fan0", "Speed": 1200}})"));
  EXPECT_EQ(report["removed"][1]["properties"]["Size"], 1073741824);
}

TEST_F(DiffTest, TheXmlReportIsADocumentOfPropertyChangesTheLibraryReads) {
  TRun run = Zel({"diff", "-f", "xml", Data("disks-old.xml"), Data("disks-new.xml")});
  EXPECT_EQ(run.fExit, 1) << run.fErr;
  WriteFile("changes.xml", run.fOut);
  TContainer changes;
  changes.PopulateContainerFromFile(TempPath("changes.xml"));
  std::vector<TCIMInstance*> instances =
      changes.GetClass("KAPLA_PropertyChange")->EnumerateInstances(false);
  // 5 + 4 properties of the changed disks, 2 + 8 of the removed card and disk, 8 + 2 added.
  EXPECT_EQ(instances.size(), 29u);
  std::map<std::string, std::vector<std::string>> rows;
  for (TCIMInstance* instance : instances) {
    std::vector<std::string> row;
    for (const char* name : {"ClassName", "Change", "OldValue", "NewValue"}) {
      TCIMValue value = instance->GetProperty(name).GetValue();
      row.push_back(value.IsNull() ? "NULL" : static_cast<std::string>(value));
    }
    rows[instance->GetProperty("InstancePath").ToString() + " " +
         instance->GetProperty("PropertyName").ToString()] = row;
  }
  EXPECT_EQ(rows.size(), 29u);
  typedef std::vector<std::string> TRow;
  EXPECT_EQ(rows["TEST_DiskDrive.DeviceID=\"sda\",SerialNumber=\"S1\" Availability"],
            (TRow{"TEST_DiskDrive", "changed", "Running", "Off Line"}));
  EXPECT_EQ(rows["TEST_DiskDrive.DeviceID=\"sda\",SerialNumber=\"S1\" Label"],
            (TRow{"TEST_DiskDrive", "changed", "NULL", "boot"}));
  EXPECT_EQ(rows["TEST_DiskDrive.DeviceID=\"sdb\",SerialNumber=\"S2\" Size"],
            (TRow{"TEST_DiskDrive", "removed", "1024 MegaBytes", "NULL"}));
  EXPECT_EQ(rows["TEST_Fan.Name=\"fan0\" Speed"], (TRow{"TEST_Fan", "added", "NULL", "1200"}));
}

TEST_F(DiffTest, ShowPrintsASavedInventoryAsTheCollectionDid) {
  WriteFile("root/var/lib/dpkg/status", DpkgStatus({{"bash", "5.2.15-2"}}));
  TRun collected = Zel({"-f", "json", "-o", "saved.xml.gz"});
  EXPECT_EQ(collected.fExit, 0) << collected.fErr;
  TRun shown = Zel({"show", "-f", "json", "saved.xml.gz"});
  EXPECT_EQ(shown.fExit, 0) << shown.fErr;
  EXPECT_EQ(shown.fOut, collected.fOut);

  shown = Zel({"show", Data("disks-old.xml")});
  EXPECT_EQ(shown.fExit, 0) << shown.fErr;
  EXPECT_NE(shown.fOut.find("TEST_DiskDrive  (3 instances)\n"
                            "  DeviceID sda, SerialNumber S1\n"
                            "    Availability  Running\n"),
            std::string::npos);
}

TEST_F(DiffTest, FilesThatAreNoInventoriesExitWithTwoAndTheReason) {
  WriteFile("notes.txt", "not CIM-XML at all\n");
  const struct {
    std::vector<std::string> fArguments;
    std::string fErr;
  } kCases[] = {
      {{"diff", Data("disks-old.xml"), "notes.txt"},
       "zelcollect: cannot read notes.txt: zelStatusInvalidSpecificationDocument\n"},
      {{"diff", "missing.xml", Data("disks-new.xml")},
       "zelcollect: cannot read missing.xml: zelStatusFileSystemError\n"},
      // It fails before anything is collected or written.
      {{"--compare", "missing.xml", "-o", "never.xml"},
       "zelcollect: cannot read missing.xml: zelStatusFileSystemError\n"},
      {{"diff", Data("classes-only.xml"), Data("disks-new.xml")},
       "zelcollect: " + Data("classes-only.xml") + " is not an inventory: it holds no instances\n"},
      {{"show", Data("classes-only.xml")},
       "zelcollect: " + Data("classes-only.xml") + " is not an inventory: it holds no instances\n"},
      {{"diff", Data("disks-old.xml")},
       "zelcollect: diff takes two result files, the older first\nTry 'zelcollect --help'.\n"},
      {{"show"}, "zelcollect: show takes one result file\nTry 'zelcollect --help'.\n"},
  };
  for (const auto& row : kCases) {
    SCOPED_TRACE(row.fArguments.back());
    TRun run = Zel(row.fArguments);
    EXPECT_EQ(run.fExit, 2);
    EXPECT_EQ(run.fOut, "");
    EXPECT_EQ(run.fErr, row.fErr);
  }
  EXPECT_EQ(access(TempPath("never.xml").c_str(), F_OK), -1);
}
