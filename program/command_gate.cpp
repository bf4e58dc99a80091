#include "program/command_gate.h"

#include <utility>

namespace vexa {

CommandGate::Pass::Pass(Pass&& other) noexcept : gate_(std::exchange(other.gate_, nullptr)) {}

CommandGate::Pass::~Pass() {
  if (gate_ != nullptr) gate_->closed_ = false;
}

std::optional<CommandGate::Pass> CommandGate::Enter() {
  if (closed_) return std::nullopt;
  closed_ = true;
  stopped_ = false;
  return Pass(*this);
}

bool CommandGate::MayClose() {
  if (!closed_) return true;
  closeWaits_ = true;
  stopped_ = true;
  return false;
}

bool CommandGate::TakeDeferredClose() {
  if (closed_) return false;
  return std::exchange(closeWaits_, false);
}

}  // namespace vexa
