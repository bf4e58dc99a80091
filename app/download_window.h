// The download of one sounding: source, station, date and hour are chosen, the answer is saved in
// the data folder and opened.
#pragma once

#include <filesystem>
#include <functional>
#include <QDialog>
#include <string>

#include "download/batch.h"
#include "download/net/network.h"
#include "download/template_file.h"
#include "program/program.h"

class QComboBox;
class QDateEdit;
class QLabel;
class QLineEdit;
class QListWidget;
class QProgressBar;
class QPushButton;

namespace vexa {

class DownloadWindow : public QDialog {
 public:
  using Opener = std::function<void(const std::filesystem::path& file, int index)>;

  /// opened  is given the file that was fetched
  DownloadWindow(Program& program, Opener opened, QWidget* parent, download::HttpSettings net = {});

  /// Fetches what is chosen; true when it was saved. What went wrong stands in the progress line.
  bool Fetch();

  /// Shows the file of sources to edit; what is wrong with it is said there, and nothing is saved.
  void EditSources();

  void reject() override;

 private:
  void BuildControls();
  void ConnectControls();
  void ReadSourceList();
  void ShowSource();
  void ShowStations();
  bool ShowProgress(const download::FetchProgress& step);
  download::BatchPlan Plan() const;

  Program& program_;
  Opener opened_;
  download::HttpSettings net_;
  download::SourceList sources_{};
  bool isRunning_ = false;
  bool isStopped_ = false;
  QComboBox* source_ = nullptr;
  QLabel* note_ = nullptr;
  QLineEdit* station_ = nullptr;
  QListWidget* found_ = nullptr;
  QDateEdit* date_ = nullptr;
  QComboBox* hour_ = nullptr;
  QLabel* step_ = nullptr;
  QProgressBar* bar_ = nullptr;
  QPushButton* fetch_ = nullptr;
};

}  // namespace vexa
