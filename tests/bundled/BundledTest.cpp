// The frame of the bundled plugins' tests.
#include "BundledTest.h"

#include "TCIMPropertyDecl.h"
#include "TCIMQualifier.h"

std::string BundledTest::Fixture(const std::string& name) {
  return std::string(ZEL_FIXTURES_DIR) + "/" + name;
}

std::unique_ptr<TContainer> BundledTest::Collect(const std::string& root,
                                                 const std::vector<std::string>& classes) {
  std::string result = TempPath("result.xml");
  std::vector<std::string> arguments{"-f", "xml", "-o", result};
  for (const std::string& cls : classes) {
    arguments.push_back("-c");
    arguments.push_back(cls);
  }
  TRunSetup setup;
  setup.fRoot = root;
  TRun run = Run(arguments, setup);
  fErr = run.fErr;
  EXPECT_EQ(run.fExit, 0) << "zelcollect: " << fErr;
  std::unique_ptr<TContainer> container(new TContainer);
  container->PopulateContainerFromFile(result);
  return container;
}

void BundledTest::ExpectInstances(TContainer& container, const std::string& cls,
                                  const std::vector<std::string>& columns,
                                  const std::vector<std::vector<std::string>>& rows) {
  for (const std::vector<std::string>& row : rows) {
    SCOPED_TRACE(cls + " " + row[0]);
    ASSERT_EQ(row.size(), columns.size());
    TCIMInstance* instance = Find(container, cls, columns[0], row[0]);
    ASSERT_NE(instance, nullptr);
    for (size_t i = 1; i < columns.size(); ++i)
      EXPECT_EQ(Text(instance, columns[i]), row[i]) << columns[i];
  }
}

std::string BundledTest::Qualifier(TContainer& container, const std::string& cls,
                                   const std::string& property, const std::string& qualifier) {
  TCIMClass* found = container.FindClass(cls);
  TCIMPropertyDecl* decl = found ? found->FindPropertyDecl(property) : nullptr;
  TCIMQualifier* held = decl ? decl->FindQualifier(qualifier) : nullptr;
  return held ? held->GetValue().ToString(10) : "ABSENT";
}
