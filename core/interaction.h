// How the inside asks the user and reports progress without knowing a window: commands, loaders
// and the error reporter speak to this interface; a window, the command line and the tests each
// give their own.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vexa {

enum class BoxIcon { None, Exclamation, Stop, Question, Information };
enum class BoxButtons { Ok, OkCancel, YesNo, YesNoCancel };
enum class Answer { Ok, Cancel, Yes, No };

struct Box {
  std::string Title{};
  std::string Text{};
  BoxIcon Icon = BoxIcon::Exclamation;
  BoxButtons Buttons = BoxButtons::Ok;
  Answer WhenSilent = Answer::Ok;  // what an unattended run takes
};

struct FileQuestion {
  std::string Title{};
  std::string Folder{};
  std::string Filter{};  // "JPEG Files (*.JPG)|*.JPG|BMP Files (*.BMP)|*.BMP"
  bool Saving = false;
  int FilterIndex = 1;  // entry of the filter that is chosen at first, from 1
};

class Interaction {
 public:
  virtual ~Interaction() = default;
  virtual Answer Ask(const Box& box) = 0;
  virtual std::optional<std::string> ChooseFile(const FileQuestion& question) = 0;
  /// Several files of one folder at once; none when the user cancels.
  virtual std::vector<std::string> ChooseFiles(const FileQuestion& question) {
    std::vector<std::string> chosen;
    if (std::optional<std::string> one = ChooseFile(question)) chosen.push_back(std::move(*one));
    return chosen;
  }
  /// Shows a step's text in the progress panel.
  virtual void Status(std::string_view text) = 0;
  /// Shows how much of the work is done, 0 to 1.
  virtual void Share(double) {}
  /// Lets the window system run; false when the user stops the work.
  virtual bool Yield() = 0;
  /// True when nobody is there to answer: texts are kept instead of shown.
  virtual bool Unattended() const { return false; }
};

/// Unattended runs and the command line: takes each box's own answer and keeps the texts.
class SilentInteraction : public Interaction {
 public:
  Answer Ask(const Box& box) override {
    Boxes.push_back(box);
    return box.WhenSilent;
  }
  std::optional<std::string> ChooseFile(const FileQuestion&) override { return std::nullopt; }
  void Status(std::string_view) override {}
  bool Yield() override { return true; }
  bool Unattended() const override { return true; }

  std::vector<Box> Boxes{};
};

/// Progress of a routine made of steps: shows the step's text and lets the window system run.
class Progress {
 public:
  Progress() = default;  // nobody watches, nobody stops
  explicit Progress(Interaction& interaction) : interaction_(&interaction) {}

  /// Begins a step; false when the user has asked to stop.
  ///
  /// done  of all steps those before this one, 0 to 1; empty where nobody knows
  bool Begin(std::string_view status, std::optional<double> done = {}) {
    if (interaction_ == nullptr) return true;
    interaction_->Status(status);
    if (done) interaction_->Share(*done);
    return interaction_->Yield();
  }

 private:
  Interaction* interaction_ = nullptr;
};

}  // namespace vexa
