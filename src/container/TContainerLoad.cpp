// Loading a container from a CIM-XML file, plain or gzip: the whole content is read into one
// buffer and parsed in place.
#include "container/TContainerImpl.h"

#include "TCIMXMLParser.h"
#include "TOSSpecific.h"
#include "TZELException.h"
#include "log/ZelLog.h"
#include "xml/ZelGzipPath.h"
#include "xml/ZelReleasedPrefix.h"

#include <algorithm>
#include <boost/shared_array.hpp>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <memory>
#include <new>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>
#include <zlib.h>

static const unsigned long kMaxContentLength = 104857600;  // 100 MiB
static const unsigned int kGzipMagic = 35615;              // 0x1F 0x8B, little-endian
static const unsigned int kGzipReadBuffer = 1 << 17;       // fewer, larger reads than the default

// From this size on, a document's buffer is mapped on its own and its pages are given back
// as the parse passes them, a step at a time: the model it becomes is about twice its size.
static const unsigned long kReleasedFrom = 8 << 20;
static const unsigned long kReleaseStep = 1 << 20;

namespace {
struct TUnmap {
  size_t fLength;
  void operator()(char* buffer) const { munmap(buffer, fLength); }
};
}  // namespace

// One byte more than the content, for the NUL the tokenizer stops at.
static boost::shared_array<char> AllocateBuffer(unsigned long length) {
  if (length >= kReleasedFrom) {
    void* mapped = mmap(nullptr, length + 1, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS,
                        -1, 0);
    if (mapped == MAP_FAILED)
      throw TZELException(zelStatusOutOfMemory);
    char* buffer = static_cast<char*>(mapped);
    buffer[length] = '\0';
    return boost::shared_array<char>(buffer, TUnmap{length + 1});
  }
  char* buffer = new (std::nothrow) char[length + 1];
  if (!buffer)
    throw TZELException(zelStatusOutOfMemory);
  buffer[length] = '\0';
  return boost::shared_array<char>(buffer);
}

namespace {
// The parser of a mapped buffer: from the start of each element, gives back the whole pages
// behind it, except those holding the names of open elements, which the tokenizer compares
// with their end tags. The newlines go into the released prefix first.
class TReleasingParser : public TCIMXMLParser {
public:
  TReleasingParser(TContainer* container, char* buffer)
      : TCIMXMLParser(container), fPrevious(gZelReleasedPrefix), fFrontier(buffer),
        fReleased{buffer, buffer, 0} {
    gZelReleasedPrefix = &fReleased;
  }
  ~TReleasingParser() override { gZelReleasedPrefix = fPrevious; }

  void StartElement(const char* name, TAttributeMap& attributes) override {
    if (name - fFrontier >= static_cast<long>(kReleaseStep))
      Release(name);
    fOpen.push_back(TOpenName{name, std::strlen(name)});
    TCIMXMLParser::StartElement(name, attributes);
  }
  void EndElement(const char* name) override {
    if (!fOpen.empty())
      fOpen.pop_back();
    TCIMXMLParser::EndElement(name);
  }

private:
  struct TOpenName {
    const char* fName;
    size_t fLength;
  };

  static char* PageDown(const char* at, uintptr_t page) {
    return reinterpret_cast<char*>(reinterpret_cast<uintptr_t>(at) & ~(page - 1));
  }
  static void GiveBack(char* from, char* to) {
    if (to > from)
      madvise(from, to - from, MADV_DONTNEED);
  }

  void Release(const char* name) {
    static const uintptr_t page = sysconf(_SC_PAGESIZE);
    char* limit = PageDown(name, page);
    if (limit <= fFrontier)
      return;
    fReleased.fNewlines += static_cast<unsigned int>(std::count(fFrontier, limit, '\n'));
    fReleased.fEnd = limit;
    char* from = fFrontier;
    for (const TOpenName& open : fOpen) {  // in ascending order
      if (open.fName >= limit)
        break;
      GiveBack(from, std::min(limit, PageDown(open.fName, page)));
      from = std::max(from, PageDown(open.fName + open.fLength + page, page));
    }
    GiveBack(from, limit);
    fFrontier = limit;
  }

  const TZelReleasedPrefix* fPrevious;
  char* fFrontier;  // pages before it were looked at already
  TZelReleasedPrefix fReleased;
  std::vector<TOpenName> fOpen;
};
}  // namespace

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

static boost::shared_array<char> ReadGzipFile(const std::string& path, unsigned long& length) {
  length = ReadGzipLength(path);
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
  unsigned long length = static_cast<unsigned long>(size);
  boost::shared_array<char> buffer =
      ZelIsGzipPath(path) ? ReadGzipFile(path, length) : ReadPlainFile(path, length);
  std::unique_ptr<TCIMXMLParser> parser(length >= kReleasedFrom
                                            ? new TReleasingParser(&fOwner, buffer.get())
                                            : new TCIMXMLParser(&fOwner));
  try {
    parser->Parse(buffer.get());
  } catch (TZELException const& e) {
    ZelLog(zelLogError, "Previous error was while parsing file '" + path + "'");
    throw TZELException(e.GetCode());
  }
  return parser->GetClassesCollected();
}
