// The storage plugin and the file systems' residence over fixtures/storage: an NVMe disk
// with a GPT of two partitions, a SATA disk with one DOS partition and an optical drive, a
// read-only virtio disk, a zram disk, an attached and a free loop device; then over a root
// whose /proc/mounts lacks "/", and over this machine, whose every class is keyed uniquely.
#include "BundledTest.h"

#include "TCIMPropertyDecl.h"
#include "TCIMQualifier.h"
#include "TCIMReference.h"
#include "TCIMValue.h"

#include <sys/stat.h>
#include <sys/statfs.h>
#include <sys/statvfs.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <set>

class StorageTest : public BundledTest {
protected:
  std::unique_ptr<TContainer> CollectStorage(const std::string& root) {
    return Collect(root, {"KAPLA_ComputerSystem", "KAPLA_DiskDrive", "KAPLA_DiskPartition",
                          "KAPLA_SystemDiskDrive", "KAPLA_MediaPresent", "KAPLA_FileSystem",
                          "KAPLA_ResidesOnExtent"});
  }

  /// "Class DeviceID" of each instance the association relates to this one.
  static std::set<std::string> Related(TCIMInstance* instance, const std::string& association) {
    std::set<std::string> related;
    for (TCIMInstance* other : instance->Associators(association, "", "", ""))
      related.insert(other->GetClass().GetName() + " " + Text(other, "DeviceID"));
    return related;
  }
};

TEST_F(StorageTest, EachDiskCarriesWhatSysfsTellsAndNullWhereItTellsNothing) {
  std::unique_ptr<TContainer> result = CollectStorage(Fixture("storage"));
  const std::vector<std::vector<std::string>> rows = {
      {"nvme0n1", "/dev/nvme0n1", "ZT NVMe 512GB", "NULL", "ZTN0A1B2C3D4",
       "eui.002538b111b2c3d4", "3B2QGXA7", "512110190592", "512", "512", "false", "false",
       "false", "nvme", "NULL"},
      {"sda", "/dev/sda", "ZT SATA HDD 1TB", "ATA", "ZTS1A2B3C4", "naa.5000c500a1b2c3d4",
       "SC60", "1000204886016", "512", "4096", "true", "false", "false", "sata", "NULL"},
      {"vda", "/dev/vda", "NULL", "NULL", "ZTVIRTIO01", "NULL", "NULL", "137438953472", "512",
       "512", "true", "false", "true", "virtio", "NULL"},
      {"zram0", "/dev/zram0", "NULL", "NULL", "NULL", "NULL", "NULL", "4294967296", "4096",
       "4096", "false", "false", "false", "zram", "NULL"},
      {"loop0", "/dev/loop0", "NULL", "NULL", "NULL", "NULL", "NULL", "104857600", "512", "512",
       "false", "false", "true", "loop", "/var/lib/images/base.img"},
  };
  // The free loop device and the optical drive are no disks.
  ASSERT_EQ(Instances(*result, "KAPLA_DiskDrive").size(), rows.size());
  ExpectInstances(*result, "KAPLA_DiskDrive",
                  {"DeviceID", "Name", "Model", "Manufacturer", "SerialNumber", "WWN",
                   "FirmwareRevision", "Size", "LogicalBlockSize", "PhysicalBlockSize",
                   "Rotational", "Removable", "ReadOnly", "Transport", "BackingFile"},
                  rows);
  for (TCIMInstance* disk : Instances(*result, "KAPLA_DiskDrive"))
    EXPECT_EQ(Text(disk, "CreationClassName"), "KAPLA_DiskDrive");
}

TEST_F(StorageTest, EachPartitionCarriesItsPlaceAndWhatUdevReadOfItsTable) {
  std::unique_ptr<TContainer> result = CollectStorage(Fixture("storage"));
  const std::vector<std::vector<std::string>> rows = {
      {"nvme0n1p1", "/dev/nvme0n1p1", "1", "1048576", "536870912", "EFI system partition", "gpt",
       "c12a7328-f81f-11d2-ba4b-00a0c93ec93b", "4f1d9c4e-2b7a-4c55-9e0f-5d3c2a1b0e9f"},
      {"nvme0n1p2", "/dev/nvme0n1p2", "2", "537919488", "511571394560", "NULL", "NULL", "NULL", "NULL"},
      {"sda1", "/dev/sda1", "1", "1048576", "1000203837440", "NULL", "dos", "0x83", "1a2b3c4d-01"},
  };
  ASSERT_EQ(Instances(*result, "KAPLA_DiskPartition").size(), rows.size());
  ExpectInstances(*result, "KAPLA_DiskPartition",
                  {"DeviceID", "Name", "PartitionNumber", "StartingOffset", "Size",
                   "PartitionName", "PartitionScheme", "PartitionType", "PartitionUUID"},
                  rows);
  for (TCIMInstance* partition : Instances(*result, "KAPLA_DiskPartition"))
    EXPECT_EQ(Text(partition, "ReadOnly"), "false");
}

TEST_F(StorageTest, SizesCarryTheirUnitsAndIdentifiersAreMarkedSensitive) {
  std::unique_ptr<TContainer> result = CollectStorage(Fixture("storage"));
  const char* const sizes[][2] = {{"KAPLA_DiskDrive", "Size"},
                                  {"KAPLA_DiskDrive", "LogicalBlockSize"},
                                  {"KAPLA_DiskDrive", "PhysicalBlockSize"},
                                  {"KAPLA_DiskPartition", "StartingOffset"},
                                  {"KAPLA_DiskPartition", "Size"},
                                  {"KAPLA_FileSystem", "AvailableSpace"}};
  for (const auto& size : sizes)
    EXPECT_EQ(Qualifier(*result, size[0], size[1], "UNITS"), "Bytes") << size[1];
  EXPECT_EQ(Qualifier(*result, "KAPLA_DiskDrive", "PhysicalBlockSize", "ABBREVIATEUNITS"),
            "true");
  const char* const sensitive[][2] = {{"KAPLA_DiskDrive", "SerialNumber"},
                                      {"KAPLA_DiskDrive", "WWN"},
                                      {"KAPLA_DiskPartition", "PartitionUUID"}};
  for (const auto& identifier : sensitive)
    EXPECT_EQ(Qualifier(*result, identifier[0], identifier[1], "SENSITIVE"), "true")
        << identifier[1];
  EXPECT_EQ(Qualifier(*result, "KAPLA_DiskDrive", "Size", "SENSITIVE"), "ABSENT");
  EXPECT_EQ(Qualifier(*result, "KAPLA_FileSystem", "AvailableSpace", "VOLATILE"), "true");
  EXPECT_EQ(Qualifier(*result, "KAPLA_FileSystem", "FileSystemSize", "VOLATILE"), "ABSENT");
}

TEST_F(StorageTest, DisksBelongToTheSystemPartitionsToTheirDiskFileSystemsToWhatHoldsThem) {
  std::unique_ptr<TContainer> result = CollectStorage(Fixture("storage"));
  TCIMInstance* system = Instances(*result, "KAPLA_ComputerSystem").at(0);
  std::set<std::string> disks;
  for (TCIMInstance* disk : system->Associators("KAPLA_SystemDiskDrive", "", "", ""))
    disks.insert(Text(disk, "DeviceID"));
  EXPECT_EQ(disks, (std::set<std::string>{"loop0", "nvme0n1", "sda", "vda", "zram0"}));

  EXPECT_EQ(Instances(*result, "KAPLA_MediaPresent").size(), 3u);
  EXPECT_EQ(Related(Find(*result, "KAPLA_DiskDrive", "DeviceID", "nvme0n1"),
                    "KAPLA_MediaPresent"),
            (std::set<std::string>{"KAPLA_DiskPartition nvme0n1p1",
                                   "KAPLA_DiskPartition nvme0n1p2"}));
  EXPECT_EQ(Related(Find(*result, "KAPLA_DiskDrive", "DeviceID", "sda"), "KAPLA_MediaPresent"),
            (std::set<std::string>{"KAPLA_DiskPartition sda1"}));

  // By a device file, by a link of /dev/disk, on a whole disk; tmpfs on nothing.
  const char* const residences[][2] = {{"/", "KAPLA_DiskPartition nvme0n1p2"},
                                       {"/boot/efi", "KAPLA_DiskPartition nvme0n1p1"},
                                       {"/data", "KAPLA_DiskPartition sda1"},
                                       {"/srv", "KAPLA_DiskDrive vda"}};
  EXPECT_EQ(Instances(*result, "KAPLA_ResidesOnExtent").size(), 4u);
  for (const auto& residence : residences) {
    TCIMInstance* fileSystem = Find(*result, "KAPLA_FileSystem", "Name", residence[0]);
    ASSERT_NE(fileSystem, nullptr);
    EXPECT_EQ(Related(fileSystem, "KAPLA_ResidesOnExtent"),
              std::set<std::string>{residence[1]})
        << residence[0];
  }
  EXPECT_TRUE(Related(Find(*result, "KAPLA_FileSystem", "Name", "/run"), "KAPLA_ResidesOnExtent")
                  .empty());
}

TEST_F(StorageTest, WithoutSlashInProcMountsTheRootFileSystemComesFromItsOwnDevice) {
  std::string root = TempPath("root");
  struct stat held;
  ASSERT_EQ(mkdir(root.c_str(), 0755), 0);
  ASSERT_EQ(stat(root.c_str(), &held), 0);
  if (major(held.st_dev) == 0)
    GTEST_SKIP() << "the temporary directory is on no block device (tmpfs, overlay)";
  // A chroot's view: a /proc/mounts with only what was mounted inside, the disk in sysfs.
  std::string number =
      std::to_string(major(held.st_dev)) + ":" + std::to_string(minor(held.st_dev));
  for (const char* directory : {"/proc", "/sys/block", "/sys/dev/block", "/sys/fs/ext4/zdisk",
                                "/sys/devices/virtual/block/zdisk"})
    std::filesystem::create_directories(root + directory);
  WriteFile("root/proc/mounts", "tmpfs /tmp tmpfs rw 0 0\n");
  WriteFile("root/sys/devices/virtual/block/zdisk/size", "2048\n");
  ASSERT_EQ(symlink("../devices/virtual/block/zdisk", (root + "/sys/block/zdisk").c_str()), 0);
  ASSERT_EQ(symlink("../../devices/virtual/block/zdisk",
                    (root + "/sys/dev/block/" + number).c_str()),
            0);

  std::unique_ptr<TContainer> result = CollectStorage(root);
  struct statvfs sizes;
  ASSERT_EQ(statvfs(root.c_str(), &sizes), 0);
  TCIMInstance* slash = Find(*result, "KAPLA_FileSystem", "Name", "/");
  ASSERT_NE(slash, nullptr);
  EXPECT_EQ(Text(slash, "Root"), "/dev/zdisk");
  EXPECT_EQ(Text(slash, "FileSystemSize"),
            std::to_string(static_cast<unsigned long long>(sizes.f_blocks) * sizes.f_frsize));
  EXPECT_EQ(Text(slash, "ReadOnly"), "false");
  struct statfs kind;
  ASSERT_EQ(statfs(root.c_str(), &kind), 0);
  if (kind.f_type == 0xEF53) { // ext2, ext3 and ext4 alike; /sys/fs/ext4 tells
    EXPECT_EQ(Text(slash, "FileSystemType"), "ext4");
  }
  EXPECT_EQ(Related(slash, "KAPLA_ResidesOnExtent"),
            std::set<std::string>{"KAPLA_DiskDrive zdisk"});
  EXPECT_EQ(Text(Find(*result, "KAPLA_FileSystem", "Name", "/tmp"), "Root"), "tmpfs");
}

TEST_F(StorageTest, OnThisMachineKeysAreUniqueAndSlashResidesOnACollectedDisk) {
  std::unique_ptr<TContainer> result = Collect("", {});
  size_t classes = 0;
  for (TCIMClass* cls : result->GetRootClass()->EnumerateSubClasses(true)) {
    std::vector<TCIMInstance*> instances = cls->EnumerateInstances(false);
    std::set<std::string> paths;
    for (TCIMInstance* instance : instances)
      EXPECT_TRUE(paths.insert(instance->BuildPath().GetPath()).second)
          << "twice: " << instance->BuildPath().GetPath();
    classes += !instances.empty();
  }
  EXPECT_GE(classes, 10u);

  struct stat held;
  ASSERT_EQ(stat("/", &held), 0);
  char target[4096];
  std::string number =
      std::to_string(major(held.st_dev)) + ":" + std::to_string(minor(held.st_dev));
  ssize_t length = readlink(("/sys/dev/block/" + number).c_str(), target, sizeof target - 1);
  if (major(held.st_dev) == 0 || length <= 0)
    GTEST_SKIP() << "/ is on no block device here (overlay, tmpfs or no sysfs)";
  target[length] = '\0';
  std::string device = std::string(target).substr(std::string(target).rfind('/') + 1);
  TCIMInstance* slash = Find(*result, "KAPLA_FileSystem", "Name", "/");
  ASSERT_NE(slash, nullptr);
  std::vector<TCIMInstance*> holders = slash->Associators("KAPLA_ResidesOnExtent", "", "", "");
  ASSERT_EQ(holders.size(), 1u);
  EXPECT_EQ(Text(holders[0], "DeviceID"), device);
  // A partition's disk holds it; a whole disk is its own.
  TCIMInstance* disk = holders[0];
  if (disk->GetClass().GetName() == "KAPLA_DiskPartition") {
    std::vector<TCIMInstance*> disks = disk->Associators("KAPLA_MediaPresent", "", "", "");
    ASSERT_EQ(disks.size(), 1u);
    disk = disks[0];
  }
  EXPECT_EQ(disk->GetClass().GetName(), "KAPLA_DiskDrive");
  std::ifstream sectors(("/sys/block/" + Text(disk, "DeviceID") + "/size").c_str());
  unsigned long long count = 0;
  sectors >> count;
  EXPECT_EQ(Text(disk, "Size"), std::to_string(count * 512));
  EXPECT_EQ(disk->Associators("KAPLA_SystemDiskDrive", "", "", "").size(), 1u);
}
