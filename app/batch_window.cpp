#include "app/batch_window.h"

#include <algorithm>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>
#include <utility>

#include "app/date_field.h"
#include "app/named_controls.h"
#include "app/qt_text.h"
#include "core/files.h"
#include "core/numbers.h"
#include "core/platform.h"
#include "core/user_file.h"
#include "program/fetch_work.h"

namespace vexa {
namespace {

constexpr int kTickMs = 20000;
constexpr int kBeepMs = 5000;
constexpr int kLongestDelayMin = 1440;
constexpr int kMostLogLines = 2000;
constexpr int kHoursPerDay = 24;

std::vector<std::string> Words(const QLineEdit& edit) {
  std::vector<std::string> words;
  std::string word;
  for (const char c : edit.text().toStdString() + " ") {
    if (c != ' ' && c != ',' && c != ';' && c != '\t') {
      word += c;
    } else if (!word.empty()) {
      words.push_back(std::exchange(word, {}));
    }
  }
  return words;
}

}  // namespace

BatchWindow::BatchWindow(Program& program, std::function<void()> changed, QWidget* parent,
                         download::HttpSettings net, Clock clock)
    : QDialog(parent),
      program_(program),
      changed_(std::move(changed)),
      net_(net),
      clock_(clock ? std::move(clock) : SystemNow) {
  setObjectName(QStringLiteral("BatchProcessing"));
  setWindowTitle(QStringLiteral("Batch Processing"));
  BuildControls();
  ReadSources();
  ReadSettings();
  connect(&ticks_, &QTimer::timeout, this, [this] { Tick(); });
  connect(&beeps_, &QTimer::timeout, this, [] { QApplication::beep(); });
  ShowTimer();
}

void BatchWindow::BuildLists(QFormLayout& form) {
  const auto named = [](auto* widget, const char* name) {
    widget->setObjectName(QString::fromLatin1(name));
    return widget;
  };
  sources_ = named(new QListWidget(this), "Sources");
  stations_ = named(new QLineEdit(this), "Stations");
  stations_->setPlaceholderText(QStringLiteral("72357 OUN ..."));
  hours_ = named(new QLineEdit(this), "Hours");
  delay_ = named(new QSpinBox(this), "Delay");
  delay_->setRange(0, kLongestDelayMin);
  delay_->setSuffix(QStringLiteral(" min"));
  time_ = named(new FromTheYear<QDateTimeEdit>(this), "Time");
  time_->setTimeSpec(Qt::UTC);
  time_->setDisplayFormat(QStringLiteral("yyyy-MM-dd HH"));
  const QDateTime now = QDateTime::currentDateTimeUtc();
  time_->setDateTime(QDateTime(now.date(), QTime(now.time().hour() < 12 ? 0 : 12, 0), Qt::UTC));
  folder_ = named(new QLineEdit(this), "Folder");
  format_ = named(new QComboBox(this), "Format");
  format_->addItems({QStringLiteral("As received"), QStringLiteral("Native")});
  failing_ = named(new QComboBox(this), "OnFailure");
  failing_->addItems(
      {QStringLiteral("Skip"), QStringLiteral("Ask the next source"), QStringLiteral("Stop")});
  beeper_ =
      named(new QCheckBox(QStringLiteral("Sound the &beeper when a timed batch is done"), this),
            "Beeper");
  constexpr int kSourceRows = 6;  // more scroll, and leave room for the log
  sources_->setMaximumHeight(kSourceRows * fontMetrics().lineSpacing() * 3 / 2);
  form.addRow(QStringLiteral("&Sources"), sources_);
  form.addRow(QStringLiteral("S&tations"), stations_);
  form.addRow(QStringLiteral("Time (UTC) by ha&nd"), time_);
  form.addRow(QStringLiteral("&Hours of the timer (UTC)"), hours_);
  form.addRow(QStringLiteral("&Delay after the hour"), delay_);
  form.addRow(QStringLiteral("&Folder"), folder_);
  form.addRow(QStringLiteral("F&ormat"), format_);
  form.addRow(QStringLiteral("On fail&ure"), failing_);
  form.addRow(beeper_);
}

void BatchWindow::BuildControls() {
  auto* form = new QFormLayout;
  BuildLists(*form);
  log_ = new QPlainTextEdit(this);
  log_->setObjectName(QStringLiteral("Log"));
  log_->setReadOnly(true);
  log_->setMaximumBlockCount(kMostLogLines);
  waits_ = new QLabel(this);
  waits_->setObjectName(QStringLiteral("NextBatch"));
  auto* buttons = new QHBoxLayout;
  const auto add = [&](const char* name, const char* caption, auto does) {
    return AddButton(*buttons, this, name, caption, does);
  };
  run_ = add("cmdRun", "&Run now", [this] { RunByHand(); });
  timer_ = add("cmdTimer", "Timer &ON", [this] { SetTimer(!due_); });
  add("cmdCancel", "&Cancel", [this] { reject(); });
  auto* column = new QVBoxLayout(this);
  column->addLayout(form);
  column->addWidget(log_, 1);
  column->addWidget(waits_);
  column->addLayout(buttons);
  resize(520, 560);
}

void BatchWindow::ReadSources() {
  const Outcome<download::SourceList> sources = LoadSources(program_.Where.Root, ProgramFolder());
  if (!sources) return Log(sources.Error().Detail);
  all_ = sources.Value();
  for (const std::string& note : all_.Notes) Log(note);
  for (const download::Source& source : all_.Sources) {
    auto* item = new QListWidgetItem(ToQString(source.Name), sources_);
    item->setToolTip(ToQString(source.Note));
    item->setCheckState(Qt::Unchecked);
  }
}

// The file of settings may be missing, and may name sources that are gone.
void BatchWindow::ReadSettings() {
  const std::filesystem::path path = program_.Where.Root / download::kBatchFileName;
  std::vector<std::string> notes;
  if (const std::optional<std::string> text = ReadUserFile(path, notes)) {
    download::BatchReading read = download::ReadBatchSettings(*text, download::kBatchFileName);
    kept_ = std::move(read.Settings);
    notes = std::move(read.Notes);
  }
  for (const std::string& note : notes) Log(note);
  bool isAny = false;
  for (int i = 0; i < sources_->count(); ++i) {
    const std::string name = sources_->item(i)->text().toStdString();
    if (std::ranges::find(kept_.Sources, name) == kept_.Sources.end()) continue;
    sources_->item(i)->setCheckState(Qt::Checked);
    isAny = true;
  }
  if (!isAny && sources_->count() > 0) sources_->item(0)->setCheckState(Qt::Checked);
  stations_->setText(ToQString(kept_.Stations));
  hours_->setText(ToQString(kept_.Hours));
  delay_->setValue(kept_.DelayMin);
  folder_->setText(
      ToQString(kept_.Folder.empty() ? TextFromPath(program_.Where.Data) : kept_.Folder));
  format_->setCurrentIndex(static_cast<int>(kept_.Format));
  failing_->setCurrentIndex(static_cast<int>(kept_.Failing));
  beeper_->setChecked(kept_.Beeper);
  shown_ = Entered();
}

download::BatchSettings BatchWindow::Entered() const {
  const download::BatchPlan plan = PlanFor({});
  const bool isUsualFolder = plan.Folder == TextFromPath(program_.Where.Data);
  download::BatchSettings entered{.Stations = stations_->text().toStdString(),
                                  .Hours = hours_->text().toStdString(),
                                  .DelayMin = delay_->value(),
                                  .Folder = isUsualFolder ? std::string() : plan.Folder,
                                  .Format = plan.Format,
                                  .Failing = plan.Failing,
                                  .Beeper = beeper_->isChecked()};
  for (const download::Source& source : plan.Sources) entered.Sources.push_back(source.Name);
  // A source that the file of sources lacks today may be back tomorrow.
  for (const std::string& name : kept_.Sources) {
    const bool isListed = std::ranges::any_of(
        all_.Sources, [&name](const download::Source& source) { return source.Name == name; });
    if (!isListed) entered.Sources.push_back(name);
  }
  return entered;
}

void BatchWindow::KeepSettings() {
  download::BatchSettings now = Entered();
  if (now == shown_) return;
  const std::filesystem::path path = program_.Where.Root / download::kBatchFileName;
  const Outcome<std::string> before = ReadFile(path);
  const auto fault = SaveUserFile(
      path, download::WriteBatchSettings(now, before ? before.Value() : ""),
      [](std::string_view text) {
        const auto notes = download::ReadBatchSettings(text, download::kBatchFileName).Notes;
        return notes.empty() ? std::string() : notes.front();
      });
  if (fault) return Log("The list was not kept: " + fault->Detail);
  shown_ = std::move(now);
}

void BatchWindow::hideEvent(QHideEvent* event) {
  KeepSettings();
  QDialog::hideEvent(event);
}

void BatchWindow::Log(const std::string& line) {
  log_->appendPlainText(ToQString(line));
}

std::optional<std::vector<int>> BatchWindow::Hours() const {
  std::vector<int> hours;
  for (const std::string& word : Words(*hours_)) {
    const std::optional<int> hour = ParseWhole(word);
    if (!hour || *hour < 0 || *hour >= kHoursPerDay) return std::nullopt;
    hours.push_back(*hour);
  }
  return hours.empty() ? std::nullopt : std::optional(hours);
}

download::BatchPlan BatchWindow::PlanFor(const ObservationTime& time) const {
  download::BatchPlan plan{.Stations = Words(*stations_),
                           .Times = {time},
                           .Folder = folder_->text().toStdString(),
                           .Format = static_cast<download::BatchFormat>(format_->currentIndex()),
                           .Failing = static_cast<download::OnFailure>(failing_->currentIndex())};
  for (int i = 0; i < sources_->count(); ++i) {
    if (sources_->item(i)->checkState() == Qt::Checked) {
      plan.Sources.push_back(all_.Sources[static_cast<std::size_t>(i)]);
    }
  }
  return plan;
}

download::BatchReport BatchWindow::RunFor(const ObservationTime& time) {
  const download::BatchPlan plan = PlanFor(time);
  if (const auto fault = download::CheckPlan(plan)) {
    Log(fault->Detail);
    return {};
  }
  KeepSettings();
  isRunning_ = true;
  isStopped_ = false;
  run_->setEnabled(false);
  const auto fetcher =
      download::OpenNetwork(net_, [this](const download::FetchProgress&) { return !isStopped_; });
  const download::Cache cache(program_.Where.Root / "cache");
  cache.Sweep(SystemNow());
  FetchWork work(
      *fetcher, &cache, &program_.Stations,
      {.Failed =
           [this](const download::Source& source, const download::Request& request,
                  const Fault& fault) {
             Log(source.Name + ": " + download::FileStem(request) + ": " + fault.Detail);
           },
       .Saved =
           [this](const SavedSounding& saved) {
             Log(SavedText(saved));
             if (saved.Finding.Number != 0) Log(saved.File + ": " + DoubtText(saved.Finding));
           },
       .Continue =
           [this](int done, int total, const download::Request& next) {
             waits_->setText(ToQString("Processing: " + Shortest(done + 1) + " of " +
                                       Shortest(total) + "  " + download::FileStem(next)));
             QApplication::processEvents();
             return !isStopped_;
           }});
  download::BatchReport report = download::RunBatch(plan, work);
  isRunning_ = false;
  run_->setEnabled(true);
  Log(download::BatchSummary(report));
  ShowTimer();
  return report;
}

void BatchWindow::RunByHand() {
  if (isRunning_) return;
  const QDateTime at = time_->dateTime();
  RunFor({.Year = at.date().year(),
          .Month = at.date().month(),
          .Day = at.date().day(),
          .Hour = at.time().hour()});
}

void BatchWindow::SetTimer(bool on) {
  due_.reset();
  ticks_.stop();
  if (on) {
    const auto hours = Hours();
    if (!hours) {
      Log("Hours are whole numbers from 0 to 23.");
    } else if (const auto fault =
                   download::CheckPlan(PlanFor({.Year = 2000, .Month = 1, .Day = 1}))) {
      Log(fault->Detail);
    } else {
      due_ = download::NextDue(clock_(), *hours, std::chrono::minutes(delay_->value()));
      ticks_.start(kTickMs);
      KeepSettings();
    }
  }
  ShowTimer();
}

void BatchWindow::ShowTimer() {
  program_.DownloadTimer = due_.has_value();
  timer_->setText(due_ ? QStringLiteral("Timer &OFF") : QStringLiteral("Timer &ON"));
  for (QWidget* widget : {static_cast<QWidget*>(hours_), static_cast<QWidget*>(delay_)}) {
    widget->setEnabled(!due_);
  }
  if (due_) {
    const auto seconds = due_->time_since_epoch().count();
    waits_->setText(QStringLiteral("Next batch at ") +
                    QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC)
                        .toString(QStringLiteral("yyyy-MM-dd HH:mm")) +
                    QStringLiteral(" UTC"));
  } else {
    waits_->clear();
  }
  if (changed_) changed_();
}

void BatchWindow::Tick() {
  const download::Instant now = clock_();
  if (!due_ || isRunning_ || now < *due_) return;
  const std::vector<int> hours = Hours().value_or(std::vector<int>{});
  const auto delay = std::chrono::minutes(delay_->value());
  const auto time = download::LatestDue(now, hours, delay);
  due_ = download::NextDue(now, hours, delay);
  if (time) RunFor(*time);
  if (!beeper_->isChecked()) return;
  program_.Beeper = true;
  QApplication::beep();
  beeps_.start(kBeepMs);
  if (changed_) changed_();
}

void BatchWindow::SilenceBeeper() {
  beeps_.stop();
  program_.Beeper = false;
  if (changed_) changed_();
}

// While a batch runs this stops it behind the sounding in work; else the window goes away and its
// timer goes on.
void BatchWindow::reject() {
  isStopped_ = true;
  if (!isRunning_) QDialog::reject();
}

}  // namespace vexa
