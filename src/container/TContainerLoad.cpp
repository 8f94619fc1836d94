// Loading a container from a CIM-XML file, plain or gzip: the whole content is read into one
// buffer and parsed in place.
#include "container/TContainerImpl.h"

#include "TCIMXMLParser.h"
#include "TOSSpecific.h"
#include "TZELException.h"
#include "log/ZelLog.h"
#include "xml/ZelGzipPath.h"

#include <boost/shared_array.hpp>
#include <cstdio>
#include <fstream>
#include <new>
#include <zlib.h>

static const unsigned long kMaxContentLength = 104857600;  // 100 MiB
static const unsigned int kGzipMagic = 35615;              // 0x1F 0x8B, little-endian
static const unsigned int kGzipReadBuffer = 1 << 17;       // fewer, larger reads than the default

// One byte more than the content, for the NUL the tokenizer stops at.
static boost::shared_array<char> AllocateBuffer(unsigned long length) {
  char* buffer = new (std::nothrow) char[length + 1];
  if (!buffer)
    throw TZELException(zelStatusOutOfMemory);
  buffer[length] = '\0';
  return boost::shared_array<char>(buffer);
}

// The content length that the gzip trailer announces (ISIZE, modulo 2^32).
static unsigned long ReadGzipLength(const std::string& path) {
  std::ifstream in(path.c_str(), std::ios::in | std::ios::binary);
  if (!in)
    throw TZELException(zelStatusFileSystemError);
  unsigned char bytes[4];
  if (!in.read(reinterpret_cast<char*>(bytes), 2))
    throw TZELException(zelStatusFileSystemError);
  if ((bytes[0] | bytes[1] << 8) != kGzipMagic)
    throw TZELException(zelStatusInvalidGzipFile);
  if (!in.seekg(-4, std::ios::end) || !in.read(reinterpret_cast<char*>(bytes), 4))
    throw TZELException(zelStatusFileSystemError);
  return static_cast<unsigned long>(bytes[0]) | static_cast<unsigned long>(bytes[1]) << 8 |
         static_cast<unsigned long>(bytes[2]) << 16 | static_cast<unsigned long>(bytes[3]) << 24;
}

static boost::shared_array<char> ReadGzipFile(const std::string& path) {
  unsigned long length = ReadGzipLength(path);
  if (length > kMaxContentLength)
    throw TZELException(zelStatusInvalidSpecificationDocument);
  boost::shared_array<char> buffer = AllocateBuffer(length);
  gzFile file = gzopen(path.c_str(), "rb");
  if (!file)
    throw TZELException(zelStatusFileSystemError);
  gzbuffer(file, kGzipReadBuffer);
  // One byte more than announced: a longer stream then reads long, and reading on to the
  // end makes zlib check the trailer's CRC as well.
  int count = gzread(file, buffer.get(), static_cast<unsigned int>(length + 1));
  gzclose(file);
  if (count < 0 || static_cast<unsigned long>(count) != length)
    throw TZELException(zelStatusCorruptGzipFile);
  buffer[length] = '\0';
  return buffer;
}

static boost::shared_array<char> ReadPlainFile(const std::string& path, unsigned long size) {
  if (size > kMaxContentLength)
    throw TZELException(zelStatusInvalidSpecificationDocument);
  boost::shared_array<char> buffer = AllocateBuffer(size);
  FILE* file = std::fopen(path.c_str(), "r");
  if (!file)
    throw TZELException(zelStatusFileSystemError);
  size_t count = std::fread(buffer.get(), 1, size, file);
  bool failed = std::ferror(file) != 0;
  std::fclose(file);
  if (failed)
    throw TZELException(zelStatusFileSystemError);
  buffer[count] = '\0';  // a file that shrank meanwhile ends early
  return buffer;
}

std::vector<TCIMClass*> TContainerImpl::PopulateContainerFromFile(const std::string& path) {
  long size;
  try {
    size = TOSSpecific::GetFileSize(path);
  } catch (TZELException const&) {
    throw TZELException(zelStatusFileSystemError);  // missing, or not a file
  }
  boost::shared_array<char> buffer = ZelIsGzipPath(path)
                                         ? ReadGzipFile(path)
                                         : ReadPlainFile(path, static_cast<unsigned long>(size));
  TCIMXMLParser parser(&fOwner);
  try {
    parser.Parse(buffer.get());
  } catch (TZELException const& e) {
    ZelLog(zelLogError, "Previous error was while parsing file '" + path + "'");
    throw TZELException(e.GetCode());
  }
  return parser.GetClassesCollected();
}
