// TOSSpecific: keyboard polling on standard input with the terminal's local modes off.
#include "TOSSpecific.h"

#include <cstdio>

#include <sys/select.h>
#include <termios.h>
#include <unistd.h>

namespace {

// Switches every local mode of standard input off (no line editing, echo or signal keys)
// and puts the saved settings back on every exit path. Standard input that is not a
// terminal is left alone.
class ZelRawTerminal {
public:
  ZelRawTerminal() : fSaved(::tcgetattr(STDIN_FILENO, &fSettings) == 0) {
    if (fSaved) {
      struct termios raw = fSettings;
      raw.c_lflag = 0;
      ::tcsetattr(STDIN_FILENO, TCSANOW, &raw);
    }
  }
  ~ZelRawTerminal() {
    if (fSaved)
      ::tcsetattr(STDIN_FILENO, TCSANOW, &fSettings);
  }
  ZelRawTerminal(ZelRawTerminal const&) = delete;
  ZelRawTerminal& operator=(ZelRawTerminal const&) = delete;

private:
  struct termios fSettings;
  bool fSaved;
};

} // namespace

bool TOSSpecific::IsKeyWaiting() {
  ZelRawTerminal raw;
  fd_set readable;
  FD_ZERO(&readable);
  FD_SET(STDIN_FILENO, &readable);
  struct timeval noWait = {0, 0};
  int ready = ::select(STDIN_FILENO + 1, &readable, 0, 0, &noWait);
  // A failed poll counts as a key waiting.
  return ready != 0;
}

int TOSSpecific::GetKeyboardChar() {
  ZelRawTerminal raw;
  return std::getc(stdin);
}
