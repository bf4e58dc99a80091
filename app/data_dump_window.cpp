#include "app/data_dump_window.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>
#include <span>
#include <system_error>
#include <utility>

#include "app/named_controls.h"
#include "app/qt_text.h"
#include "app/text_window.h"
#include "core/error_report.h"
#include "core/files.h"
#include "core/numbers.h"
#include "core/platform.h"
#include "core/source_text.h"
#include "program/commands.h"
#include "program/export_batch.h"

namespace vexa {
namespace {

constexpr const char* kKinds[] = {"Textfile", "Spreadsheet"};

QComboBox* Choice(const char* name, std::initializer_list<const char*> words, int now,
                  QWidget* parent) {
  auto* box = new QComboBox(parent);
  box->setObjectName(QString::fromLatin1(name));
  for (const char* word : words) box->addItem(QString::fromLatin1(word));
  box->setCurrentIndex(now);
  return box;
}

template <class E>
E ChosenIn(const QComboBox& box) {
  return static_cast<E>(box.currentIndex());
}

// "0001"
std::string FourDigits(std::size_t number) {
  std::string text = Shortest(static_cast<int>(number));
  while (text.size() < kRangeStart.size()) text.insert(text.begin(), '0');
  return text;
}

// What was opened together, else the files beside the sounding, by name.
std::vector<std::string> FilesAround(const Program& program) {
  std::vector<std::string> files;
  if (program.Listed.Size() > 1 && program.Listed.IsOfFiles()) {
    for (const auto& member : program.Listed.Members()) {
      files.push_back(TextFromPath(member.File));
    }
    return files;
  }
  if (program.Current.FileName.empty()) return files;
  for (const FolderEntry& entry : EntriesOf(program.Current.DataFolder)) {
    if (IsOrdinaryFile(entry.Path)) files.push_back(TextFromPath(entry.Path));
  }
  std::ranges::sort(files);
  return files;
}

/// Shows steps in the window as well as where they go otherwise.
class StepsShown : public Interaction {
 public:
  StepsShown(Interaction& outer, QLabel& label, QProgressBar& bar)
      : outer_(outer), label_(label), bar_(bar) {}
  Answer Ask(const Box& box) override { return outer_.Ask(box); }
  std::optional<std::string> ChooseFile(const FileQuestion& question) override {
    return outer_.ChooseFile(question);
  }
  void Status(std::string_view text) override {
    label_.setText(ToQString(text));
    bar_.setValue(bar_.value() + 1);
    outer_.Status(text);
  }
  bool Yield() override { return outer_.Yield(); }

 private:
  Interaction& outer_;
  QLabel& label_;
  QProgressBar& bar_;
};

void ShowRejected(Program& program, const std::filesystem::path& path, QWidget* parent) {
  const Outcome<std::string> bytes = ReadFile(path);
  if (!bytes) return;
  const SourceText text("rejected", bytes.Value());
  ShownText shown{.Name = "Rejected",
                  .Title = TextFromPath(path.filename()),
                  .FileName = TextFromPath(path.filename())};
  for (int i = 1; i <= text.LineCount(); ++i) shown.Lines.emplace_back(text.Line(i));
  auto* window = new TextWindow(program, std::move(shown), parent);
  window->setAttribute(Qt::WA_DeleteOnClose);
  window->show();
}

}  // namespace

DataDumpOptionsWindow::DataDumpOptionsWindow(const DumpOptions& dump, QWidget* parent)
    : QDialog(parent) {
  setObjectName(QStringLiteral("DataDumpOptions"));
  setWindowTitle(QStringLiteral("Export Options"));
  const auto at = [](auto value) { return static_cast<int>(value); };
  height_ = Choice("DumpData1", {"M", "ft"}, at(dump.Height), this);
  reference_ = Choice("DumpData2", {"AGL", "MSL"}, dump.Reference == HeightMode::Agl ? 0 : 1, this);
  speed_ = Choice("DumpData3", {"KNOTS", "M/S"}, dump.Speed == SpeedUnits::Knots ? 0 : 1, this);
  temp_ = Choice("DumpData4", {"(C)", "(F)"}, at(dump.Temp), this);
  water_ = Choice("DumpData5", {"cm", "in"}, at(dump.Water), this);
  formatBlock_ = NamedCheck("DumpData6", "&Format information", dump.FormatBlock, this);
  significant_ = NamedCheck("DumpData7", "Significant &levels only", dump.SignificantOnly, this);
  auto* form = new QFormLayout(this);
  form->addRow(QStringLiteral("&Heights"), height_);
  form->addRow(QStringLiteral("Height &reference"), reference_);
  form->addRow(QStringLiteral("&Wind speed"), speed_);
  form->addRow(QStringLiteral("&Temperature"), temp_);
  form->addRow(QStringLiteral("&Precipitable water"), water_);
  form->addRow(formatBlock_);
  form->addRow(significant_);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  form->addRow(buttons);
}

DumpOptions DataDumpOptionsWindow::Chosen() const {
  return {.Height = ChosenIn<DumpHeight>(*height_),
          .Reference = reference_->currentIndex() == 0 ? HeightMode::Agl : HeightMode::Msl,
          .Speed = speed_->currentIndex() == 0 ? SpeedUnits::Knots : SpeedUnits::MetersPerSecond,
          .Temp = ChosenIn<DumpTemp>(*temp_),
          .Water = ChosenIn<DumpWater>(*water_),
          .FormatBlock = formatBlock_->isChecked(),
          .SignificantOnly = significant_->isChecked()};
}

DataDumpWindow::DataDumpWindow(Program& program, QWidget* parent)
    : QDialog(parent), program_(program) {
  setObjectName(QStringLiteral("DataDump"));
  setWindowTitle(ToQString(kExportTitle));
  BuildControls();
  const bool hasSounding = program.Current.Record.NumTempLevels() > 0;
  (hasSounding ? thisOne_ : range_)->setChecked(true);
  thisOne_->setEnabled(hasSounding);
  SetFiles(FilesAround(program));
}

void DataDumpWindow::BuildControls() {
  const auto named = [](auto* widget, const char* name) {
    widget->setObjectName(QString::fromLatin1(name));
    return widget;
  };
  const auto button = [&](const char* name, const char* caption, auto does) {
    auto* made = named(new QPushButton(QString::fromLatin1(caption), this), name);
    made->setAutoDefault(false);
    connect(made, &QPushButton::clicked, this, does);
    return made;
  };
  thisOne_ = named(new QRadioButton(QStringLiteral("&The loaded sounding"), this), "ThisSounding");
  range_ = named(new QRadioButton(QStringLiteral("A &range of files"), this), "RangeOfFiles");
  first_ = named(new QLineEdit(this), "RangeFirst");
  last_ = named(new QLineEdit(this), "RangeLast");
  for (QLineEdit* edit : {first_, last_}) edit->setMaxLength(static_cast<int>(kRangeStart.size()));
  list_ = named(new QListWidget(this), "FileNumbers");
  kind_ = Choice("OutputKind", {kKinds[0], kKinds[1]}, 0, this);
  step_ = named(new QLabel(this), "Progress");
  bar_ = named(new QProgressBar(this), "ProgressBar");
  choose_ = button("cmdFiles", "&Files...", [this] { ChooseFiles(); });
  export_ = button("cmdExport", "&Export...", [this] { Export(); });
  export_->setDefault(true);

  auto* column = new QVBoxLayout(this);
  column->addWidget(thisOne_);
  auto* numbers = new QHBoxLayout;
  auto* to = new QLabel(QStringLiteral("t&o"), this);
  to->setBuddy(last_);
  numbers->addWidget(range_);
  numbers->addWidget(first_);
  numbers->addWidget(to);
  numbers->addWidget(last_);
  numbers->addWidget(choose_);
  column->addLayout(numbers);
  column->addWidget(list_, 1);
  auto* form = new QFormLayout;
  form->addRow(QStringLiteral("Output &kind"), kind_);
  column->addLayout(form);
  column->addWidget(step_);
  column->addWidget(bar_);
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(export_);
  buttons->addWidget(button("cmdOptions", "O&ptions...", [this] { ChooseOptions(); }));
  buttons->addWidget(button("cmdCancel", "&Cancel", [this] { reject(); }));
  column->addLayout(buttons);
  connect(range_, &QRadioButton::toggled, this, [this] { ShowControls(); });
  bar_->hide();
  resize(520, 420);
}

void DataDumpWindow::SetFiles(std::vector<std::string> files) {
  files_ = std::move(files);
  list_->clear();
  for (std::size_t i = 0; i < files_.size(); ++i) {
    list_->addItem(
        ToQString(FourDigits(i + 1) + "  " + TextFromPath(PathFromText(files_[i]).filename())));
  }
  first_->setText(ToQString(kRangeStart));
  last_->setText(ToQString(FourDigits(files_.size())));
  ShowControls();
}

void DataDumpWindow::ShowControls() {
  for (QWidget* widget : {static_cast<QWidget*>(first_), static_cast<QWidget*>(last_),
                          static_cast<QWidget*>(list_), static_cast<QWidget*>(choose_)}) {
    widget->setEnabled(range_->isChecked() && !isRunning_);
  }
  export_->setEnabled(!isRunning_);
}

output::DumpKind DataDumpWindow::Kind() const {
  return kind_->currentIndex() == 0 ? output::DumpKind::Textfile : output::DumpKind::Spreadsheet;
}

void DataDumpWindow::ChooseFiles() {
  std::vector<std::string> chosen =
      program_.Current.Ask->ChooseFiles({.Title = std::string(kExportTitle),
                                         .Folder = TextFromPath(program_.Current.DataFolder),
                                         .Filter = "*.*|*"});
  if (chosen.empty()) return;
  std::ranges::sort(chosen);
  SetFiles(std::move(chosen));
}

void DataDumpWindow::ChooseOptions() {
  DataDumpOptionsWindow window(program_.Set.System.Dump, this);
  if (window.exec() == QDialog::Accepted) program_.Set.System.Dump = window.Chosen();
}

void DataDumpWindow::Export() {
  const bool isRange = range_->isChecked();
  const auto pass = program_.Gate.Enter();
  if (!pass) return;
  if (isRange) return ExportRangeOfFiles();
  commands::ExportAs(program_, Kind());
}

void DataDumpWindow::ExportRangeOfFiles() {
  Interaction& user = *program_.Current.Ask;
  const Outcome<ExportRange> range = ParseExportRange(
      first_->text().toStdString(), last_->text().toStdString(), static_cast<int>(files_.size()));
  if (!range) {
    user.Ask(Box{.Title = std::string(kExportTitle), .Text = range.Error().Detail});
    return;
  }
  const auto begin = static_cast<std::size_t>(range.Value().First) - 1;
  const std::vector<std::string> files(files_.begin() + static_cast<std::ptrdiff_t>(begin),
                                       files_.begin() + range.Value().Last);
  const auto output = commands::ChooseDumpFile(
      program_, TextFromPath(PathFromText(files.front()).filename()), Kind());
  if (!output) return;
  isRunning_ = true;
  bar_->setRange(0, static_cast<int>(files.size()));
  bar_->setValue(0);
  bar_->show();
  ShowControls();
  StepsShown steps(user, *step_, *bar_);
  const ExportReport report = ExportBatch(
      {.Files = files, .Output = *output, .Kind = Kind(), .Stations = &program_.Stations},
      program_.Set, Progress(steps));
  isRunning_ = false;
  bar_->hide();
  step_->clear();
  ShowControls();
  if (report.Failed) {
    program_.Doc.Report(*report.Failed);
    return;
  }
  const Box summary = ExportSummary(report);
  if (!summary.Text.empty()) user.Ask(summary);
  if (!report.RejectFile.empty()) ShowRejected(program_, report.RejectFile, this);
}

// While files are written this stops behind the one in work.
void DataDumpWindow::reject() {
  if (isRunning_) {
    program_.Gate.Stop();
    return;
  }
  QDialog::reject();
}

}  // namespace vexa
