#include "app/mountain_forms.h"

#include <cmath>
#include <limits>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QEvent>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QVBoxLayout>
#include <utility>

#include "app/edit_actions.h"
#include "app/option_control.h"
#include "app/qt_text.h"
#include "app/remark_label.h"
#include "app/sounding_window.h"
#include "app/text_editor.h"
#include "core/error_report.h"
#include "core/files.h"
#include "core/numbers.h"
#include "mountainwave/mountain_file.h"
#include "program/edit_commands.h"
#include "program/source_edit.h"
#include "program/wave_displays.h"
#include "program/wave_view.h"

namespace vexa {
namespace {

using mountainwave::MountainChoice;
using mountainwave::MountainEntry;
using mountainwave::MountainParameters;
using mountainwave::WaveOptions;
using mountainwave::WaveUnits;

constexpr std::string_view kListingsHint =
    "For wave analysis details use the Listings option on the Mountain-Wave dispaly.";
constexpr std::string_view kTwoHint =
    "Use the Mountain-Wave display to analyze wave turbulence from double mountains.";

WaveUnits UnitsOf(const Program& program) {
  return WaveOptionsOf(program, program.Set).Units;
}

void Warn(const Program& program, std::string title, std::string text) {
  if (program.Current.Ask == nullptr) return;
  program.Current.Ask->Ask({.Title = std::move(title), .Text = std::move(text)});
}

QString InLines(const std::vector<std::string>& lines) {
  QString text;
  for (const std::string& line : lines) text += (text.isEmpty() ? "" : "\n") + ToQString(line);
  return text;
}

}  // namespace

void FollowWaveForms(const QWidget& window) {
  for (QDialog* dialog : window.findChildren<QDialog*>()) {
    if (auto* form = dynamic_cast<WaveFollower*>(dialog)) form->Follow();
  }
}

const std::array<Mountains::Field, 7> Mountains::kFields = {{
    {"txtHeight1", &MountainEntry::Height, Field::Height, false, "&Height"},
    {"txtHalfWidth1", &MountainEntry::HalfWidth, Field::HalfWidth, false, "Half-&width"},
    {"txtAxis1", &MountainEntry::Axis, Field::Axis, false, "Ridge &axis"},
    {"txtDistance", &MountainEntry::Distance, Field::Distance, true, "&Separation"},
    {"txtHeight2", &MountainEntry::Height2, Field::Height, true, "H&eight"},
    {"txtHalfWidth2", &MountainEntry::HalfWidth2, Field::HalfWidth, true, "Half-w&idth"},
    {"txtAxis2", &MountainEntry::Axis2, Field::Axis, true, "Ridge a&xis"},
}};

Mountains::Mountains(Program& program, std::function<void(Changes)> show,
                     std::function<void(std::string_view)> open, QWidget* parent)
    : QDialog(parent), program_(program), show_(std::move(show)), open_(std::move(open)) {
  setObjectName(QStringLiteral("Mountains"));
  setWindowTitle(QStringLiteral("Mountains"));
  auto* column = new QVBoxLayout(this);
  auto* choice = new QHBoxLayout;
  one_ = new QRadioButton(QStringLiteral("&One mountain"), this);
  one_->setObjectName(QStringLiteral("optOne"));
  two_ = new QRadioButton(QStringLiteral("&Two mountains"), this);
  two_->setObjectName(QStringLiteral("optTwo"));
  two_->setToolTip(ToQString(kTwoHint));
  default_ = new QCheckBox(QStringLiteral("&Default mountain"), this);
  default_->setObjectName(QStringLiteral("chkDefault"));
  default_->setToolTip(QStringLiteral(
      "1 km high and as wide as makes the wave strongest, whatever the wind's direction."));
  for (QWidget* widget : {static_cast<QWidget*>(one_), static_cast<QWidget*>(two_),
                          static_cast<QWidget*>(default_)}) {
    choice->addWidget(widget);
  }
  column->addLayout(choice);
  BuildFields();
  prompt_ = new RemarkLabel(this);
  prompt_->setObjectName(QStringLiteral("Prompt"));
  prompt_->setMinimumHeight(3 * fontMetrics().lineSpacing());
  column->addWidget(prompt_);
  BuildButtons();
  for (QRadioButton* button : {one_, two_}) {
    connect(button, &QRadioButton::clicked, this, [this] { ChooseCount(); });
  }
  connect(default_, &QCheckBox::clicked, this, [this](bool on) {
    const bool wasEntered = program_.Displays.Of<WaveView>().State.Entered.First.HeightFt > 0;
    show_(ChooseMountains(program_, on           ? MountainChoice::Default
                                    : wasEntered ? MountainChoice::Entered
                                                 : MountainChoice::Station));
  });
  Follow();
}

void Mountains::BuildFields() {
  auto* row = new QHBoxLayout;
  const auto group = [&](const char* title) {
    auto* box = new QGroupBox(QString::fromLatin1(title), this);
    row->addWidget(box);
    return new QFormLayout(box);
  };
  auto* first = group("Mountain #1");
  auto* second = group("Mountain #2");
  for (std::size_t i = 0; i < kFields.size(); ++i) {
    auto* edit = new QLineEdit(this);
    edit->setObjectName(QString::fromLatin1(kFields[i].Name));
    edit->installEventFilter(this);
    connect(edit, &QLineEdit::textEdited, this, [this] { Try(); });
    connect(edit, &QLineEdit::editingFinished, this, [this, i] { Left(i); });
    edits_[i] = edit;
    captions_[i] = new QLabel(this);
    captions_[i]->setBuddy(edit);
    (kFields[i].OfSecond ? second : first)->addRow(captions_[i], edit);
  }
  static_cast<QVBoxLayout*>(layout())->addLayout(row);
}

void Mountains::BuildButtons() {
  auto* buttons = new QHBoxLayout;
  const auto add = [&](const char* name, const char* caption, const char* hint, auto does) {
    auto* button = new QPushButton(QString::fromLatin1(caption), this);
    button->setObjectName(QString::fromLatin1(name));
    button->setToolTip(QString::fromLatin1(hint));
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, does);
    buttons->addWidget(button);
  };
  add("cmdRun", "&Run", "Check the values and show the waves", [this] { Run(); });
  add("cmdOpen", "O&pen Sounding", "Choose another sounding", [this] { open_("mnuOpen"); });
  add("cmdKeep", "&Keep in Sounding", "Keep these mountains in the sounding's native file",
      [this] { Keep(); });
  add("cmdStation", "Stat&ion's", "Take the mountains of the station",
      [this] { show_(ChooseMountains(program_, MountainChoice::Station)); });
  add("cmdClose", "C&lose", "", [this] { close(); });
  static_cast<QVBoxLayout*>(layout())->addLayout(buttons);
}

bool Mountains::eventFilter(QObject* watched, QEvent* event) {
  for (std::size_t i = 0; i < edits_.size(); ++i) {
    if (watched == edits_[i] && event->type() == QEvent::FocusIn) ShowPrompt(i);
  }
  return QDialog::eventFilter(watched, event);
}

void Mountains::ShowPrompt(std::size_t field) {
  const WaveUnits units = UnitsOf(program_);
  switch (kFields[field].Kind) {
    case Field::Height:
      return prompt_->setText(InLines(mountainwave::HeightPrompt(units.Height)));
    case Field::HalfWidth:
      return prompt_->setText(InLines(mountainwave::HalfWidthPrompt(units.Distance)));
    case Field::Axis:
      return prompt_->setText(InLines(mountainwave::AxisPrompt()));
    case Field::Distance:
      return prompt_->setText(InLines(mountainwave::DistancePrompt(units.Distance)));
  }
}

// What was not typed keeps its value in full.
MountainEntry Mountains::Typed() const {
  MountainEntry entry = inForce_;
  for (std::size_t i = 0; i < kFields.size(); ++i) {
    const QString text = edits_[i]->text().trimmed();
    if (text == shown_[i] && !text.isEmpty()) continue;
    entry.*kFields[i].Value =
        ParseNumber(text.toStdString()).value_or(std::numeric_limits<double>::quiet_NaN());
  }
  entry.HasSecond = two_->isChecked();
  return entry;
}

bool Mountains::IsGood(const MountainEntry& entry) const {
  const WaveUnits units = UnitsOf(program_);
  if (!mountainwave::OutOfRange(entry, units).empty()) return false;
  const MountainParameters mountains = FromEntry(entry, units);
  const SoundingRecord& sounding = program_.Current.Record;
  return !mountainwave::IsBelowStation(mountains.First.HeightFt, sounding) &&
         (!entry.HasSecond || !mountainwave::IsBelowStation(mountains.Second.HeightFt, sounding));
}

void Mountains::Try() {
  const MountainEntry entry = Typed();
  if (!IsGood(entry) || !program_.Gate.IsOpen()) return;
  isFollowing_ = true;  // the texts stay as they are typed
  show_(EnterMountains(program_, FromEntry(entry, UnitsOf(program_))));
  isFollowing_ = false;
}

void Mountains::Left(std::size_t field) {
  QLineEdit* edit = edits_[field];
  if (!edit->isModified()) return;
  edit->setModified(false);
  const auto value = ParseNumber(edit->text().trimmed().toStdString());
  if (kFields[field].Kind != Field::Height || !value) return;
  const double heightFt = mountainwave::ToFeet(*value, UnitsOf(program_).Height);
  if (!mountainwave::IsBelowStation(heightFt, program_.Current.Record)) return;
  edit->setText(shown_[field]);
  Warn(program_, "Warning ...", std::string(mountainwave::kBelowStation));
}

void Mountains::Run() {
  if (!default_->isChecked() || Typed().Height > 0) {
    const MountainEntry entry = Typed();
    const WaveUnits units = UnitsOf(program_);
    if (const std::string_view name = mountainwave::OutOfRange(entry, units); !name.empty()) {
      return Warn(program_, "Mountain-Wave",
                  std::string(name) + "\n" + std::string(mountainwave::kOutOfRange));
    }
    if (!IsGood(entry)) {
      return Warn(program_, "Warning ...", std::string(mountainwave::kBelowStation));
    }
    show_(EnterMountains(program_, FromEntry(entry, units)));
  }
  open_("MountainWave");
}

void Mountains::Keep() {
  if (program_.Current.Record.NumTempLevels() == 0) return;
  SoundingRecord edited = program_.Current.Record;
  mountainwave::StoreMountains(edited, MountainsNow(program_));
  if (TakeIntoNative(program_, std::move(edited), show_)) {
    show_(ChooseMountains(program_, MountainChoice::Station));
  }
}

void Mountains::ChooseCount() {
  prompt_->setText(ToQString(kListingsHint));
  for (std::size_t i = 0; i < kFields.size(); ++i) {
    if (kFields[i].OfSecond) edits_[i]->setEnabled(two_->isChecked());
  }
  Try();
}

void Mountains::ShowTexts() {
  const WaveUnits units = UnitsOf(program_);
  const bool isFeet = units.Height == LengthUnits::Feet;
  const mountainwave::Site site = MountainsNow(program_);
  inForce_ = site ? ToEntry(*site, units) : MountainEntry{};
  for (std::size_t i = 0; i < kFields.size(); ++i) {
    const Field& field = kFields[i];
    const std::string unit = field.Kind == Field::Height ? (isFeet ? "ft MSL" : "m MSL")
                             : field.Kind == Field::Axis ? "degrees"
                                                         : std::string(Word(units.Distance));
    captions_[i]->setText(QString::fromLatin1(field.Caption) + ", " + ToQString(unit));
    const int decimals = field.Kind == Field::HalfWidth || field.Kind == Field::Distance ? 1 : 0;
    const bool isGiven = site && (!field.OfSecond || site->HasSecond());
    shown_[i] = isGiven ? ToQString(Shortest(Rounded(inForce_.*field.Value, decimals))) : QString();
  }
}

void Mountains::Follow() {
  ShowTexts();
  const mountainwave::Site site = MountainsNow(program_);
  default_->setChecked(!site);
  if (isFollowing_) return;
  (site && site->HasSecond() ? two_ : one_)->setChecked(true);
  for (std::size_t i = 0; i < kFields.size(); ++i) {
    edits_[i]->setText(shown_[i]);
    edits_[i]->setModified(false);
    edits_[i]->setEnabled(!kFields[i].OfSecond || two_->isChecked());
  }
}

WaveOptionForm::WaveOptionForm(Program& program, std::string_view form, const QString& title,
                               std::function<void(Changes)> show, QWidget* parent)
    : QDialog(parent), program_(program), show_(std::move(show)) {
  setObjectName(ToQString(form));
  setWindowTitle(title);
  auto* column = new QVBoxLayout(this);
  auto* around = new QScrollArea(this);  // on a low screen
  around->setWidgetResizable(true);
  around->setFrameShape(QFrame::NoFrame);
  auto* page = new QWidget(around);
  auto* rows = new QFormLayout(page);
  for (const OptionRow& row : mountainwave::WaveOptionRows()) {
    if (row.Place != form) continue;
    const OptionControl control = MakeOptionControl(
        row, {.Entered = [this, &row](const std::string& text) { Enter(row, text); }}, page);
    if (control.ShowsCaption) {
      control.Name(ToQString(row.Caption));
      rows->addRow(control.Widget);
    } else {
      rows->addRow(ToQString(row.Caption), control.Widget);
    }
    controls_.push_back({&row, control.Show, control.Widget});
  }
  around->setWidget(page);
  around->setMinimumWidth(page->sizeHint().width() + 24);
  column->addWidget(around, 1);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::close);
  column->addWidget(buttons);
  WaveOptionForm::Follow();
}

QWidget* WaveOptionForm::Below(QWidget* widget) {
  auto* column = static_cast<QVBoxLayout*>(layout());
  column->insertWidget(column->count() - 1, widget);
  return widget;
}

void WaveOptionForm::Enter(const OptionRow& row, const std::string& text) {
  WaveOptions options = WaveOptionsOf(program_, program_.Set);
  if (!row.Read(options, text)) return;
  show_(ChangeWaveOptions(program_, options));
  if (const auto fault = KeepWaveOptions(program_)) program_.Doc.Report(*fault);
}

void WaveOptionForm::Follow() {
  const WaveOptions options = WaveOptionsOf(program_, program_.Set);
  for (const Shown& control : controls_) {
    control.Show(control.Row->Write(options));
    control.Widget->setEnabled(control.Row->Matters == nullptr || control.Row->Matters(options));
  }
}

DiagramM::DiagramM(Program& program, std::function<void(Changes)> show, QWidget* parent)
    : WaveOptionForm(program, mountainwave::kDiagramForm, QStringLiteral("Mountain-Wave Diagram"),
                     std::move(show), parent) {
  rotors_ = new QCheckBox(QStringLiteral("&Rotor hints under the crests of strong waves"), this);
  rotors_->setObjectName(QStringLiteral("chkRotors"));
  connect(rotors_, &QCheckBox::clicked, this, [this](bool on) {
    program_.Displays.Of<WaveView>().State.RotorHints = on;
    show_({.View = true});
  });
  Below(rotors_);
  state_ = new QLabel(this);
  state_->setObjectName(QStringLiteral("DecayState"));
  Below(state_);
  Below(new RemarkLabel(ToQString(mountainwave::kDecayRemark), this));
  resize(sizeHint().expandedTo({420, 540}));
  DiagramM::Follow();
}

void DiagramM::Follow() {
  WaveOptionForm::Follow();
  rotors_->setChecked(program_.Displays.Of<WaveView>().State.RotorHints);
  state_->setText(
      ToQString(mountainwave::DecayText(WaveOptionsOf(program_, program_.Set).DecayOn)));
}

MountainUnits::MountainUnits(Program& program, std::function<void(Changes)> show, QWidget* parent)
    : WaveOptionForm(program, mountainwave::kUnitsForm, QStringLiteral("Mountain-Wave Units"),
                     std::move(show), parent) {
  resize(sizeHint().expandedTo({420, 300}));
}

WaveListing::WaveListing(Program& program, QWidget* parent)
    : TextWindow(program, {}, parent), program_(program) {
  WaveListing::Follow();
}

void WaveListing::Follow() {
  Show({.Name = "WaveListing",
        .Title = "Mountain-Wave Listing",
        .FileName = "MountainWave.txt",
        .Lines = ListWaves(program_)});
}

namespace {

std::function<void(Changes)> DrawAnew(const Opening& opening) {
  return [over = &opening.Over](Changes changes) { over->Show(changes); };
}

// One window of each kind.
template <class Form, class Make>
void BringUpForm(const Opening& opening, Make make) {
  for (QDialog* dialog : opening.Over.findChildren<QDialog*>()) {
    if (auto* form = dynamic_cast<Form*>(dialog)) {
      form->show();
      form->raise();
      return form->activateWindow();
    }
  }
  Form* form = make();
  form->setAttribute(Qt::WA_DeleteOnClose);
  form->show();
}

void OpenMountains(const Opening& opening) {
  BringUpForm<Mountains>(opening, [&] {
    return new Mountains(
        opening.In, DrawAnew(opening),
        [over = &opening.Over](std::string_view name) { over->Open(name); }, &opening.Over);
  });
}

template <class Form>
void OpenOptions(const Opening& opening) {
  BringUpForm<Form>(opening, [&] { return new Form(opening.In, DrawAnew(opening), &opening.Over); });
}

void OpenListing(const Opening& opening) {
  BringUpForm<WaveListing>(opening, [&] { return new WaveListing(opening.In, &opening.Over); });
}

// The file of mountains in the text editor: what cannot be read is not saved.
void EditMountainFile(const Opening& opening) {
  Program& program = opening.In;
  const std::filesystem::path file = MountainFileOf(program);
  const Outcome<std::string> bytes = ReadFile(file);
  if (!bytes && bytes.Error().Number == kFaultFileNotFound) {
    return Warn(program, {}, std::string(mountainwave::kMountainFileMissing));
  }
  const std::string name = TextFromPath(file.filename());
  const Outcome<EditableText> text =
      bytes ? TextToEdit(bytes.Value(), name) : Outcome<EditableText>(bytes.Error());
  if (!text) {
    program.Doc.Report(text.Error());
    return;
  }
  const auto accepted = [file, name, show = DrawAnew(opening)](const std::string& edited) {
    auto fault = mountainwave::FindMountains(edited, name, mountainwave::kEveryStation).Wrong;
    if (!fault) fault = SaveFile(file, edited);
    if (!fault) show({.View = true});
    return fault;
  };
  auto* editor = new TextEditor(text.Value(), QStringLiteral("Edit Mountain Parameter File"),
                                accepted, {}, &opening.Over);
  editor->AskThrough(program.Current.Ask);
  editor->setAttribute(Qt::WA_DeleteOnClose);
  editor->open();
}

constexpr WindowRow kWaveWindows[] = {
    {.Name = "Mountains", .Open = OpenMountains},
    {.Name = "DiagramM", .Open = OpenOptions<DiagramM>},
    {.Name = "MountainUnits", .Open = OpenOptions<MountainUnits>},
    {.Name = "WaveListing", .Open = OpenListing},
    {.Name = "MountainFile", .Open = EditMountainFile, .IsWindow = false},  // in a TextEditor
};

}  // namespace

std::span<const WindowRow> WaveWindows() {
  return kWaveWindows;
}

}  // namespace vexa
