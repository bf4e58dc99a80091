// Batch processing: a list of stations fetched for one hour by hand, or again and again as soon as
// the data of each chosen hour are due. The window may be closed while its timer waits.
#pragma once

#include <functional>
#include <optional>
#include <QDialog>
#include <QTimer>
#include <string>
#include <vector>

#include "download/batch.h"
#include "download/batch_file.h"
#include "download/net/network.h"
#include "download/template_file.h"
#include "program/program.h"

class QCheckBox;
class QComboBox;
class QDateTimeEdit;
class QFormLayout;
class QLabel;
class QLineEdit;
class QListWidget;
class QPlainTextEdit;
class QPushButton;
class QSpinBox;

namespace vexa {

class BatchWindow : public QDialog {
 public:
  using Clock = std::function<download::Instant()>;

  /// changed  the timer or the beeper went on or off
  BatchWindow(Program& program, std::function<void()> changed, QWidget* parent,
              download::HttpSettings net = {}, Clock clock = {});

  /// Fetches the list for one time; what happens is added to the log.
  download::BatchReport RunFor(const ObservationTime& time);
  void SetTimer(bool on);
  /// Looks at the clock: when an hour has become due since the last look, its batch runs.
  void Tick();
  void SilenceBeeper();

  void reject() override;
  void hideEvent(QHideEvent* event) override;

 private:
  void BuildControls();
  void BuildLists(QFormLayout& form);
  void ReadSources();
  void ReadSettings();
  download::BatchSettings Entered() const;
  void KeepSettings();
  void RunByHand();
  void ShowTimer();
  void Log(const std::string& line);
  std::optional<std::vector<int>> Hours() const;
  download::BatchPlan PlanFor(const ObservationTime& time) const;

  Program& program_;
  std::function<void()> changed_;
  download::HttpSettings net_;
  Clock clock_;
  download::SourceList all_{};
  download::BatchSettings kept_{};          // as the file had it
  download::BatchSettings shown_{};         // as entered when it was read or written last
  std::optional<download::Instant> due_{};  // of the next batch, while the timer is on
  bool isRunning_ = false;
  bool isStopped_ = false;
  QTimer ticks_{};
  QTimer beeps_{};
  QListWidget* sources_ = nullptr;
  QLineEdit* stations_ = nullptr;
  QLineEdit* hours_ = nullptr;
  QSpinBox* delay_ = nullptr;
  QDateTimeEdit* time_ = nullptr;
  QLineEdit* folder_ = nullptr;
  QComboBox* format_ = nullptr;
  QComboBox* failing_ = nullptr;
  QCheckBox* beeper_ = nullptr;
  QPlainTextEdit* log_ = nullptr;
  QLabel* waits_ = nullptr;
  QPushButton* run_ = nullptr;
  QPushButton* timer_ = nullptr;
};

}  // namespace vexa
