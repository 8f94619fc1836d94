// libFuzzer writes a crashing input into the current directory unless told otherwise, and a
// fuzzer run by hand from the repository root leaves it there. Without -artifact_prefix= on
// the command line, this points it at artifacts/ of the build tree instead.
#include <cstring>
#include <filesystem>
#include <vector>

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
  static char const kFlag[] = "-artifact_prefix=";
  for (int i = 1; i < *argc; ++i)
    if (std::strncmp((*argv)[i], kFlag, sizeof kFlag - 1) == 0)
      return 0;
  std::error_code ignored;  // libFuzzer names the path it cannot write
  std::filesystem::create_directories(ZEL_FUZZ_ARTIFACT_DIR, ignored);
  static char prefix[] = "-artifact_prefix=" ZEL_FUZZ_ARTIFACT_DIR "/" ZEL_FUZZ_NAME "-";
  static std::vector<char*> args;
  args.assign(*argv, *argv + *argc);
  args.push_back(prefix);
  args.push_back(nullptr);
  *argc = static_cast<int>(args.size()) - 1;
  *argv = args.data();
  return 0;
}
