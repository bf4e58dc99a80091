#include "app/level_editor.h"

#include <cmath>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>
#include <string>
#include <utility>

#include "app/edit_grid.h"
#include "app/named_controls.h"
#include "app/qt_text.h"
#include "app/remark_label.h"
#include "core/numbers.h"

namespace vexa {
namespace {

constexpr int kMaxElevM = 6000;

struct HeadingRow {
  const char* Name;
  const char* Caption;
  std::string (*Text)(const SoundingRecord&);
  /// Takes a text; what is wrong with it, else empty.
  std::string (*Take)(SoundingRecord&, const std::string&);
};

std::string Angle(const SoundingRecord& record, double degrees) {
  if (record.LatHemi.empty() || record.LonHemi.empty()) return {};
  return Shortest(Rounded(degrees, 4));
}

std::string TakeElevation(SoundingRecord& record, const std::string& text) {
  if (Trim(text).empty()) {
    SetElevationUnknown(record);
    return {};
  }
  const std::optional<int> elevM = ParseWhole(text);
  if (!elevM) return "Elevation: \"" + text + "\" is no whole number";
  if (*elevM > kMaxElevM || *elevM < -500) return "Elevation: outside -500 to 6000 m";
  SetElevation(record, *elevM);
  return {};
}

void SetPositionUnknown(SoundingRecord& record) {
  record.LatHemi.clear();
  record.LonHemi.clear();
  record.LatSigned = record.LonSigned = record.LatValue = 0;
  record.LonValue = 0;
  record.LatParts = record.LonParts = {};
}

// Both or none, the latitude first.
template <bool isLat>
std::string TakeAngle(SoundingRecord& record, const std::string& text) {
  const double most = isLat ? 90 : 180;
  if (isLat && Trim(text).empty()) {
    SetPositionUnknown(record);
    return {};
  }
  if (!isLat && (record.LatHemi.empty() || Trim(text).empty())) {
    return record.LatHemi.empty() ? "Latitude: it is wanted where there is a longitude"
                                  : "Longitude: it is wanted where there is a latitude";
  }
  const std::optional<double> angle = ParseNumber(text);
  if (!angle || std::abs(*angle) > most) {
    return std::string(isLat ? "Latitude" : "Longitude") + ": a number from -" + Shortest(most) +
           " to " + Shortest(most) + " is wanted";
  }
  SetDecimalPosition(record, isLat ? *angle : record.LatSigned, isLat ? record.LonSigned : *angle);
  return {};
}

constexpr HeadingRow kHeading[] = {
    {"StationTitle", "&Title:", [](const SoundingRecord& record) { return record.StationTitle; },
     [](SoundingRecord& record, const std::string& text) {
       record.StationTitle = CutTitle(text);
       return std::string();
     }},
    {"Elevation", "&Elevation (m, empty: not known):",
     [](const SoundingRecord& record) {
       return record.ElevUnknown ? std::string() : Shortest(record.ElevM);
     },
     TakeElevation},
    {"Latitude", "&Latitude (north positive, empty: not known):",
     [](const SoundingRecord& record) { return Angle(record, record.LatSigned); }, TakeAngle<true>},
    {"Longitude", "L&ongitude (east positive, empty: not known):",
     [](const SoundingRecord& record) { return Angle(record, record.LonSigned); },
     TakeAngle<false>},
};

}  // namespace

LevelEditor::LevelEditor(const SoundingRecord& record, EditorPages pages,
                         std::function<void(SoundingRecord)> accepted, QWidget* parent)
    : EditorDialog(parent), record_(record), accepted_(std::move(accepted)) {
  setObjectName(QStringLiteral("LevelEditor"));
  setWindowTitle(pages == EditorPages::Temps   ? QStringLiteral("Add/Delete Temperature Data")
                 : pages == EditorPages::Winds ? QStringLiteral("Add/Delete Wind Data")
                                               : QStringLiteral("Edit DeCoded Data"));
  auto* layout = new QVBoxLayout(this);
  pages_ = new QTabWidget(this);
  layout->addWidget(pages_, 1);
  remark_ = new RemarkLabel(this);
  remark_->setObjectName(QStringLiteral("LevelRemark"));
  if (pages != EditorPages::Winds) {
    temps_ = new EditGrid(LevelKind::Temps, record, this);
    temps_->setObjectName(QStringLiteral("TempLevels"));
    pages_->addTab(LevelPage(temps_, QStringLiteral("&Add Level")), QStringLiteral("Temperatures"));
  }
  if (pages != EditorPages::Temps) {
    winds_ = new EditGrid(LevelKind::Winds, record, this);
    winds_->setObjectName(QStringLiteral("WindLevels"));
    pages_->addTab(LevelPage(winds_, QStringLiteral("A&dd Wind Level")), QStringLiteral("Winds"));
  }
  if (pages == EditorPages::All) pages_->addTab(HeadingPage(), QStringLiteral("Heading"));
  layout->addWidget(remark_);
  AddOkAndCancel(*layout, this, [this] { return Apply(); });
  ShowProblems();
  (temps_ != nullptr ? temps_ : winds_)->setFocus();  // to be typed into at once
  resize(560, 560);
}

QWidget* LevelEditor::HeadingPage() {
  auto* page = new QWidget(pages_);
  auto* form = new QFormLayout(page);
  for (const HeadingRow& row : kHeading) {
    auto* field = new QLineEdit(ToQString(row.Text(record_)), page);
    field->setObjectName(QString::fromLatin1(row.Name));
    form->addRow(QString::fromLatin1(row.Caption), field);
    heading_.push_back(field);
  }
  return page;
}

QWidget* LevelEditor::LevelPage(EditGrid* grid, const QString& addCaption) {
  auto* page = new QWidget(pages_);
  auto* layout = new QVBoxLayout(page);
  layout->addWidget(grid, 1);
  grid->OnEdited([this] { ShowProblems(); });

  auto* add = new QHBoxLayout;
  std::vector<QLineEdit*> fields;
  for (const std::string_view caption : grid->Table().Captions()) {
    auto* field = new QLineEdit(page);
    field->setPlaceholderText(ToQString(caption));
    field->setAccessibleName(ToQString(caption));
    add->addWidget(field);
    fields.push_back(field);
    adding_.push_back(field);
  }
  const auto button = [&](const QString& caption, QHBoxLayout* into, auto&& does) {
    auto* made = new QPushButton(caption, page);
    made->setAutoDefault(false);
    connect(made, &QPushButton::clicked, this, does);
    into->addWidget(made);
    return made;
  };
  auto* adds = button(addCaption, add, [this, grid, fields] {
    std::vector<std::string> texts;
    for (const QLineEdit* field : fields) texts.push_back(field->text().toStdString());
    if (const auto fault = grid->AddInOrder(texts)) return Say(fault->Detail);
    for (QLineEdit* field : fields) field->clear();
    fields.front()->setFocus();
  });
  connect(fields.back(), &QLineEdit::returnPressed, adds, &QPushButton::click);
  adds->setObjectName(grid->objectName() + QStringLiteral("Add"));
  layout->addLayout(add);

  auto* change = new QHBoxLayout;
  button(QStringLiteral("&Insert Row"), change, [grid] { grid->InsertAbove(); });
  button(QStringLiteral("Dele&te Rows"), change, [grid] { grid->DeleteSelected(); });
  change->addStretch(1);
  layout->addLayout(change);
  return page;
}

void LevelEditor::GoTo(const QcFinding& finding) {
  if (finding.Number == 7 && !heading_.empty()) {
    pages_->setCurrentIndex(pages_->count() - 1);
    heading_[1]->setFocus();
  } else {
    const bool isWind = finding.Number >= 2 && finding.Number <= 4;
    EditGrid* grid = isWind ? winds_ : temps_;
    if (grid == nullptr || finding.Level < 1 || finding.Level > grid->rowCount()) return;
    pages_->setCurrentIndex(isWind && temps_ != nullptr ? 1 : 0);
    constexpr int kColumns[] = {0, 0, 0, 1, 2, 2, 1};  // of the value that a finding is about
    grid->GoTo(finding.Level - 1, kColumns[finding.Number]);
  }
  Say(QcText(finding.Number));
}

bool LevelEditor::ApplyHeading(SoundingRecord& record) {
  for (std::size_t i = 0; i < heading_.size(); ++i) {
    const HeadingRow& row = kHeading[i];
    const std::string text = heading_[i]->text().toStdString();
    if (text == row.Text(record)) continue;
    const std::string wrong = row.Take(record, text);
    if (wrong.empty()) continue;
    pages_->setCurrentIndex(pages_->count() - 1);
    heading_[i]->setFocus();
    Say(wrong);
    return false;
  }
  return true;
}

bool LevelEditor::ApplyGrid(EditGrid* grid, SoundingRecord& record) {
  if (grid == nullptr) return true;
  const std::optional<Fault> fault = grid->Table().ApplyTo(record);
  if (!fault) return true;
  pages_->setCurrentIndex(grid == winds_ && temps_ != nullptr ? 1 : 0);
  if (!grid->Problems().empty()) {
    grid->GoTo(grid->Problems().front().Row, grid->Problems().front().Column);
  }
  Say(fault->Detail);
  return false;
}

bool LevelEditor::Apply() {
  SoundingRecord edited = record_;
  if (!ApplyGrid(temps_, edited) || !ApplyGrid(winds_, edited) || !ApplyHeading(edited)) {
    return false;
  }
  accepted_(std::move(edited));
  Keep();
  return true;
}

std::string LevelEditor::Typed() const {
  std::string text;
  for (const EditGrid* grid : {temps_, winds_}) {
    if (grid == nullptr) continue;
    text += grid->Table().Copy(0, grid->Table().Rows()) + '\n' + TypingIn(*grid);
  }
  for (const auto* fields : {&heading_, &adding_}) {
    for (const QLineEdit* field : *fields) text += field->text().toStdString() + '\n';
  }
  return text;
}

void LevelEditor::ShowProblems() {
  std::string text;
  const auto tell = [&text](const char* what, const EditGrid* grid) {
    if (grid == nullptr || grid->Problems().empty()) return;
    const TableProblem& first = grid->Problems().front();
    const std::size_t others = grid->Problems().size() - 1;
    if (!text.empty()) text += '\n';
    text += std::string(what) + " row " + Shortest(first.Row + 1) + ": " + first.Reason;
    if (others > 0) {
      text += "; wrong rows besides: " + Shortest(static_cast<int>(others));
    }
  };
  tell("Temperature", temps_);
  tell("Wind", winds_);
  Say(text);
}

void LevelEditor::Say(std::string_view text) {
  remark_->setText(ToQString(text));
}

}  // namespace vexa
