#include "program/command_gate.h"

#include <gtest/gtest.h>

namespace vexa {
namespace {

TEST(CommandGate, StopsOnlyWhatRuns) {
  CommandGate gate;
  gate.Stop();
  EXPECT_FALSE(gate.Stopped());
  {
    const auto pass = gate.Enter();
    EXPECT_FALSE(gate.Stopped());
    gate.Stop();
    EXPECT_TRUE(gate.Stopped());
  }
  const auto next = gate.Enter();
  EXPECT_FALSE(gate.Stopped()) << "a stop must not reach the next command";
}

}  // namespace
}  // namespace vexa
