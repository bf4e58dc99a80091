#include "program/hodogram_controls.h"

#include "hodograph/hodogram_plot.h"
#include "program/program.h"

namespace vexa {
namespace {

constexpr double kDegreesPerPixel = 0.4;

Hodogram3DSettings& ViewOf(Program& program) {
  return program.Settings.Hodogram3D;
}

void Turn(Program& program, double azimuth, double tilt) {
  ViewOf(program) = hodograph::Turned(ViewOf(program), azimuth, tilt);
}

template <int kAzimuth, int kTilt>
Changes Step(Program& program, double) {
  const double step = ViewOf(program).Step;
  Turn(program, kAzimuth * step, kTilt * step);
  return {};
}

// By the time that has passed: a slow machine turns as fast, in fewer frames.
Changes Rotate(Program& program, double ms) {
  Turn(program, ViewOf(program).Step * ms / ViewOf(program).RotationMs, 0);
  return {};
}

double Distance(const Program& program) {
  return static_cast<double>(program.Settings.Hodogram3D.Distance);
}

Changes SetDistance(Program& program, double place) {
  ViewOf(program).Distance = static_cast<DistanceUnits>(place);
  return {};
}

double North(const Program& program) {
  return program.Settings.Hodogram3D.NorthPointer ? 1 : 0;
}

Changes SetNorth(Program& program, double on) {
  ViewOf(program).NorthPointer = on != 0;
  return {};
}

constexpr auto kDistances = Words(DistanceUnits{});

constexpr ControlRow kControls[] = {
    {.Name = "cmdLeft", .Text = "Left", .Set = Step<-1, 0>, .Key = "Left"},
    {.Name = "cmdRight", .Text = "Right", .Set = Step<1, 0>, .Key = "Right"},
    {.Name = "cmdUp", .Text = "Up", .Set = Step<0, 1>, .Key = "Up"},
    {.Name = "cmdDown", .Text = "Down", .Set = Step<0, -1>, .Key = "Down"},
    {.Name = "cmdRotate",
     .Text = "rotate",
     .Kind = ControlKind::Motion,
     .Set = Rotate,
     .WhileOn = "STOP-Rotation"},
    {.Name = "cboDistance",
     .Kind = ControlKind::Choice,
     .Get = Distance,
     .Set = SetDistance,
     .Words = kDistances},
    {.Name = "chkNorth",
     .Text = "North",
     .Kind = ControlKind::Switch,
     .Get = North,
     .Set = SetNorth},
};

}  // namespace

std::span<const ControlRow> HodogramControls() {
  return kControls;
}

void TurnHodogram(Program& program, double right, double down) {
  Turn(program, -kDegreesPerPixel * right, kDegreesPerPixel * down);
}

}  // namespace vexa
