#include "app/archive_window.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QTableWidget>
#include <QVBoxLayout>
#include <vector>

#include "app/named_controls.h"
#include "app/qt_text.h"
#include "app/sounding_window.h"
#include "archive/analogues.h"
#include "archive/climate.h"
#include "archive/query.h"
#include "core/files.h"
#include "core/numbers.h"

namespace vexa {
namespace {

constexpr int kMostRows = 5000;
constexpr int kWaitMs = 1000;
constexpr int kDecimals = 3;
constexpr int kPlaceRole = Qt::UserRole;  // of the first cell: which of the file's soundings
constexpr int kFileRole = Qt::UserRole + 1;

// A value in a cell, so that numbers are sorted as numbers.
QTableWidgetItem* CellOf(const archive::Cell& cell) {
  auto* item = new QTableWidgetItem;
  item->setFlags(item->flags() & ~Qt::ItemIsEditable);
  if (const auto* whole = std::get_if<std::int64_t>(&cell)) {
    item->setData(Qt::DisplayRole, QVariant::fromValue(static_cast<qlonglong>(*whole)));
  } else if (const auto* number = std::get_if<double>(&cell)) {
    item->setData(Qt::DisplayRole, *number);
  } else {
    item->setText(ToQString(archive::CellText(cell)));
  }
  if (!std::holds_alternative<std::string>(cell)) {
    item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
  }
  return item;
}

std::vector<std::string> HeadsOf(const std::vector<const archive::Column*>& columns) {
  std::vector<std::string> heads;
  for (const archive::Column* column : columns) {
    heads.push_back(column->Unit.empty() ? column->Name : column->Name + " (" + column->Unit + ")");
  }
  return heads;
}

void OpenArchive(const Opening& opening) {
  constexpr auto kName = "Archive";
  auto* window = dynamic_cast<ArchiveWindow*>(opening.Over.findChild<QDialog*>(kName));
  if (window == nullptr) {
    window = new ArchiveWindow(
        opening.In, [over = &opening.Over](Changes changes) { over->Show(changes); },
        &opening.Over);
  }
  window->show();
  window->raise();
  window->activateWindow();
}

constexpr WindowRow kArchiveRows[] = {{.Name = "Archive", .Open = OpenArchive}};

}  // namespace

ArchiveWindow::ArchiveWindow(Program& program, std::function<void(Changes)> changed,
                             QWidget* parent)
    : QDialog(parent), program_(program), changed_(std::move(changed)) {
  setObjectName(QStringLiteral("Archive"));
  setWindowTitle(QStringLiteral("Archive"));
  BuildForm();
}

void ArchiveWindow::BuildForm() {
  const auto named = [](auto* widget, const char* name) {
    widget->setObjectName(QString::fromLatin1(name));
    return widget;
  };
  catalogue_ = named(new QLineEdit(this), "Catalogue");
  station_ = named(new QLineEdit(this), "Station");
  station_->setPlaceholderText(QStringLiteral("any"));
  month_ = named(new QComboBox(this), "Month");
  month_->addItem(QStringLiteral("any"));
  for (int month = 1; month <= 12; ++month) month_->addItem(QString::number(month));
  index_ = named(new QComboBox(this), "Index");
  index_->addItem(QStringLiteral("none"));
  for (const archive::Column& column : archive::Columns()) {
    if (column.Index != nullptr && column.Kind == archive::ColumnKind::Number) {
      index_->addItem(ToQString(column.Name));
    }
  }
  sign_ = named(new QComboBox(this), "Sign");
  sign_->addItems({QStringLiteral(">"), QStringLiteral(">="), QStringLiteral("<"),
                   QStringLiteral("<="), QStringLiteral("=")});
  value_ = named(new QLineEdit(this), "Value");
  further_ = named(new QLineEdit(this), "Condition");
  further_->setPlaceholderText(QStringLiteral("\"CAPE total\" > 3000 and time < '2000'"));
  auto* file = new QHBoxLayout;
  file->addWidget(catalogue_, 1);
  AddButton(*file, this, "cmdChoose", "C&hoose...", [this] { ChooseCatalogue(); });
  percentiles_ = NamedCheck("Percentiles", "Use for &percentiles", false, this);
  percentiles_->setToolTip(QStringLiteral(
      "The panels show how usual each value is by this catalogue, the diagram what is usual."));
  auto* compared = new QHBoxLayout;
  compared->addWidget(index_);
  compared->addWidget(sign_);
  compared->addWidget(value_, 1);
  auto* form = new QFormLayout;
  const auto labelled = [&](const char* caption, QWidget* of, QLayout* row) {
    auto* label = new QLabel(QString::fromLatin1(caption), this);
    label->setBuddy(of);
    form->addRow(label, row);
  };
  labelled("Ca&talogue", catalogue_, file);
  form->addRow(QString(), percentiles_);
  form->addRow(QStringLiteral("&Station"), station_);
  form->addRow(QStringLiteral("&Month"), month_);
  labelled("&Index", index_, compared);
  form->addRow(QStringLiteral("&And"), further_);
  rows_ = named(new QTableWidget(this), "Soundings");
  rows_->setSelectionBehavior(QAbstractItemView::SelectRows);
  rows_->setSelectionMode(QAbstractItemView::ExtendedSelection);
  rows_->verticalHeader()->hide();
  remark_ = named(new QLabel(this), "Remark");
  remark_->setWordWrap(true);
  connect(rows_, &QTableWidget::cellDoubleClicked, this, [this](int row, int) { OpenRow(row); });
  connect(catalogue_, &QLineEdit::textChanged, this, [this] { FollowOption(); });
  connect(percentiles_, &QCheckBox::clicked, this,
          [this](bool isChosen) { ChooseForPercentiles(isChosen); });
  catalogue_->setText(ToQString(program_.Set.System.Catalogue));
  FollowOption();
  auto* column = new QVBoxLayout(this);
  column->addLayout(form);
  column->addWidget(rows_, 1);
  column->addWidget(remark_);
  column->addLayout(BuildButtons());
  resize(760, 560);
}

QHBoxLayout* ArchiveWindow::BuildButtons() {
  auto* buttons = new QHBoxLayout;
  auto* search = AddButton(*buttons, this, "cmdSearch", "Sea&rch", [this] { Search(); });
  search->setDefault(true);
  AddButton(*buttons, this, "cmdUsual", "&Usual?", [this] { ShowUsual(); });
  AddButton(*buttons, this, "cmdAlike", "Ali&ke", [this] { ShowAlike(); });
  AddButton(*buttons, this, "cmdStep", "Step thr&ough", [this] {
    constexpr int kMostSteps = 500;
    const auto chosen = Chosen(kMostSteps);
    if (chosen.empty()) return Say("Search for soundings first.");
    changed_(StepThrough(program_, chosen));
    Say(archive::GroupedCount(static_cast<std::int64_t>(chosen.size())) +
        " soundings are listed behind the one in work.");
  });
  AddButton(*buttons, this, "cmdOverlay", "O&verlay", [this] {
    constexpr int kMostOver = 10;
    const auto chosen = Chosen(kMostOver);
    if (chosen.empty()) return Say("Search for soundings first.");
    if (InWork()) changed_(OverlayThese(program_, chosen));
  });
  AddButton(*buttons, this, "cmdOpen", "&Open", [this] { OpenRow(rows_->currentRow()); });
  AddButton(*buttons, this, "cmdCancel", "&Close", [this] { close(); });
  return buttons;
}

void ArchiveWindow::ChooseCatalogue() {
  const auto chosen = program_.Current.Ask->ChooseFile({.Title = "Catalogue of soundings",
                                                        .Folder = TextFromPath(program_.Where.Data),
                                                        .Filter = "All Files (*.*)|*.*"});
  if (chosen) catalogue_->setText(ToQString(*chosen));
}

std::string ArchiveWindow::Condition() const {
  std::string condition;
  const auto add = [&](const std::string& part) {
    condition += (condition.empty() ? "" : " and ") + part;
  };
  if (const QString station = station_->text().trimmed(); !station.isEmpty()) {
    add("station = " + station.toStdString());
  }
  if (month_->currentIndex() > 0) add("month = " + month_->currentText().toStdString());
  if (index_->currentIndex() > 0) {
    add('"' + index_->currentText().toStdString() + "\" " + sign_->currentText().toStdString() +
        " " + value_->text().toStdString());
  }
  if (const QString further = further_->text().trimmed(); !further.isEmpty()) {
    add("(" + further.toStdString() + ")");
  }
  return condition;
}

std::optional<archive::Catalogue> ArchiveWindow::OpenCatalogue() {
  Outcome<archive::Catalogue> catalogue = archive::Catalogue::Open(
      PathFromText(catalogue_->text().toStdString()), {.MayWrite = false, .WaitMs = kWaitMs});
  if (catalogue) return std::move(catalogue.Value());
  Begin({});
  End(catalogue.Error().Detail);
  return std::nullopt;
}

std::optional<AnalysedSounding> ArchiveWindow::InWork() {
  if (program_.Current.Record.NumTempLevels() >= 2) {
    return AnalysedSounding({.Record = program_.Current.Record, .Finding = program_.Doc.Finding()});
  }
  Say("There is no sounding in work.");
  return std::nullopt;
}

void ArchiveWindow::Begin(const std::vector<std::string>& heads) {
  rows_->setSortingEnabled(false);
  rows_->setRowCount(0);
  rows_->setColumnCount(static_cast<int>(heads.size()));
  QStringList texts;
  for (const std::string& head : heads) texts << ToQString(head);
  rows_->setHorizontalHeaderLabels(texts);
}

void ArchiveWindow::AddRow(std::span<const archive::Cell> cells) {
  const int row = rows_->rowCount();
  rows_->insertRow(row);
  for (std::size_t i = 0; i < cells.size(); ++i) {
    rows_->setItem(row, static_cast<int>(i), CellOf(cells[i]));
  }
}

// Where the sounding of the last row lies.
void ArchiveWindow::MarkPlace(const archive::Cell& file, const archive::Cell& sounding) {
  QTableWidgetItem* first = rows_->item(rows_->rowCount() - 1, 0);
  first->setData(kFileRole, ToQString(archive::CellText(file)));
  first->setData(kPlaceRole, static_cast<int>(std::get<std::int64_t>(sounding)) - 1);
}

void ArchiveWindow::End(const std::string& remark) {
  rows_->horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);  // as it came
  rows_->setSortingEnabled(true);
  rows_->resizeColumnsToContents();
  Say(remark);
}

void ArchiveWindow::Search() {
  const Outcome<archive::Condition> condition = archive::ParseCondition(Condition());
  if (!condition) {
    Begin({});
    return End(Condition() + "\n" + condition.Error().Detail);
  }
  std::optional<archive::Catalogue> catalogue = OpenCatalogue();
  if (!catalogue) return;
  archive::Question question{.Where = condition.Value(), .Most = kMostRows + 1};
  question.Columns = archive::UsualColumns(question.Where);
  Begin(HeadsOf(question.Columns));
  bool isCut = false;
  const auto fault = archive::Ask(*catalogue, question, [&](std::span<const archive::Cell> cells) {
    isCut = rows_->rowCount() == kMostRows;
    if (isCut) return false;
    AddRow(cells);
    MarkPlace(cells[cells.size() - 2], cells.back());
    return true;
  });
  const std::string count = archive::GroupedCount(rows_->rowCount());
  End(fault   ? fault->Detail
      : isCut ? "The first " + count + " soundings; there are more."
              : count + (rows_->rowCount() == 1 ? " sounding" : " soundings"));
}

void ArchiveWindow::ShowUsual() {
  const std::optional<AnalysedSounding> sounding = InWork();
  if (!sounding) return;
  auto request = archive::RequestFor(sounding->Record());
  if (!request) {
    Begin({});
    return End("The sounding has no station number or no time.");
  }
  request->Settings = archive::Fingerprint(program_.Set);
  std::optional<archive::Catalogue> catalogue = OpenCatalogue();
  if (!catalogue) return;
  const Outcome<archive::Climate> found = archive::ClimateOf(*catalogue, *request);
  if (!found) {
    Begin({});
    return End(found.Error().Detail);
  }
  const archive::Climate& climate = found.Value();
  const archive::Entered entered{*sounding, sounding->Results(program_.Set, &program_.Adiabats)};
  Begin({"index", "value", "percentile", "of", "10 %", "median", "90 %", "unit"});
  for (const archive::IndexClimate& index : climate.Indices) {
    const archive::Distribution& values = index.Values;
    const archive::Cell value = archive::ValueOf(*index.Index, entered);
    const auto* number = std::get_if<double>(&value);
    const auto spread = [&](double percent) {
      return archive::Cell(Rounded(values.Percentile(percent), kDecimals));
    };
    AddRow(std::vector<archive::Cell>{
        index.Index->Name, value,
        number == nullptr ? archive::Cell() : archive::Cell(Rounded(values.RankOf(*number), 1)),
        std::int64_t{values.Count()}, spread(10), spread(50), spread(90), index.Index->Unit});
  }
  End(climate.SampleText() +
      (climate.Indices.empty()
           ? "; too few: " + std::to_string(request->LeastSample) + " are wanted"
           : std::string()));
}

void ArchiveWindow::ShowAlike() {
  const std::optional<AnalysedSounding> sounding = InWork();
  if (!sounding) return;
  std::optional<archive::Catalogue> catalogue = OpenCatalogue();
  if (!catalogue) return;
  const Outcome<archive::Vectors> vectors = archive::Vectors::Of(*catalogue);
  if (!vectors) {
    Begin({});
    return End(vectors.Error().Detail);
  }
  constexpr std::size_t kMostAlike = 50;
  archive::AnalogueRequest request{.Most = kMostAlike};
  if (const ObservationTime& time = sounding->Record().Time; time.Known()) {
    request.DayOfYear = archive::DayOfYear(time.Month, time.Day);
    request.Hour = time.Hour;
  }
  const std::vector<const archive::Column*> columns = archive::UsualColumns({});
  std::vector<std::string> heads = HeadsOf(columns);
  heads.insert(heads.begin(), "distance");
  Begin(heads);
  const archive::Entered entered{*sounding, sounding->Results(program_.Set, &program_.Adiabats)};
  for (const archive::Analogue& one : vectors.Value().Nearest(entered, request)) {
    auto cells = archive::RowOf(*catalogue, one.Id, columns);
    if (!cells || cells.Value().empty()) continue;
    cells.Value().insert(cells.Value().begin(), archive::Cell(Rounded(one.Distance, kDecimals)));
    AddRow(cells.Value());
    MarkPlace(cells.Value()[cells.Value().size() - 2], cells.Value().back());
  }
  End("The nearest of " +
      archive::GroupedCount(static_cast<std::int64_t>(vectors.Value().Count())) +
      " soundings, in its season and around its hour.");
}

void ArchiveWindow::OpenRow(int row) {
  if (row < 0 || row >= rows_->rowCount()) return Say("Choose a sounding first.");
  if (const auto member = MemberOf(row)) {
    changed_(OpenSounding(program_, member->File, member->Index));
  }
}

// None in a row that is no sounding.
std::optional<SoundingSet::Member> ArchiveWindow::MemberOf(int row) const {
  const QTableWidgetItem* first = rows_->item(row, 0);
  if (first == nullptr || !first->data(kPlaceRole).isValid()) return std::nullopt;
  return SoundingSet::Member{.File = PathFromText(first->data(kFileRole).toString().toStdString()),
                             .Index = first->data(kPlaceRole).toInt()};
}

// The rows that are selected when there are several, else those from the first on, as they stand.
std::vector<SoundingSet::Member> ArchiveWindow::Chosen(int most) const {
  const QItemSelectionModel* selection = rows_->selectionModel();
  const bool areSelected = selection->selectedRows().size() > 1;
  std::vector<SoundingSet::Member> chosen;
  for (int row = 0; row < rows_->rowCount() && static_cast<int>(chosen.size()) < most; ++row) {
    if (areSelected && !selection->isRowSelected(row, QModelIndex())) continue;
    if (auto member = MemberOf(row)) chosen.push_back(std::move(*member));
  }
  return chosen;
}

// Whether the catalogue of the form is the one of the option.
void ArchiveWindow::FollowOption() {
  const std::string name = catalogue_->text().toStdString();
  percentiles_->setEnabled(!name.empty());
  percentiles_->setChecked(!name.empty() && name == program_.Set.System.Catalogue);
}

void ArchiveWindow::ChooseForPercentiles(bool isChosen) {
  program_.Set.System.Catalogue = isChosen ? catalogue_->text().toStdString() : std::string();
  changed_({.View = true});
}

void ArchiveWindow::Say(const std::string& text) {
  remark_->setText(ToQString(text));
}

std::span<const WindowRow> ArchiveWindows() {
  return kArchiveRows;
}

}  // namespace vexa
