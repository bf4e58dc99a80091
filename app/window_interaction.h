// Asks the user through boxes and dialogs of the main window, shows each step in its progress
// panel and lets the window system run in between. An unattended run shows no box: it takes the
// answers that boxes bring along, and keeps their texts.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <QElapsedTimer>
#include <string>
#include <string_view>
#include <vector>

#include "core/interaction.h"
#include "program/command_gate.h"

class QWidget;

namespace vexa {

class WindowInteraction : public Interaction {
 public:
  enum class Attendance { Attended, Unattended };
  WindowInteraction(CommandGate& gate, Attendance attendance)
      : gate_(gate), unattended_(attendance == Attendance::Unattended) {}

  /// The window to show boxes over while none is active, and where the texts of steps and the share
  /// of the work that is done go.
  void Attach(QWidget* parent, std::function<void(std::string_view)> showStatus,
              std::function<void(double)> showShare = {});

  Answer Ask(const Box& box) override;
  std::optional<std::string> ChooseFile(const FileQuestion& question) override;
  std::vector<std::string> ChooseFiles(const FileQuestion& question) override;
  void Status(std::string_view text) override;
  void Share(double done) override;
  bool Yield() override;
  bool Unattended() const override { return unattended_; }

  /// Boxes that an unattended run did not show.
  const std::vector<Box>& Kept() const { return kept_; }

 private:
  QWidget* Over() const;
  std::vector<std::string> ChooseOpenFiles(const FileQuestion& question, bool several);
  std::string ChooseSaveFile(const FileQuestion& question);

  CommandGate& gate_;
  bool unattended_;
  QWidget* parent_ = nullptr;
  std::function<void(std::string_view)> showStatus_{};
  std::function<void(double)> showShare_{};
  QElapsedTimer sinceYield_{};
  std::vector<Box> kept_{};
};

/// "Name (*.A *.B)|*.A *.B|…" as the toolkit's dialogs take it.
std::string DialogFilter(std::string_view filter);

/// A name to save under, with the ending of the filter's chosen entry (from 0) where it has none of
/// the filter's; a filter for all files takes any ending.
std::string WithEnding(const std::string& name, std::string_view filter, std::size_t entry);

}  // namespace vexa
