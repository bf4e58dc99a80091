#include "program/command_gate.h"

#include <gtest/gtest.h>

#include <utility>

namespace vexa {
namespace {

TEST(CommandGate, LetsOneCommandInAtATime) {
  CommandGate gate;
  {
    auto first = gate.Enter();
    ASSERT_TRUE(first);
    EXPECT_FALSE(gate.Enter());
    // Handing the pass on keeps the gate closed.
    const CommandGate::Pass handed = std::move(*first);
    first.reset();
    EXPECT_FALSE(gate.IsOpen());
  }
  EXPECT_TRUE(gate.IsOpen());
  EXPECT_TRUE(gate.Enter());
}

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

TEST(CommandGate, ClosingWaitsForTheCommand) {
  CommandGate gate;
  EXPECT_TRUE(gate.MayClose());
  {
    const auto pass = gate.Enter();
    EXPECT_FALSE(gate.MayClose());
    EXPECT_TRUE(gate.Stopped());
    EXPECT_FALSE(gate.TakeDeferredClose());
  }
  EXPECT_TRUE(gate.TakeDeferredClose());
  EXPECT_FALSE(gate.TakeDeferredClose());
}

}  // namespace
}  // namespace vexa
