// zelcollect: the collector. main() reads the command line and runs one command; each
// command lives in a file of its own (Commands.h).
#include "Commands.h"
#include "Errors.h"
#include "Options.h"

#include "TZELException.h"

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
  try {
    return FindCommand(options.fCommand)(options);
  } catch (TUsageError& e) {
    std::cerr << "zelcollect: " << e.what() << "\nTry 'zelcollect --help'.\n";
  } catch (TSetUpError& e) {
    std::cerr << "zelcollect: " << e.what() << "\n";
  } catch (TZELException& e) {
    std::cerr << "zelcollect: unexpected failure: " << e.what() << "\n";
  }
  return kExitTrouble;
}
