// The table of zelcollect's commands.
#include "Commands.h"

namespace zelcollect {

TCommand FindCommand(const std::string& name) {
  static const struct {
    const char* fName;
    TCommand fRun;
  } kCommands[] = {
      {"collect", RunCollect},
      {"upload", RunUpload},
      {"diff", RunDiff},
      {"show", RunShow},
  };
  for (const auto& command : kCommands)
    if (name == command.fName)
      return command.fRun;
  return nullptr;
}

} // namespace zelcollect
