// Keyboard polling through a real pseudo-terminal on standard input.
#include "helpers.h"

#include <pty.h>
#include <signal.h>
#include <sys/wait.h>
#include <termios.h>

class TerminalTest : public ZelTest {
protected:
  void SetUp() override {
    ZelTest::SetUp();
    ASSERT_EQ(::openpty(&fMaster, &fSlave, nullptr, nullptr, nullptr), 0);
    ASSERT_EQ(::tcgetattr(fSlave, &fInitial), 0);
    ASSERT_NE(fInitial.c_lflag & ICANON, 0u) << "a new terminal starts in canonical mode";
  }
  void TearDown() override {
    ::close(fSlave);
    ::close(fMaster);
    ZelTest::TearDown();
  }
  // The local modes of standard input equal those of the terminal before the test.
  void ExpectModesRestored() {
    struct termios now;
    ASSERT_EQ(::tcgetattr(STDIN_FILENO, &now), 0);
    EXPECT_EQ(now.c_lflag, fInitial.c_lflag);
  }

  int fMaster = -1;
  int fSlave = -1;
  struct termios fInitial;
};

TEST_F(TerminalTest, PollsAndReadsOneKeyThenRestoresTheTerminal) {
  ScopedStdin terminal(fSlave);
  EXPECT_FALSE(TOSSpecific::IsKeyWaiting());
  ExpectModesRestored();

  // No line end follows: only a terminal out of canonical mode offers the key.
  ASSERT_EQ(::write(fMaster, "k", 1), 1);
  bool waiting = false;
  for (int i = 0; i < 200 && !waiting; ++i) {
    waiting = TOSSpecific::IsKeyWaiting();
    if (!waiting)
      TOSSpecific::USleep(10);
  }
  EXPECT_TRUE(waiting);
  ExpectModesRestored();
  EXPECT_EQ(TOSSpecific::GetKeyboardChar(), 'k');
  ExpectModesRestored();
  EXPECT_FALSE(TOSSpecific::IsKeyWaiting());
}

TEST_F(TerminalTest, GetKeyboardCharDoesNotWaitForALineEnd) {
  ScopedStdin terminal(fSlave);
  // In a child, so that a read left waiting for a line end ends in the alarm, not a hang.
  pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    ::alarm(5);
    ::_exit(TOSSpecific::GetKeyboardChar());
  }
  ASSERT_EQ(::write(fMaster, "z", 1), 1);
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFEXITED(status)) << "the read waited for a line end";
  EXPECT_EQ(WEXITSTATUS(status), 'z');
  ExpectModesRestored();
}

TEST_F(TerminalTest, EndOfInputAndFailedPolls) {
  {
    int null = ::open("/dev/null", O_RDONLY);
    ScopedStdin empty(null);
    ::close(null);
    EXPECT_EQ(TOSSpecific::GetKeyboardChar(), -1);
    EXPECT_TRUE(TOSSpecific::IsKeyWaiting()) << "end of file reads without waiting";
  }
  ScopedStdin closed(-1);
  EXPECT_TRUE(TOSSpecific::IsKeyWaiting()) << "a failed poll counts as a key";
}
