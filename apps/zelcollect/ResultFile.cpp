// Writing and reading result files.
#include "ResultFile.h"

#include "Errors.h"

#include "TCIMXMLWriter.h"
#include "TContainer.h"
#include "TZELException.h"

#include <filesystem>

namespace zelcollect {

void WriteResultFile(const std::string& path, TContainer& container) {
  try {
    TCIMXMLWriter::WriteFile(path, container, TCIMXMLWriter::eClassesWithInstances);
  } catch (TZELException& e) {
    throw TSetUpError("cannot write " + path + ": " + e.what());
  }
}

void ReadResultFile(const std::string& path, TContainer& container) {
  try {
    container.PopulateContainerFromFile(path);
  } catch (TZELException& e) {
    throw TSetUpError("cannot read " + path + ": " + e.what());
  }
}

long FileSize(const std::string& path) {
  std::error_code error;
  std::uintmax_t size = std::filesystem::file_size(path, error);
  return error ? -1 : static_cast<long>(size);
}

} // namespace zelcollect
