// The messages of the failures that end a command.
#include "Errors.h"

#include "TZELException.h"

#include <iostream>

namespace zelcollect {

int ReportErrors(const std::function<int()>& body) {
  try {
    return body();
  } catch (TUsageError& e) {
    std::cerr << "zelcollect: " << e.what() << "\nTry 'zelcollect --help'.\n";
  } catch (TSetUpError& e) {
    std::cerr << "zelcollect: " << e.what() << "\n";
  } catch (TZELException& e) {
    std::cerr << "zelcollect: unexpected failure: " << e.what() << "\n";
  }
  return kExitTrouble;
}

} // namespace zelcollect
