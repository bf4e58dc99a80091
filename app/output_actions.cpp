#include "app/output_actions.h"

#include <algorithm>
#include <QAction>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QKeySequence>
#include <QLabel>
#include <QSpinBox>
#include <QWidget>
#include <string>
#include <utility>
#include <vector>

#include "app/config_window.h"
#include "app/data_dump_window.h"
#include "app/diagram_view.h"
#include "app/display_window.h"
#include "app/drag_view.h"
#include "app/print_plot_window.h"
#include "app/printing.h"
#include "app/qt_text.h"
#include "app/sounding_window.h"
#include "app/text_window.h"
#include "core/error_report.h"
#include "core/files.h"
#include "core/raw_file.h"
#include "output/data_print.h"
#include "output/paint/paint.h"
#include "output/print_pages.h"
#include "program/displays.h"
#include "program/print_work.h"
#include "report/report_folder.h"

namespace vexa {
namespace {

void Tell(Program& program, std::string text, BoxIcon icon) {
  program.Doc.SetStatus(text);
  if (program.Current.Ask == nullptr) return;
  program.Current.Ask->Ask(
      Box{.Title = std::string(kErrorBoxTitle), .Text = std::move(text), .Icon = icon});
}

// Of the main window's diagram the name is that of the sounding alone.
void SaveImage(Program& program, const DisplayRow& display, QWidget* shown, QWidget* parent) {
  const bool isDiagram = &display == &DiagramNow(program);
  SaveImageWindow window(shown->size(), parent);
  if (window.exec() != QDialog::Accepted) return;
  MainWindowSettings& kept = program.Settings.Window;
  const std::filesystem::path folder =
      kept.ImageFolder.empty() ? program.Where.Export : PathFromText(kept.ImageFolder);
  const std::optional<std::string> name = program.Current.Ask->ChooseFile(
      {.Title = "Save Image",
       .Folder =
           TextFromPath(folder / PathFromText(PictureName(program, isDiagram ? "" : display.Id))),
       .Filter = paint::kImageFilter,
       .Saving = true});
  if (!name) return;
  const QSize size = window.SizePx();
  const std::filesystem::path path = PathFromText(*name);
  const paint::ImageSettings settings = window.Settings();
  const Picture picture =
      DrawDisplay(display, program, ImageSurface(size.width(), size.height(), settings.Dpi));
  const auto fault = paint::SavePicture(picture, path, size.width(), size.height(), settings);
  if (!fault) kept.ImageFolder = TextFromPath(path.parent_path());
  if (!fault) return;
  if (fault->Procedure == "SaveFile") {
    program.Doc.Report(*fault);
  } else {
    Tell(program, fault->Detail, BoxIcon::Exclamation);
  }
}

void CopyImage(Program& program, const DisplayRow& display, QSize size) {
  const Picture picture = DrawDisplay(display, program, ImageSurface(size.width(), size.height()));
  Tell(program, paint::CopyPicture(picture, size.width(), size.height()), BoxIcon::Information);
}

output::ListingLines SourceText(Program& program) {
  const Outcome<output::ListingLines> lines = SourceLines(program);
  if (lines) return lines.Value();
  program.Doc.Report(lines.Error());
  return {};
}

output::ListingLines DecodedText(Program& program) {
  return DecodedLines(program);
}

output::ListingLines DataLines(Program& program) {
  return output::SoundingDataTable({program.Current.Record, program.Results, program.Set});
}

struct PrintedText {
  std::string_view Name;
  const char* Title;
  const char* File;
  output::ListingLines (*Make)(Program&);
};

constexpr PrintedText kTexts[] = {
    {"PrintData", "Print Sounding Data", "SoundingData.txt", DataLines},
    {"PrintDeCodedData", "Print DeCoded Data", "DeCodedData.txt", DecodedText},
    {"PrintDataFile", "Print Source Data", "SourceData.txt", SourceText},
};

void OpenText(Program& program, ShownText text, QWidget* parent) {
  if (text.Lines.empty()) return;
  auto* window = new TextWindow(program, std::move(text), parent);
  window->setAttribute(Qt::WA_DeleteOnClose);
  window->show();
}

void ShowText(const Opening& opening) {
  Program& program = opening.In;
  const auto* row = std::ranges::find(kTexts, opening.Name, &PrintedText::Name);
  OpenText(
      program,
      {.Name = std::string(row->Name),
       .Title = row->Title,
       .FileName = row->File,
       .Lines = row->Make(program),
       .Header = output::PageHeader({program.Current.Record, program.Results, program.Set}, {})},
      &opening.Over);
}

// The dialog names the folder as it would a file.
void WriteReport(const Opening& opening) {
  Program& program = opening.In;
  const std::optional<std::string> name = program.Current.Ask->ChooseFile(
      {.Title = "Report Folder",
       .Folder = TextFromPath(program.Where.Export /
                              PathFromText(program.Current.FileName).stem().concat("_report")),
       .Filter = "*|*",
       .Saving = true});
  if (!name) return;
  const auto pass = program.Gate.Enter();
  if (!pass) return;
  const report::ReportWriter writer{
      .Program = "vexa",
      .Toolkit = paint::JpegLibraryVersion(),
      .EncodePicture = [](const Picture& picture, const std::string& extension, int widthPx,
                          int heightPx) {
        return paint::EncodePicture(picture, extension, widthPx, heightPx);
      }};
  if (const auto fault = report::WriteReport(program, PathFromText(*name), writer)) {
    program.Doc.Report(*fault);
    return;
  }
  Tell(program, "The report is in " + *name, BoxIcon::Information);
}

void ExportLevels(const Opening& opening) {
  DataDumpWindow(opening.In, &opening.Over).exec();
}

void PrintDiagram(const Opening& opening) {
  PrintPlotWindow(opening.In, &opening.Over).exec();
}

void SaveDiagram(const Opening& opening) {
  SaveImage(opening.In, DiagramNow(opening.In), &opening.Over.View(), &opening.Over);
}

void CopyDiagram(const Opening& opening) {
  CopyImage(opening.In, DiagramNow(opening.In), opening.Over.View().size());
}

constexpr WindowRow kOutputs[] = {
    {"PrintData", ShowText},
    {"PrintDeCodedData", ShowText},
    {"PrintDataFile", ShowText},
    {"DataDump", ExportLevels},
    {.Name = "DataDumpOptions", .Open = ExportLevels, .Press = "cmdOptions"},
    {"PrintPlot", PrintDiagram},
    {"SaveImage", SaveDiagram},
    {.Name = "CopyImage", .Open = CopyDiagram, .IsWindow = false},
    {.Name = "ReportFolder", .Open = WriteReport, .IsWindow = false},
};

// On the sheet that was printed on last, across.
std::vector<Picture> SheetsOf(Program& program, const DisplayRow& display) {
  PrintRequest request{.Display = std::string(display.Id),
                       .DarkLines = program.Set.System.DarklinesMemory,
                       .Setup = LastPrintSetup(program)};
  request.Setup.Turn = output::Orientation::Landscape;
  request.Setup.AllListings = false;
  return PagesToPrint(program, request);
}

}  // namespace

std::span<const WindowRow> OutputWindows() {
  return kOutputs;
}

SaveImageWindow::SaveImageWindow(QSize displaySize, QWidget* parent) : QDialog(parent) {
  setObjectName(QStringLiteral("SaveImage"));
  setWindowTitle(QStringLiteral("Save Image to File"));
  auto* form = new QFormLayout(this);
  const auto number = [&](const char* name, const char* caption, int least, int most, int now,
                          const char* unit) {
    auto* box = new QSpinBox(this);
    box->setObjectName(QString::fromLatin1(name));
    box->setRange(least, most);
    box->setValue(now);
    box->setSuffix(QString::fromLatin1(unit));
    form->addRow(QString::fromLatin1(caption), box);
    return box;
  };
  width_ =
      number("ImageWidth", "&Width", kLeastImagePx, kMostImagePx, displaySize.width(), " pixels");
  height_ = number("ImageHeight", "&Height", kLeastImagePx, kMostImagePx, displaySize.height(),
                   " pixels");
  dpi_ = number("ImageDpi", "&Resolution", kLeastImageDpi, kMostImageDpi,
                static_cast<int>(paint::kScreenDpi), " dots per inch");
  quality_ = number("JpegQuality", "JPEG &quality", 1, 100, paint::kJpegQuality, "");
  auto* library = new QLabel(ToQString(paint::JpegLibraryVersion()), this);
  library->setObjectName(QStringLiteral("JpegLibrary"));
  form->addRow(library);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  form->addRow(buttons);
}

QSize SaveImageWindow::SizePx() const {
  return {width_->value(), height_->value()};
}

paint::ImageSettings SaveImageWindow::Settings() const {
  return {.JpegQuality = quality_->value(), .Dpi = static_cast<double>(dpi_->value())};
}

void AddDisplayMenu(DisplayWindow& window, Program& program, const DisplayRow& display,
                    std::function<void(std::string_view, std::string_view)> open) {
  const auto add = [&window](const char* name, const char* caption, const char* key, auto does) {
    auto* action = new QAction(QString::fromLatin1(caption), &window);
    action->setObjectName(QString::fromLatin1(name));
    action->setShortcut(QKeySequence(QString::fromLatin1(key)));
    action->setShortcutContext(Qt::WindowShortcut);
    QObject::connect(action, &QAction::triggered, &window, does);
    window.addAction(action);
  };
  window.setContextMenuPolicy(Qt::ActionsContextMenu);
  add("mnuSavePicture", "Save &Image to File...", "Ctrl+S",
      [&window, &program, &display] { SaveImage(program, display, &window.View(), &window); });
  add("mnuCopyPicture", "&Copy Image to ClipBoard", "Ctrl+C",
      [&window, &program, &display] { CopyImage(program, display, window.View().size()); });
  add("mnuPrintPicture", "&Print Image...", "Ctrl+P",
      [&window, &program, &display] { PrintSheets(program, SheetsOf(program, display), &window); });
  if (display.Listing != nullptr) {
    add("mnuPictureListing", "&Listing...", "", [&window, &program, &display] {
      OpenText(program,
               {.Name = std::string(display.Id) + "Listing",
                .Title = std::string(display.Title),
                .FileName = std::string(display.Id) + ".txt",
                .Lines = display.Listing(program)},
               &window);
    });
  }
  if (const std::string_view form = FormOfPage(display.Options); !form.empty()) {
    add("mnuPictureOptions", "&Options...", "",
        [open = std::move(open), form, &display] { open(form, display.Options); });
  }
}

}  // namespace vexa
