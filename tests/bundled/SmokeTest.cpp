// The bundled plugins over an empty root: every file missing, every property NULL, and
// nothing fails.
#include "BundledTest.h"

TEST_F(BundledTest, AnEmptyRootGivesNullsAndNoFailure) {
  std::unique_ptr<TContainer> result = Collect(TempPath("empty"), {});
  std::vector<TCIMInstance*> systems = Instances(*result, "KAPLA_ComputerSystem");
  ASSERT_EQ(systems.size(), 1u);
  EXPECT_EQ(Text(systems[0], "SerialNumber"), "NULL");
  EXPECT_TRUE(Instances(*result, "KAPLA_Processor").empty());
  EXPECT_TRUE(Instances(*result, "KAPLA_SoftwarePackage").empty());
}
