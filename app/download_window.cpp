#include "app/download_window.h"

#include <algorithm>
#include <QComboBox>
#include <QDateEdit>
#include <QDateTime>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>
#include <system_error>
#include <utility>

#include "app/date_field.h"
#include "app/qt_text.h"
#include "app/text_editor.h"
#include "core/files.h"
#include "core/folders.h"
#include "core/numbers.h"
#include "core/platform.h"
#include "core/station_list.h"
#include "core/user_file.h"
#include "program/fetch_work.h"

namespace vexa {
namespace {

constexpr int kMostStations = 60;
constexpr int kStationNumber = Qt::UserRole;
constexpr int kHoursOfDay = 24;

// "72357  OUN  NORMAN, OK"
QString StationLine(const Station& station) {
  QString line = QStringLiteral("%1  %2  %3")
                     .arg(station.Number, 5, 10, QLatin1Char('0'))
                     .arg(ToQString(station.Ident), ToQString(station.Name));
  if (!station.Region.empty()) line += QStringLiteral(", ") + ToQString(station.Region);
  return line;
}

std::string WrongWithSources(std::string_view text) {
  const auto notes = download::ReadSources(text, download::kSourcesFileName).Notes;
  return notes.empty() ? std::string() : notes.front();
}

}  // namespace

DownloadWindow::DownloadWindow(Program& program, Opener opened, QWidget* parent,
                               download::HttpSettings net)
    : QDialog(parent), program_(program), opened_(std::move(opened)), net_(net) {
  setObjectName(QStringLiteral("Download"));
  setWindowTitle(QStringLiteral("Download Data"));
  BuildControls();
  ReadSourceList();
}

void DownloadWindow::ReadSourceList() {
  const Outcome<download::SourceList> sources = LoadSources(program_.Where.Root, ProgramFolder());
  const QString before = source_->currentText();
  sources_ = {};
  source_->clear();
  if (!sources) {
    step_->setText(ToQString(sources.Error().Detail));
  } else {
    sources_ = sources.Value();
    for (const download::Source& source : sources_.Sources) {
      source_->addItem(ToQString(source.Name));
    }
  }
  source_->setCurrentIndex(std::max(0, source_->findText(before)));
  fetch_->setEnabled(!sources_.Sources.empty());
  ShowSource();
  if (sources_.Notes.empty()) return;
  const std::size_t more = sources_.Notes.size() - 1;
  step_->setText(ToQString(sources_.Notes.front()) +
                 (more > 0 ? QStringLiteral(" (+%1 more)").arg(more) : QString()));
}

void DownloadWindow::EditSources() {
  const std::filesystem::path own = program_.Where.Root / download::kSourcesFileName;
  const bool hasOwn = IsThere(own);
  const std::filesystem::path shipped = ShippedFile(ProgramFolder(), download::kSourcesFileName);
  const Outcome<std::string> bytes = ReadFile(hasOwn ? own : shipped);
  const Outcome<EditableText> text =
      TextToEdit(bytes ? bytes.Value() : std::string(), download::kSourcesFileName);
  if (!text) return step_->setText(ToQString(text.Error().Detail));
  auto* editor = new TextEditor(
      text.Value(), QStringLiteral("Edit Sources"),
      [this, own](const std::string& edited) -> std::optional<Fault> {
        if (const std::string wrong = WrongWithSources(edited); !wrong.empty()) {
          return Fault{kFaultEndOfFile, "EditSources", wrong};
        }
        if (auto fault = SaveUserFile(own, edited, WrongWithSources)) return fault;
        ReadSourceList();
        return std::nullopt;
      },
      {}, this);
  editor->AskThrough(program_.Current.Ask);
  editor->setAttribute(Qt::WA_DeleteOnClose);
  editor->open();
}

void DownloadWindow::BuildControls() {
  const auto named = [](auto* widget, const char* name) {
    widget->setObjectName(QString::fromLatin1(name));
    return widget;
  };
  source_ = named(new QComboBox(this), "Source");
  note_ = named(new QLabel(this), "SourceNote");
  note_->setWordWrap(true);
  note_->setTextFormat(Qt::PlainText);
  station_ = named(new QLineEdit(this), "Station");
  station_->setPlaceholderText(QStringLiteral("Number, letters or name"));
  found_ = named(new QListWidget(this), "StationsFound");
  found_->setAccessibleName(QStringLiteral("Stations found"));
  date_ = named(new FromTheYear<QDateEdit>(this), "Date");
  date_->setDate(QDateTime::currentDateTimeUtc().date());
  date_->setCalendarPopup(true);
  date_->setDisplayFormat(QStringLiteral("yyyy-MM-dd"));
  hour_ = named(new QComboBox(this), "Hour");
  step_ = named(new QLabel(this), "Progress");
  step_->setWordWrap(true);
  step_->setTextFormat(Qt::PlainText);
  bar_ = named(new QProgressBar(this), "ProgressBar");
  bar_->hide();
  fetch_ = named(new QPushButton(QStringLiteral("&Download"), this), "cmdDownload");
  auto* edit = named(new QPushButton(QStringLiteral("&Edit Sources..."), this), "cmdEditSources");
  edit->setAutoDefault(false);
  auto* cancel = named(new QPushButton(QStringLiteral("&Cancel"), this), "cmdCancel");
  cancel->setAutoDefault(false);

  auto* form = new QFormLayout;
  form->addRow(QStringLiteral("&Source"), source_);
  form->addRow(note_);
  form->addRow(QStringLiteral("S&tation"), station_);
  form->addRow(found_);
  form->addRow(QStringLiteral("D&ate (UTC)"), date_);
  form->addRow(QStringLiteral("&Hour (UTC)"), hour_);
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(fetch_);
  buttons->addWidget(edit);
  buttons->addWidget(cancel);
  auto* column = new QVBoxLayout(this);
  column->addLayout(form);
  column->addWidget(step_);
  column->addWidget(bar_);
  column->addLayout(buttons);
  resize(460, 520);
  connect(edit, &QPushButton::clicked, this, [this] { EditSources(); });
  connect(cancel, &QPushButton::clicked, this, [this] { reject(); });
  ConnectControls();
}

void DownloadWindow::ConnectControls() {
  connect(source_, &QComboBox::currentIndexChanged, this, [this] { ShowSource(); });
  connect(station_, &QLineEdit::textEdited, this, [this] { ShowStations(); });
  // What the last try came to says nothing about the next.
  connect(station_, &QLineEdit::textChanged, step_, &QLabel::clear);
  connect(date_, &QDateEdit::dateChanged, step_, &QLabel::clear);
  connect(hour_, &QComboBox::currentIndexChanged, step_, &QLabel::clear);
  connect(found_, &QListWidget::itemClicked, this, [this](QListWidgetItem* item) {
    station_->setText(item->data(kStationNumber).toString());
  });
  connect(found_, &QListWidget::itemActivated, this, [this](QListWidgetItem* item) {
    station_->setText(item->data(kStationNumber).toString());
  });
  connect(fetch_, &QPushButton::clicked, this, [this] { Fetch(); });
}

// Only hours that the source has can be chosen; the one that was chosen stays where it can.
void DownloadWindow::ShowSource() {
  const auto index = static_cast<std::size_t>(std::max(0, source_->currentIndex()));
  if (index >= sources_.Sources.size()) return;
  const download::Source& source = sources_.Sources[index];
  note_->setText(ToQString(source.Note));
  const QString before = hour_->currentText();
  hour_->clear();
  for (int hour = 0; hour < kHoursOfDay; ++hour) {
    if (!download::HasHour(source, hour)) continue;
    hour_->addItem(QStringLiteral("%1").arg(hour, 2, 10, QLatin1Char('0')));
  }
  hour_->setCurrentIndex(std::max(0, hour_->findText(before)));
  // An address without station or time gives an answer of many, from which one is taken.
  station_->setPlaceholderText(download::NeedsStation(source)
                                   ? QStringLiteral("Number, letters or name")
                                   : QStringLiteral("Number, letters or name; empty: the first"));
  step_->clear();
}

void DownloadWindow::ShowStations() {
  found_->clear();
  for (const Station* station :
       SearchStations(program_.Stations, station_->text().toStdString(), kMostStations)) {
    auto* item = new QListWidgetItem(StationLine(*station), found_);
    item->setData(kStationNumber,
                  QStringLiteral("%1").arg(station->Number, 5, 10, QLatin1Char('0')));
  }
}

download::BatchPlan DownloadWindow::Plan() const {
  const QDate date = date_->date();
  download::BatchPlan plan{.Times = {{.Year = date.year(),
                                      .Month = date.month(),
                                      .Day = date.day(),
                                      .Hour = hour_->currentText().toInt()}},
                           .Folder = TextFromPath(program_.Where.Data)};
  const auto index = static_cast<std::size_t>(std::max(0, source_->currentIndex()));
  if (index < sources_.Sources.size()) plan.Sources.push_back(sources_.Sources[index]);
  std::string station(Trim(station_->text().toStdString()));
  // A name that only one station has stands for it.
  const bool isName = !ParseWhole(station) && !StationOfLetters(program_.Stations, station);
  if (const auto hits = SearchStations(program_.Stations, station, 2); isName && hits.size() == 1) {
    station = Mask(hits.front()->Number, "00000");
  }
  if (!station.empty()) plan.Stations.push_back(station);
  return plan;
}

bool DownloadWindow::ShowProgress(const download::FetchProgress& step) {
  QString text = QStringLiteral("%1 bytes").arg(step.Received);
  if (step.Attempt > 1) text += QStringLiteral(", attempt %1").arg(step.Attempt);
  step_->setText(text);
  bar_->setRange(0, step.Total > 0 ? 100 : 0);
  if (step.Total > 0) bar_->setValue(static_cast<int>(100 * step.Received / step.Total));
  return !isStopped_;
}

bool DownloadWindow::Fetch() {
  if (isRunning_) return false;
  const download::BatchPlan plan = Plan();
  if (const auto fault = download::CheckPlan(plan)) {
    step_->setText(ToQString(fault->Detail));
    return false;
  }
  download::BatchReport report;
  SavedSounding saved;
  {
    const auto pass = program_.Gate.Enter();
    if (!pass) return false;
    isRunning_ = true;
    isStopped_ = false;
    fetch_->setEnabled(false);
    bar_->show();
    const auto fetcher = download::OpenNetwork(
        net_, [this](const download::FetchProgress& step) { return ShowProgress(step); });
    const download::Cache cache(program_.Where.Root / "cache");
    cache.Sweep(SystemNow());
    FetchWork work(
        *fetcher, &cache, &program_.Stations,
        {.Saved = [&saved](const SavedSounding& file) { saved = file; },
         .MayReplace =
             [this](const std::filesystem::path& file) {
               const Fault question{kFaultFileExists, "Fetch", {}, TextFromPath(file.filename())};
               return program_.Doc.Report(question) == Answer::Yes;
             }});
    report = download::RunBatch(plan, work);
    isRunning_ = false;
    fetch_->setEnabled(true);
    bar_->hide();
  }
  if (report.Items.empty() || report.Saved() == 0) {
    const bool hasReason = !report.Items.empty() && report.Items.front().Failed;
    step_->setText(hasReason ? ToQString(report.Items.front().Failed->Detail) : QString());
    return false;
  }
  step_->setText(ToQString(saved.File));
  opened_(PathFromText(saved.File), saved.Index);
  return true;
}

// While an answer is on its way this gives it up.
void DownloadWindow::reject() {
  isStopped_ = true;
  if (!isRunning_) QDialog::reject();
}

}  // namespace vexa
