// Writing and reading result files.
#include "ResultFile.h"

#include "Errors.h"

#include "TCIMXMLWriter.h"
#include "TContainer.h"
#include "TZELException.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

#include <zlib.h>

namespace zelcollect {

void WriteResultFile(const std::string& path, TContainer& container) {
  try {
    TCIMXMLWriter::WriteFile(path, container, TCIMXMLWriter::eClassesWithInstances);
  } catch (TZELException& e) {
    throw TSetUpError("cannot write " + path + ": " + e.what());
  }
}

void WriteResultBytes(const std::string& path, const std::string& bytes) {
  bool gzip = path.size() > 3 && path.compare(path.size() - 3, 3, ".gz") == 0;
  bool written;
  if (gzip) {
    gzFile file = gzopen(path.c_str(), "wb");
    written = file && (bytes.empty() || gzwrite(file, bytes.data(),
                                               static_cast<unsigned>(bytes.size())) > 0);
    written = file && gzclose(file) == Z_OK && written;
  } else {
    std::ofstream file(path.c_str(), std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    written = !file.fail();
  }
  if (!written)
    throw TSetUpError("cannot write " + path + ": " + std::strerror(errno ? errno : EIO));
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
