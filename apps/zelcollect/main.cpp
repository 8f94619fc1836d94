// zelcollect: the collector. main() reads the command line and runs one command; each
// command lives in a file of its own (Commands.h).
#include "Commands.h"
#include "Errors.h"
#include "Options.h"

#include <csignal>
#include <iostream>

using namespace zelcollect;

int main(int argc, char** argv) {
  TOptions options;
  try {
    options = ParseOptions(argc, argv);
  } catch (TUsageError& e) {
    std::cerr << "zelcollect: " << e.what() << "\nTry 'zelcollect --help'.\n";
    return kExitTrouble;
  }
  if (options.fHelp) {
    std::cout << UsageText();
    return kExitOK;
  }
  if (options.fVersion) {
    std::cout << "zelcollect " << ZEL_VERSION << "\n";
    return kExitOK;
  }
  // A closed standard output is a failed write, reported as such, not a silent death.
  signal(SIGPIPE, SIG_IGN);
  return ReportErrors([&] { return FindCommand(options.fCommand)(options); });
}
