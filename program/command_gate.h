// Keeps commands from running over one another. A command that draws lets the window system run
// in between, so that the window can repaint and the user can stop; while it does, the gate is
// closed: a second command is refused, a wish to close the window waits.
#pragma once

#include <optional>

namespace vexa {

class CommandGate {
 public:
  /// Holds the gate closed while it lives.
  class Pass {
   public:
    Pass(Pass&& other) noexcept;
    Pass& operator=(Pass&&) = delete;
    Pass(const Pass&) = delete;
    Pass& operator=(const Pass&) = delete;
    ~Pass();

   private:
    friend class CommandGate;
    explicit Pass(CommandGate& gate) : gate_(&gate) {}
    CommandGate* gate_;
  };

  /// Closes the gate for a command and forgets an earlier wish to stop; empty while another
  /// command runs.
  std::optional<Pass> Enter();
  bool IsOpen() const { return !closed_; }

  /// The user stops the running command; without one nothing happens.
  void Stop() { stopped_ = closed_; }
  bool Stopped() const { return stopped_; }

  /// The user closes the window. True when that may happen at once; else it is remembered, and
  /// the running command is stopped.
  bool MayClose();
  /// True once, after the gate has opened, when a close had to wait.
  bool TakeDeferredClose();

 private:
  bool closed_ = false;
  bool stopped_ = false;
  bool closeWaits_ = false;
};

}  // namespace vexa
