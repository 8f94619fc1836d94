// The bundled plugins over an empty root: every file missing, so no parts and every property
// of the system NULL, and nothing fails.
#include "BundledTest.h"

TEST_F(BundledTest, AnEmptyRootGivesNullsAndNoFailure) {
  std::unique_ptr<TContainer> result = Collect(TempPath("empty"), {});
  EXPECT_EQ(fErr, "");
  std::vector<TCIMInstance*> systems = Instances(*result, "KAPLA_ComputerSystem");
  ASSERT_EQ(systems.size(), 1u);
  EXPECT_EQ(Text(systems[0], "SerialNumber"), "NULL");
  for (const char* cls : {"KAPLA_Processor", "KAPLA_PhysicalMemory", "KAPLA_SystemPhysicalMemory",
                          "KAPLA_NumericSensor", "KAPLA_Account", "KAPLA_KernelModule",
                          "KAPLA_Service", "KAPLA_IPProtocolEndpoint", "KAPLA_SoftwarePackage"})
    EXPECT_TRUE(Instances(*result, cls).empty()) << cls;
}
