#include "app/mountain_wave.h"

#include <algorithm>
#include <QAction>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QScreen>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <utility>

#include "app/drag_view.h"
#include "app/qt_text.h"
#include "app/widget_surface.h"
#include "core/files.h"
#include "core/numbers.h"
#include "mountainwave/mountain_file.h"
#include "program/wave_displays.h"

namespace vexa {
namespace {

using mountainwave::MountainChoice;
using mountainwave::Wave;
using mountainwave::WaveState;

constexpr QSize kSmallestDisplay(640, 480);

constexpr std::string_view kMountains[] = {"Station's mountains", "Default mountain",
                                           "Entered mountains"};
constexpr std::string_view kLayers[] = {"Sounding: no waves", "Sounding: selected wave",
                                        "Sounding: all waves"};

std::string EntryOfWave(int number, const Wave& wave, const mountainwave::WaveUnits& units) {
  return "#" + Shortest(number) + "  " + Mask(wave.At.Press, "###0") + " mb  " + Tag(wave) + "  " +
         mountainwave::WaveText(wave, units);
}

}  // namespace

MountainWave::MountainWave(Program& program, const DisplayRow& row, Events events, QWidget* parent)
    : DisplayWindow(program, row, std::move(events), parent) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  BuildMenus(*this);
  BuildControls(*this);
  column->addWidget(view_, 1);
  reading_ = new QLabel(this);
  reading_->setObjectName(QStringLiteral("WaveReading"));
  reading_->setTextFormat(Qt::PlainText);
  reading_->setMargin(3);
  column->addWidget(reading_);
  room_ = view_;
  room_->installEventFilter(this);
  view_->OnPointer([this](const std::optional<vexa::Point>& at) { ShowReading(at); });
  Place();
  Follow();
  view_->setFocus();
}

MountainWave::~MountainWave() {
  view_->OnPointer({});
}

// On a smaller screen than it was left on it becomes smaller.
void MountainWave::Place() {
  const WaveState& state = program_.Displays.Of<WaveView>().State;
  const QRect room = screen()->availableGeometry();
  resize(QSize(state.Width, state.Height)
             .boundedTo(room.size() - QSize(20, 40))
             .expandedTo(kSmallestDisplay));
  if (state.Left == 0 && state.Top == 0) return;
  move(std::clamp(state.Left, room.left(), std::max(room.left(), room.right() - width())),
       std::clamp(state.Top, room.top(), std::max(room.top(), room.bottom() - height())));
}

void MountainWave::AddEntry(QMenu& menu, const char* name, const char* caption,
                            std::function<void()> does) {
  QAction* action = menu.addAction(QString::fromLatin1(caption));
  action->setObjectName(QString::fromLatin1(name));
  connect(action, &QAction::triggered, this, std::move(does));
}

// An entry of the menu that every display has.
void MountainWave::Press(const char* entry) {
  if (auto* action = findChild<QAction*>(QString::fromLatin1(entry))) action->trigger();
}

void MountainWave::BuildMenus(QWidget& above) {
  auto* bar = new QMenuBar(this);
  above.layout()->setMenuBar(bar);
  const auto opens = [this](std::string_view name, std::string_view at = {}) {
    return [this, name, at] { events_.Open(name, at); };
  };
  QMenu* file = bar->addMenu(QStringLiteral("&File"));
  AddEntry(*file, "mnuOpen", "&Open Wave Display...", [this] { ChooseFileToOpen(); });
  AddEntry(*file, "mnuSaveFile", "&Save Wave Display As...", [this] { SaveState(); });
  file->addSeparator();
  AddEntry(*file, "mnuSaveImage", "Save &Image to File...", [this] { Press("mnuSavePicture"); });
  AddEntry(*file, "mnuCopy", "&Copy Image to ClipBoard", [this] { Press("mnuCopyPicture"); });
  AddEntry(*file, "mnuPrint", "&Print Image...", [this] { Press("mnuPrintPicture"); });
  file->addSeparator();
  AddEntry(*file, "mnuClose", "C&lose", [this] { close(); });
  QMenu* edit = bar->addMenu(QStringLiteral("&Edit"));
  edit->setObjectName(QStringLiteral("mnuEdit"));
  AddEntry(*edit, "mnuEditMountain", "Edit &Mountain Parameter File", opens("MountainFile"));
  AddEntry(*edit, "mnuEditSound", "Edit &DeCoded Data", opens("mnuEditFile"));
  AddEntry(*edit, "mnuEditSource", "Edit &Source Data", opens("mnuEditData"));
  QMenu* options = bar->addMenu(QStringLiteral("&Options"));
  AddEntry(*options, "mnuMountains", "&Mountains...", opens("Mountains"));
  AddEntry(*options, "mnuDiagramM", "&Diagram...", opens("DiagramM"));
  AddEntry(*options, "mnuUnits", "&Units...", opens("MountainUnits"));
  AddEntry(*options, "mnuSweep", "&Sweep over axis and width...", opens("WaveSweep"));
  AddEntry(*options, "mnuSeries", "Soundings in &turn...", opens("WaveSeries"));
  AddEntry(*options, "mnuListings", "&Listings...", opens("WaveListing"));
  QMenu* help = bar->addMenu(QStringLiteral("&Help"));
  AddEntry(*help, "mnuKeys", "&Keys", opens("HelpWindow", "keys"));
  AddEntry(*help, "mnuTopic", "&Mountain waves", opens("HelpWindow", row_.Topic));
}

void MountainWave::BuildControls(QWidget& above) {
  auto* line = new QHBoxLayout;
  line->setContentsMargins(4, 2, 4, 2);
  const auto list = [&](const char* name, const char* about,
                        std::span<const std::string_view> words) {
    auto* box = new QComboBox(this);
    box->setObjectName(QString::fromLatin1(name));
    box->setAccessibleName(QString::fromLatin1(about));
    box->setToolTip(QString::fromLatin1(about));
    box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    box->setMinimumContentsLength(14);
    for (const std::string_view word : words) box->addItem(ToQString(word));
    line->addWidget(box, 2);
    return box;
  };
  wave_ = list("cboWave", "The wave that the diagram shows, by the order of the listing", {});
  line->setStretchFactor(wave_, 3);  // a wave's entry is the longest
  mountains_ = list("cboMountains", "Which mountains", kMountains);
  layers_ = list("ToolSkewT", "Waves that the thermodynamic diagram marks", kLayers);
  auto* enter = new QPushButton(QStringLiteral("&Mountains..."), this);
  enter->setObjectName(QStringLiteral("cmdMountains"));
  connect(enter, &QPushButton::clicked, this, [this] { events_.Open("Mountains", {}); });
  line->addWidget(enter);
  auto* listing = new QPushButton(QStringLiteral("&Listings..."), this);
  listing->setObjectName(QStringLiteral("cmdListings"));
  connect(listing, &QPushButton::clicked, this, [this] { events_.Open("WaveListing", {}); });
  line->addWidget(listing);
  static_cast<QVBoxLayout*>(above.layout())->addLayout(line);
  connect(wave_, &QComboBox::activated, this,
          [this](int index) { events_.Changed(SelectWave(program_, index + 1)); });
  connect(mountains_, &QComboBox::activated, this, [this](int index) {
    const auto choice = static_cast<MountainChoice>(index);
    const bool isEntered = program_.Displays.Of<WaveView>().State.Entered.First.HeightFt > 0;
    if (choice == MountainChoice::Entered && !isEntered) {
      ShowControls();
      return events_.Open("Mountains", {});
    }
    events_.Changed(ChooseMountains(program_, choice));
  });
  connect(layers_, &QComboBox::activated, this, [this](int index) {
    events_.Changed(MarkWaves(program_, static_cast<WaveLayers>(index)));
  });
}

void MountainWave::ShowControls() {
  const std::vector<const Wave*> waves = shown_.Waves.All();
  wave_->clear();
  int number = 0;
  for (const Wave* wave : waves) {
    wave_->addItem(ToQString(EntryOfWave(++number, *wave, shown_.Set.Units)));
    if (wave == shown_.Selected) wave_->setCurrentIndex(number - 1);
  }
  wave_->setEnabled(!waves.empty());
  if (waves.empty()) wave_->addItem(QStringLiteral("There are no waves present."));
  mountains_->setCurrentIndex(static_cast<int>(program_.Displays.Of<WaveView>().State.Choice));
  layers_->setCurrentIndex(static_cast<int>(program_.Set.Waves));
}

void MountainWave::Follow() {
  setWindowTitle(QStringLiteral("Mountain-Wave - ") +
                 ToQString(program_.Current.Record.StationTitle));
  Compose();
  ShowControls();
  TellOfMountainFile();
}

void MountainWave::Compose() {
  view_->Show(nullptr);  // the picture that it shows is about to go
  shown_ = WavesNow(program_, program_.Set);
  plot_ = PlotWavesOf({program_, program_.Set}, shown_, SurfaceOf(*room_));
  view_->Show(&plot_.Page);
  view_->TellAgain();
}

void MountainWave::ShowReading(const std::optional<vexa::Point>& at) {
  const mountainwave::WavePlotInput input{shown_.From(program_.Current.Record),
                                          program_.Results.Levels, program_.Set};
  reading_->setText(at ? ToQString(ReadWaves(input, plot_.At, *at)) : QString());
}

// Once for each fault, not at every redraw.
void MountainWave::TellOfMountainFile() {
  const std::optional<Fault> wrong = MountainFileFault(program_);
  const std::string detail = wrong ? wrong->Detail : std::string();
  if (std::exchange(told_, detail) == detail || !wrong || program_.Current.Ask == nullptr) return;
  program_.Current.Ask->Ask(mountainwave::MountainFileBox(*wrong));
}

void MountainWave::ChooseFileToOpen() {
  const auto chosen = program_.Current.Ask->ChooseFile({.Title = "Open Wave Display",
                                                        .Folder = TextFromPath(program_.Where.Data),
                                                        .Filter = std::string(kWaveFileFilter)});
  if (chosen) OpenFile(PathFromText(*chosen));
}

void MountainWave::OpenFile(const std::filesystem::path& file) {
  if (!IsWaveFile(file)) {
    program_.Current.Ask->Ask(
        {.Title = "Open Wave Display",
         .Text = TextFromPath(file.filename()) + " is neither a .WVS nor a .WAV file."});
    return;
  }
  const Outcome<std::string> text = ReadFile(file);
  const auto sounding =
      text ? SoundingOf(mountainwave::ReadWaveState(text.Value()), file) : std::nullopt;
  if (sounding) events_.Changed(OpenSounding(program_, sounding->File, sounding->Index));
  if (const auto fault = OpenWaveFile(program_, file)) {
    program_.Doc.Report(*fault);
    return;
  }
  Place();
  events_.Changed({.View = true});
}

void MountainWave::SaveState() {
  const auto chosen = program_.Current.Ask->ChooseFile(
      {.Title = "Save Wave Display",
       .Folder = TextFromPath(program_.Where.Data /
                              PathFromText(program_.Current.FileName).stem().concat(".WVS")),
       .Filter = std::string(kWaveFileFilter),
       .Saving = true});
  if (!chosen) return;
  std::filesystem::path file = PathFromText(*chosen);
  if (!IsWaveFile(file)) file += ".WVS";
  if (const auto fault = SaveWaveFile(program_, file)) program_.Doc.Report(*fault);
}

void MountainWave::hideEvent(QHideEvent* event) {
  WaveState& state = program_.Displays.Of<WaveView>().State;
  state.Left = x();
  state.Top = y();
  state.Width = std::clamp(width(), 100, 32767);
  state.Height = std::clamp(height(), 100, 32767);
  if (const auto fault = KeepWaveState(program_)) program_.Doc.Report(*fault);
  QWidget::hideEvent(event);
}

}  // namespace vexa
