// Step mode: lines are shown and held until a button lets them go.
#include <gtest/gtest.h>

#include <string>

#include "KdoSession.h"
#include "kdoint/TIStepLoop.h"
#include "platform/Clock.h"

using kdotest::Session;

TEST(StepLoop, IntoOverRunHaltAndHide) {
  kx::platform::ManualClock clock;
  kx::platform::ScopedClock useIt(&clock);
  Session s;
  TIStepLoop& step = s.interp().rGetStepLoop();
  // The "user" presses one button per held line, from this list.
  std::string buttons;
  int held = 0;
  step.vSetEvents([&] {
    ++held;
    const char b = buttons.empty() ? '-' : buttons[0];
    if (!buttons.empty()) buttons.erase(0, 1);
    if (b == 'i') step.vInto();
    if (b == 'o') step.vOver();
    if (b == 'r') step.vRun();
    if (b == 'h') step.vHalt();
    if (b == 'x') step.vHide();
  });
  s.run("step()\n");
  EXPECT_TRUE(s.interp().bIsStepMode());
  buttons = "ii";
  EXPECT_EQ(s.run("INT a(1)\necho(a)\n"), "1");
  ASSERT_EQ(step.rGetHistory().size(), 2u);
  EXPECT_EQ(step.rGetHistory()[1].command, "echo(a)");
  EXPECT_EQ(step.rGetHistory()[1].status, "0 (Normal Line)");
  // Over a block: its lines (one level deeper) run through; the line after
  // the block is held again.
  buttons = "iiioii";
  held = 0;
  EXPECT_EQ(s.run("{\necho(2)\necho(3)\n}\necho(4)\n"), "234");
  // Held: "{", the two collected lines, "}" (over), then the block's lines
  // one level deeper run through, and "endPlayMacro()" and "echo(4)" are
  // held again.
  EXPECT_EQ(held, 6);
  // Run goes on by itself, one line per 40 ms, until Halt.
  buttons = "r";
  held = 0;
  const auto slept = clock.sleptMs();
  s.run("a+=1\na+=1\na+=1\n");
  EXPECT_EQ(held, 3);
  EXPECT_EQ(clock.sleptMs() - slept, 3 * 40);
  buttons = "h-i";
  held = 0;
  s.run("a+=1\na+=1\n");
  EXPECT_EQ(held, 3);  // halted after the first line: the second waits for a button
  // Hiding ends step mode.
  buttons = "x";
  s.run("echo(a)\necho(a)\n");
  EXPECT_FALSE(s.interp().bIsStepMode());
  EXPECT_GT(clock.sleptMs(), 0);
  const std::string saved = s.path("steps.txt");
  step.vSave(saved.c_str());
  EXPECT_NE(Session::slurp(saved).find("   0   0 echo(a)"), std::string::npos) << Session::slurp(saved);
}
