// The forms of the mountain-wave display. None of them waits for an answer: what is entered is
// drawn at once, and a form follows the sounding while it is open.
#pragma once

#include <array>
#include <functional>
#include <QDialog>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "app/text_window.h"
#include "app/window_table.h"
#include "mountainwave/mountain.h"
#include "mountainwave/wave_settings.h"
#include "program/program.h"

class QCheckBox;
class QLabel;
class QLineEdit;
class QRadioButton;

namespace vexa {

/// A window beside the wave display that shows the state of the program.
class WaveFollower {
 public:
  virtual ~WaveFollower() = default;
  virtual void Follow() = 0;
};

/// Has the open ones below a window follow.
void FollowWaveForms(const QWidget& window);

/// The entry of one or two mountains.
class Mountains : public QDialog, public WaveFollower {
 public:
  Mountains(Program& program, std::function<void(Changes)> show,
            std::function<void(std::string_view)> open, QWidget* parent);

  void Follow() override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  struct Field {
    const char* Name;
    double mountainwave::MountainEntry::*Value;
    enum { Height, HalfWidth, Axis, Distance } Kind;
    bool OfSecond;
    const char* Caption;
  };
  static const std::array<Field, 7> kFields;

  void BuildFields();
  void BuildButtons();
  mountainwave::MountainEntry Typed() const;
  bool IsGood(const mountainwave::MountainEntry& entry) const;
  void Try();
  void Left(std::size_t field);
  void Run();
  void Keep();
  void ShowTexts();
  void ChooseCount();
  void ShowPrompt(std::size_t field);

  Program& program_;
  std::function<void(Changes)> show_;
  std::function<void(std::string_view)> open_;
  std::array<QLineEdit*, 7> edits_{};
  std::array<QLabel*, 7> captions_{};
  std::array<QString, 7> shown_{};         // the texts of the mountains in force
  mountainwave::MountainEntry inForce_{};  // they themselves
  QRadioButton* one_ = nullptr;
  QRadioButton* two_ = nullptr;
  QCheckBox* default_ = nullptr;
  QLabel* prompt_ = nullptr;
  bool isFollowing_ = false;
};

/// Options of the wave diagram, those whose rows name this form.
class WaveOptionForm : public QDialog, public WaveFollower {
 public:
  WaveOptionForm(Program& program, std::string_view form, const QString& title,
                 std::function<void(Changes)> show, QWidget* parent);
  void Follow() override;

 protected:
  QWidget* Below(QWidget* widget);

  Program& program_;
  std::function<void(Changes)> show_;

 private:
  using OptionRow = SettingRow<mountainwave::WaveOptions>;
  struct Shown {
    const OptionRow* Row;
    std::function<void(const std::string&)> Show;
    QWidget* Widget;
  };
  void Enter(const OptionRow& row, const std::string& text);

  std::vector<Shown> controls_{};
};

/// Drawing, decay and what is marked elsewhere.
class DiagramM : public WaveOptionForm {
 public:
  DiagramM(Program& program, std::function<void(Changes)> show, QWidget* parent);
  void Follow() override;

 private:
  QLabel* state_ = nullptr;
  QCheckBox* rotors_ = nullptr;
};

/// Units of heights, distances and velocities.
class MountainUnits : public WaveOptionForm {
 public:
  MountainUnits(Program& program, std::function<void(Changes)> show, QWidget* parent);
};

/// The listing of the waves.
class WaveListing : public TextWindow, public WaveFollower {
 public:
  WaveListing(Program& program, QWidget* parent);
  void Follow() override;

 private:
  Program& program_;
};

std::span<const WindowRow> WaveWindows();

}  // namespace vexa
