// The addresses, kernel modules, services, accounts and packages of the bundled
// plugins, over the fixture root tests/bundled/fixtures/software and over this
// machine.
#include "BundledTest.h"

#include "TCIMPropertyDecl.h"
#include "TCIMQualifier.h"
#include "TCIMReference.h"
#include "TCIMValue.h"

#include <sys/stat.h>

#include <chrono>
#include <set>

class SystemSoftwareTest : public BundledTest {
protected:
  std::unique_ptr<TContainer> CollectFixture(const std::vector<std::string>& classes) {
    return Collect(Fixture("software"), classes);
  }

  static std::set<std::string> Paths(TContainer& container, const std::string& cls) {
    std::set<std::string> paths;
    for (TCIMInstance* instance : Instances(container, cls))
      paths.insert(instance->BuildPath().GetPath());
    return paths;
  }
};

TEST_F(SystemSoftwareTest, AccountsComeFromPasswdWithTheirGroupsAndNoPasswordData) {
  std::unique_ptr<TContainer> result =
      CollectFixture({"KAPLA_ComputerSystem", "KAPLA_Account", "KAPLA_AccountOnSystem"});
  ExpectInstances(*result, "KAPLA_Account",
                  {"Name", "UserID", "GroupID", "PrimaryGroup", "Groups", "HomeDirectory",
                   "LoginShell", "SystemAccount"},
                  {
      {"root", "0", "0", "root", "{ root }", "/root", "/bin/bash", "true"},
      {"daemon", "1", "1", "daemon", "{ daemon }", "/usr/sbin", "/usr/sbin/nologin", "true"},
      {"alice", "1000", "1000", "alice", "{ alice, sudo, users }", "/home/alice", "/bin/zsh",
       "false"},
      {"nobody", "65534", "65534", "nogroup", "{ nogroup }", "/nonexistent", "/usr/sbin/nologin",
       "true"},
  });
  ASSERT_EQ(Instances(*result, "KAPLA_Account").size(), 4u) << "the NIS line is no account";
  EXPECT_EQ(Qualifier(*result, "KAPLA_Account", "Name", "SENSITIVE"), "true");
  EXPECT_EQ(Qualifier(*result, "KAPLA_Account", "HomeDirectory", "SENSITIVE"), "true");
  EXPECT_EQ(Instances(*result, "KAPLA_AccountOnSystem").size(), 4u);
  std::string text = ReadFile(TempPath("result.xml"));
  EXPECT_EQ(text.find("NeverShownHashValue"), std::string::npos);
  EXPECT_EQ(text.find("pepper"), std::string::npos);
  EXPECT_EQ(text.find("Alice,,,"), std::string::npos) << "the comment field is left out";
}

TEST_F(SystemSoftwareTest, KernelModulesComeFromProcModulesWithTheirVersions) {
  std::unique_ptr<TContainer> result = CollectFixture(
      {"KAPLA_ComputerSystem", "KAPLA_KernelModule", "KAPLA_InstalledSoftwareElement"});
  ASSERT_EQ(Instances(*result, "KAPLA_KernelModule").size(), 3u);
  ExpectInstances(*result, "KAPLA_KernelModule",
                  {"Name", "Size", "UseCount", "Dependents", "State", "Version", "SourceVersion"},
                  {{"nf_tables", "290816", "3", "{ nft_ct, nft_chain_nat }", "Live", "NULL", "NULL"},
                   {"e1000e", "282624", "0", "{  }", "Live", "3.2.6-k", "4E0D0E7F2A5C8D7E1B1C3A9"}});
  EXPECT_EQ(Qualifier(*result, "KAPLA_KernelModule", "Size", "UNITS"), "Bytes");
  std::vector<TCIMInstance*> links = Instances(*result, "KAPLA_InstalledSoftwareElement");
  ASSERT_EQ(links.size(), 3u);
  EXPECT_EQ(Text(links[0], "Software"), "KAPLA_KernelModule.Name=\"e1000e\"");
}

TEST_F(SystemSoftwareTest, PackagesAreKeyedByNameAndArchitecture) {
  std::unique_ptr<TContainer> result = CollectFixture({"KAPLA_SoftwarePackage"});
  std::set<std::string> paths = Paths(*result, "KAPLA_SoftwarePackage");
  EXPECT_EQ(paths,
            (std::set<std::string>{"KAPLA_SoftwarePackage.Architecture=\"amd64\",Name=\"libc6\"",
                                   "KAPLA_SoftwarePackage.Architecture=\"i386\",Name=\"libc6\""}));
  TCIMInstance* i386 = Find(*result, "KAPLA_SoftwarePackage", "Architecture", "i386");
  ASSERT_NE(i386, nullptr);
  EXPECT_EQ(Text(i386, "Version"), "2.36-9+deb12u4");
  EXPECT_EQ(Text(i386, "InstalledSize"), "12109");
  EXPECT_EQ(Text(i386, "Manufacturer"), "GNU Libc Maintainers <debian-glibc@lists.debian.org>");
  EXPECT_EQ(Qualifier(*result, "KAPLA_SoftwarePackage", "Manufacturer", "SENSITIVE"), "true");
}

TEST_F(SystemSoftwareTest, ServicesComeFromUnitFilesWithoutTheManagerUnderARoot) {
  std::unique_ptr<TContainer> result =
      CollectFixture({"KAPLA_ComputerSystem", "KAPLA_Service", "KAPLA_HostedService"});
  // Only the running manager knows the active state and the PID, and it is not asked about
  // another root.
  ExpectInstances(*result, "KAPLA_Service",
                  {"Name", "Description", "UnitFileState", "ActiveState", "MainPID"},
                  {
      {"ssh.service", "OpenBSD Secure Shell server", "enabled", "NULL", "NULL"},
      {"rsync.service", "fast remote file copy program daemon", "disabled", "NULL", "NULL"},
      {"cron.service", "Regular background program processing daemon", "static", "NULL", "NULL"},
      {"apt-daily.service", "NULL", "masked", "NULL", "NULL"},
      {"session-setup.service", "Set up this boot's session", "static", "NULL", "NULL"},
  });
  // Neither the template getty@.service nor the alias sshd.service is a
  // service.
  ASSERT_EQ(Instances(*result, "KAPLA_Service").size(), 5u);
  EXPECT_EQ(Qualifier(*result, "KAPLA_Service", "MainPID", "VOLATILE"), "true");
  EXPECT_EQ(Instances(*result, "KAPLA_HostedService").size(), 5u);
}

TEST_F(SystemSoftwareTest, UnderARootOnlyTheIPv6AddressesOfIfInet6AreReported) {
  std::unique_ptr<TContainer> result = CollectFixture(
      {"KAPLA_NetworkAdapter", "KAPLA_IPProtocolEndpoint", "KAPLA_DeviceSAPImplementation"});
  ExpectInstances(*result, "KAPLA_IPProtocolEndpoint",
                  {"Name", "Address", "PrefixLength", "Scope", "ProtocolIFType"},
                  {
      {"lo/::1/128", "::1", "128", "host", "4097"},
      {"eth0/2001:db8::42/64", "2001:db8::42", "64", "global", "4097"},
      {"eth0/fe80::211:22ff:fe33:4455/64", "fe80::211:22ff:fe33:4455", "64", "link", "4097"},
  });
  ASSERT_EQ(Instances(*result, "KAPLA_IPProtocolEndpoint").size(), 3u)
      << "no IPv4 address of this machine under another root";
  // Each address hangs on its adapter; the path nests the escaped paths of both ends.
  EXPECT_EQ(Instances(*result, "KAPLA_DeviceSAPImplementation").size(), 3u);
  EXPECT_EQ(Paths(*result, "KAPLA_DeviceSAPImplementation")
                .count("KAPLA_DeviceSAPImplementation.Antecedent=\"KAPLA_NetworkAdapter."
                       "CreationClassName=\"KAPLA_NetworkAdapter\",DeviceID=\"lo\"\",Dependent=\""
                       "KAPLA_IPProtocolEndpoint.CreationClassName=\"KAPLA_IPProtocolEndpoint\","
                       "Name=\"lo/::1/128\"\""),
            1u);
  for (TCIMInstance* endpoint : Instances(*result, "KAPLA_IPProtocolEndpoint")) {
    std::vector<TCIMInstance*> adapters =
        endpoint->Associators("KAPLA_DeviceSAPImplementation", "", "", "");
    ASSERT_EQ(adapters.size(), 1u) << Text(endpoint, "Name");
    EXPECT_EQ(Text(endpoint, "Name").rfind(Text(adapters[0], "DeviceID") + "/", 0), 0u);
  }
  EXPECT_EQ(Qualifier(*result, "KAPLA_IPProtocolEndpoint", "Address", "SENSITIVE"), "true");
  EXPECT_EQ(Qualifier(*result, "KAPLA_IPProtocolEndpoint", "Name", "SENSITIVE"), "true");
  EXPECT_EQ(Qualifier(*result, "KAPLA_NetworkAdapter", "PermanentAddress", "SENSITIVE"), "true");
}

// This machine's addresses are those ip shows, its accounts those of /etc/passwd, its
// modules and services those it runs.
TEST_F(SystemSoftwareTest, ThisMachineIsDescribedAsItsFilesAndTheKernelSay) {
  std::unique_ptr<TContainer> result = Collect(
      "", {"KAPLA_IPProtocolEndpoint", "KAPLA_Account", "KAPLA_KernelModule", "KAPLA_Service"});
  auto names = [&](const char* cls) {
    std::set<std::string> found;
    for (TCIMInstance* instance : Instances(*result, cls))
      found.insert(Text(instance, "Name"));
    return found;
  };
  auto lines = [](const std::string& command) {
    std::vector<std::string> found = Lines(Shell(command).second);
    return std::set<std::string>(found.begin(), found.end());
  };
  EXPECT_EQ(names("KAPLA_IPProtocolEndpoint"), lines("ip -o addr show | awk '{print $2 \"/\" $4}'"));
  std::set<std::string> accounts;
  for (TCIMInstance* account : Instances(*result, "KAPLA_Account"))
    accounts.insert(Text(account, "Name") + " " + Text(account, "UserID") + " " +
                    Text(account, "HomeDirectory"));
  EXPECT_EQ(accounts, lines("awk -F: '/^[^#+-]/ {print $1 \" \" $3 \" \" $6}' /etc/passwd"));
  EXPECT_EQ(Text(Find(*result, "KAPLA_Account", "Name", "root"), "SystemAccount"), "true");
  EXPECT_EQ(names("KAPLA_KernelModule"), lines("cut -d' ' -f1 /proc/modules 2>/dev/null"));
  struct stat info;
  std::vector<TCIMInstance*> services = Instances(*result, "KAPLA_Service");
  if (stat("/run/systemd/system", &info) != 0) {
    EXPECT_TRUE(services.empty()) << "no systemd here, so no services";
    GTEST_SKIP() << "systemd does not run on this machine: its services are "
                    "not compared";
  }
  ASSERT_FALSE(services.empty());
  int active = 0;
  for (TCIMInstance* service : services) {
    EXPECT_NE(Text(service, "LoadState"), "NULL") << Text(service, "Name");
    active += Text(service, "ActiveState") == "active";
  }
  EXPECT_GT(active, 0) << "systemd runs, so some service is active";
}

// The running manager's view, through systemctl, in a private mount namespace where a
// stand-in systemctl answers (and, in the second run, hangs: it is killed at its deadline).
TEST_F(SystemSoftwareTest, TheRunningManagersStatesComeFromSystemctlWithinItsDeadline) {
  struct stat info;
  if (stat("/usr/bin/systemctl", &info) != 0)
    GTEST_SKIP() << "no /usr/bin/systemctl to stand in for: the manager's path is not tested";
  // It answers for zz-web.service, running as 4242, and zz-gone.service, not found.
  std::string fake = WriteFile("systemctl", ReadFile(ZEL_TEST_DATA_DIR "/systemctl"));
  ASSERT_EQ(chmod(fake.c_str(), 0755), 0);
  for (bool hang : {false, true}) {
    SCOPED_TRACE(hang ? "hanging systemctl" : "answering systemctl");
    // unshare(1) runs the collection with /run/systemd/system present and the stand-in over
    // /usr/bin/systemctl; nothing is left mounted outside.
    std::string script = WriteFile("inside.sh", "mount --make-rprivate / && "
                                                "mount -t tmpfs tmpfs /run && "
                                                "mkdir -p /run/systemd/system && "
                                                "mount --bind \"$1\" /usr/bin/systemctl && "
                                                "shift && exec \"$@\"\n");
    std::string out = TempPath("out.xml"), err = TempPath("err");
    std::string command = std::string(hang ? "ZEL_HANG=1 " : "") + "unshare --mount sh '" +
                          script + "' '" + fake + "' " ZEL_COLLECT
                          " -c KAPLA_Service -n -f xml > '" + out + "' 2> '" + err + "'";
    if (system("unshare --mount true 2>/dev/null") != 0)
      GTEST_SKIP() << "no private mount namespace here (unshare --mount): not tested";
    auto start = std::chrono::steady_clock::now();
    int status = system(command.c_str());
    double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    ASSERT_EQ(status, 0) << ReadFile(err);
    TContainer result;
    result.PopulateContainerFromFile(out);
    std::vector<TCIMInstance*> services = Instances(result, "KAPLA_Service");
    if (hang) {
      EXPECT_GE(seconds, 2.0);
      EXPECT_LT(seconds, 10.0) << "the stand-in was not killed at its deadline";
      for (TCIMInstance* service : services)
        EXPECT_NE(Text(service, "Name"), "zz-web.service") << "a killed run's output was used";
      continue;
    }
    TCIMInstance* web = Find(result, "KAPLA_Service", "Name", "zz-web.service");
    ASSERT_NE(web, nullptr);
    EXPECT_EQ(Text(web, "Description"), "Web");
    EXPECT_EQ(Text(web, "ActiveState"), "active");
    EXPECT_EQ(Text(web, "SubState"), "running");
    EXPECT_EQ(Text(web, "MainPID"), "4242");
    TCIMInstance* gone = Find(result, "KAPLA_Service", "Name", "zz-gone.service");
    ASSERT_NE(gone, nullptr);
    EXPECT_EQ(Text(gone, "LoadState"), "not-found");
  }
}
