// Keyboard polling through a real pseudo-terminal on the standard input of a child.
#include "helpers.h"

#include <pty.h>
#include <termios.h>

class TerminalTest : public ZelTest {
protected:
  void SetUp() override {
    ZelTest::SetUp();
    ASSERT_EQ(::openpty(&fMaster, &fSlave, nullptr, nullptr, nullptr), 0);
    ASSERT_EQ(::tcgetattr(fSlave, &fInitial), 0);
  }
  void TearDown() override {
    ::close(fSlave);
    ::close(fMaster);
    ZelTest::TearDown();
  }
  // Runs body in a child reading from fd (closed for -1), where a read waiting for a line
  // end ends in the alarm.
  static int WithStdin(int fd, std::function<int()> const& body) {
    return InChild([&] {
      if (fd < 0 ? ::close(STDIN_FILENO) != 0 : ::dup2(fd, STDIN_FILENO) != STDIN_FILENO)
        return 100;
      ::alarm(5);
      return body();
    });
  }
  // The terminal's local modes are as before the test.
  void ExpectModesRestored() {
    struct termios now;
    ASSERT_EQ(::tcgetattr(fSlave, &now), 0);
    EXPECT_EQ(now.c_lflag, fInitial.c_lflag);
  }

  int fMaster = -1;
  int fSlave = -1;
  struct termios fInitial;
};

TEST_F(TerminalTest, ReadsOneKeyWithoutALineEndRestoresTheTerminalAndReportsEndOfInput) {
  // No line end follows: only a terminal out of canonical mode offers the key.
  ASSERT_EQ(::write(fMaster, "k", 1), 1);
  EXPECT_EQ(WithStdin(fSlave, [] {
              for (int i = 0; i < 200; ++i, TOSSpecific::USleep(10))
                if (TOSSpecific::IsKeyWaiting())
                  return 1;
              return 0;
            }),
            1);
  ExpectModesRestored();
  EXPECT_EQ(WithStdin(fSlave, TOSSpecific::GetKeyboardChar), 'k');
  ExpectModesRestored();
  EXPECT_EQ(WithStdin(fSlave, TOSSpecific::IsKeyWaiting), 0);

  int null = ::open("/dev/null", O_RDONLY);
  EXPECT_EQ(WithStdin(null, TOSSpecific::GetKeyboardChar), 255); // -1 as an exit code.
  EXPECT_EQ(WithStdin(null, TOSSpecific::IsKeyWaiting), 1) << "end of file reads at once";
  ::close(null);
  EXPECT_EQ(WithStdin(-1, TOSSpecific::IsKeyWaiting), 1) << "a failed poll counts as a key";
}
