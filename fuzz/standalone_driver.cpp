// Replays fuzz inputs without libFuzzer: every file named on the command line, or found in a
// directory named there, goes once through LLVMFuzzerTestOneInput.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

static void Replay(std::filesystem::path const& path) {
  std::ifstream in(path, std::ios::binary);
  std::vector<char> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
}

int main(int argc, char** argv) {
  size_t count = 0;
  for (int i = 1; i < argc; ++i) {
    std::filesystem::path arg = argv[i];
    if (!std::filesystem::is_directory(arg)) {
      Replay(arg);
      ++count;
      continue;
    }
    for (auto const& entry : std::filesystem::directory_iterator(arg))
      if (entry.is_regular_file()) {
        Replay(entry.path());
        ++count;
      }
  }
  std::printf("replayed %zu inputs\n", count);
  return count == 0;  // An empty or missing corpus is a failure, not a pass.
}
