// The frame of the bundled plugins' tests: zelcollect run as a child over a fixture root
// (ZEL_SYSROOT) or this machine, its result file read back into a container.
#ifndef BUNDLEDTEST_H
#define BUNDLEDTEST_H

#include "ZelCollectRun.h"

#include <memory>

class BundledTest : public ZelCollectTest {
protected:
  /// The fixture tree of that name under tests/bundled/fixtures.
  static std::string Fixture(const std::string& name);

  /// Runs zelcollect -c CLASS... over root ("" for this machine) and loads its result. The
  /// run must succeed (exit 0); its standard error is kept in fErr.
  std::unique_ptr<TContainer> Collect(const std::string& root,
                                      const std::vector<std::string>& classes);

  /// A table of instances of cls: columns name the properties, the first the one that finds
  /// the row's instance; each further cell is that property's Text.
  static void ExpectInstances(TContainer& container, const std::string& cls,
                              const std::vector<std::string>& columns,
                              const std::vector<std::vector<std::string>>& rows);

  /// A qualifier of a property's declaration in the result, as text; "ABSENT" when the
  /// class, the property or the qualifier is not there.
  static std::string Qualifier(TContainer& container, const std::string& cls,
                               const std::string& property, const std::string& qualifier);

  std::string fErr;
};

#endif
