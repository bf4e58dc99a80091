#include "app/edit_actions.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QVBoxLayout>
#include <utility>

#include "analysis/clouds.h"
#include "app/cloud_editor.h"
#include "app/edit_grid.h"
#include "app/level_editor.h"
#include "app/qt_text.h"
#include "app/sounding_window.h"
#include "app/station_editor.h"
#include "app/text_editor.h"
#include "core/error_report.h"
#include "core/numbers.h"
#include "core/raw_file.h"
#include "core/station_file.h"
#include "program/edit_commands.h"
#include "program/properties.h"
#include "program/source_edit.h"

namespace vexa {
namespace {

using Show = std::function<void(Changes)>;

Show ShowOf(const Opening& opening) {
  return [over = &opening.Over](Changes changes) { over->Show(changes); };
}

// Editors are modal and go with the window; none waits in an event loop of its own.
void Open(QDialog* editor) {
  editor->setAttribute(Qt::WA_DeleteOnClose);
  editor->open();
}

void Open(const Program& program, EditorDialog* editor) {
  editor->AskThrough(program.Current.Ask);
  Open(editor);
}

LevelEditor* LevelsOf(Program& program, EditorPages pages, QWidget* window, const Show& show) {
  return new LevelEditor(
      program.Current.Record, pages,
      [&program, show](SoundingRecord edited) { show(AdoptEdit(program, std::move(edited))); },
      window);
}

template <EditorPages pages>
void EditLevels(const Opening& opening) {
  Open(opening.In, LevelsOf(opening.In, pages, &opening.Over, ShowOf(opening)));
}

void NewSounding(const Opening& opening) {
  Program& program = opening.In;
  if (!MayExit(program)) return;
  SoundingRecord empty;
  ClearData(empty);
  empty.DataFormat = kRawTag;
  empty.FileTag = kProgramFileTag;
  SetElevationUnknown(empty);
  auto* editor = new LevelEditor(
      empty, EditorPages::All,
      [&program, show = ShowOf(opening)](SoundingRecord entered) {
        show(AdoptNew(program, std::move(entered)));
      },
      &opening.Over);
  editor->setWindowTitle(QStringLiteral("New Sounding"));
  editor->Winds()->InsertAbove();
  editor->Temps()->InsertAbove();  // last, for it is typed into first
  Open(program, editor);
}

// The table shows what the automatic analysis found until layers are entered.
SoundingRecord WithCloudTable(const Program& program) {
  SoundingRecord record = program.Doc.Record();
  if (Trim(record.CloudMode) == "AUTO") {
    record.Clouds = analysis::CloudTable(program.Doc.Results().Layers.Clouds, record.ElevM);
  }
  return record;
}

void EditClouds(const Opening& opening) {
  Program& program = opening.In;
  Open(program, new CloudEditor(
                    WithCloudTable(program),
                    [&program, show = ShowOf(opening)](SoundingRecord edited) {
                      return TakeIntoNative(program, std::move(edited), show);
                    },
                    &opening.Over));
}

template <bool entireFile>
void EditSource(const Opening& opening) {
  Program& program = opening.In;
  const Outcome<EditableText> source = SourceToEdit(program, entireFile);
  if (!source) {
    program.Doc.Report(source.Error());
    return;
  }
  Open(program, new TextEditor(
                    source.Value(),
                    entireFile ? QStringLiteral("Edit Entire Source File")
                               : QStringLiteral("Edit Source Data"),
                    [&program, show = ShowOf(opening)](const std::string& bytes) {
                      Changes changes;
                      auto fault = entireFile ? SaveSource(program, bytes, changes)
                                              : AdoptSource(program, bytes, changes);
                      if (!fault) show(changes);
                      return fault;
                    },
                    SourceRemark(program), &opening.Over));
}

void EditStations(const Opening& opening) {
  Program& program = opening.In;
  Open(program, new StationEditor(
                    program.Stations,
                    [&program](const StationList& list) {
                      auto fault = SaveStations(program.Where.Root, list);
                      if (!fault) program.Stations = list;
                      return fault;
                    },
                    &opening.Over));
}

void ShowProperties(const Opening& opening) {
  auto* shown = new QDialog(&opening.Over);
  shown->setObjectName(QStringLiteral("Properties"));
  shown->setWindowTitle(QStringLiteral("Properties"));
  auto* layout = new QVBoxLayout(shown);
  auto* form = new QFormLayout;
  for (const auto& [label, value] : PropertiesOf(opening.In)) {
    auto* text = new QLabel(ToQString(value), shown);
    text->setTextFormat(Qt::PlainText);
    text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    form->addRow(ToQString(label + ":"), text);
  }
  layout->addLayout(form);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, shown);
  QObject::connect(buttons, &QDialogButtonBox::rejected, shown, &QDialog::reject);
  layout->addWidget(buttons);
  Open(shown);
}

constexpr WindowRow kEditors[] = {
    {"NewSounding", NewSounding},
    {"LevelEditor", EditLevels<EditorPages::All>},
    {"TempLevels", EditLevels<EditorPages::Temps>},
    {"WindLevels", EditLevels<EditorPages::Winds>},
    {"TextEditor", EditSource<false>},
    {.Name = "SourceFile", .Open = EditSource<true>, .IsWindow = false},  // in a TextEditor
    {"StationEditor", EditStations},
    {"CloudEditor", EditClouds},
    {"Properties", ShowProperties},
};

}  // namespace

std::span<const WindowRow> EditorWindows() {
  return kEditors;
}

bool TakeIntoNative(Program& program, SoundingRecord edited,
                    const std::function<void(Changes)>& show) {
  const bool changesFormat = program.Current.Record.DataFormat != kRawTag;
  if (changesFormat && program.Current.Ask->Ask(
                           {.Title = "Impending Format Change . . .",
                            .Text = "This procedure will save the sounding data in the RAW format."
                                    "\nDo you wish to continue?",
                            .Icon = BoxIcon::Question,
                            .Buttons = BoxButtons::YesNo,
                            .WhenSilent = Answer::No}) != Answer::Yes) {
    return false;
  }
  show(AdoptEdit(program, std::move(edited)));
  if (changesFormat) show(RunCommand(program, "mnuSaveAs"));
  return true;
}

void OpenCorrection(Program& program, QWidget* window, const Show& show) {
  const std::optional<QcFinding> finding = program.Doc.TakeCorrection();
  if (!finding) return;
  LevelEditor* editor = LevelsOf(program, EditorPages::All, window, show);
  Open(program, editor);
  editor->GoTo(*finding);
}

}  // namespace vexa
