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

#include "app/data_dump_window.h"
#include "app/print_plot_window.h"
#include "app/printing.h"
#include "app/qt_text.h"
#include "app/text_window.h"
#include "core/error_report.h"
#include "core/files.h"
#include "core/numbers.h"
#include "core/raw_file.h"
#include "output/data_print.h"
#include "output/paint/paint.h"
#include "output/print_pages.h"
#include "program/print_displays.h"
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

// After the sounding's file and, for other displays than the diagram, the display; without an
// ending, which the dialog's filter gives.
std::string ImageName(const Program& program, const std::string& display) {
  std::string name = TextFromPath(PathFromText(program.Current.FileName).stem());
  if (name.empty()) name = "sounding";
  if (const int index = program.Doc.IndexInFile(); index > 0) name += "_" + Shortest(index + 1);
  if (!display.empty()) name += "_" + display;
  std::ranges::replace(name, '.', '_');
  return name;
}

// Gives the picture of an image of this surface.
using Drawn = std::function<Picture(const Surface&)>;

void SaveImage(Program& program, const Drawn& draw, const QString& display, QSize displaySize,
               QWidget* parent) {
  SaveImageWindow window(displaySize, parent);
  if (window.exec() != QDialog::Accepted) return;
  MainWindowSettings& kept = program.Settings.Window;
  const std::filesystem::path folder =
      kept.ImageFolder.empty() ? program.Where.Export : PathFromText(kept.ImageFolder);
  const std::optional<std::string> name = program.Current.Ask->ChooseFile(
      {.Title = "Save Image",
       .Folder = TextFromPath(folder / PathFromText(ImageName(program, display.toStdString()))),
       .Filter = paint::kImageFilter,
       .Saving = true});
  if (!name) return;
  const QSize size = window.SizePx();
  const std::filesystem::path path = PathFromText(*name);
  const auto fault =
      paint::SavePicture(draw(ImageSurface(size.width(), size.height(), window.Settings().Dpi)),
                         path, size.width(), size.height(), window.Settings());
  if (!fault) kept.ImageFolder = TextFromPath(path.parent_path());
  if (!fault) return;
  if (fault->Procedure == "SaveFile") {
    program.Doc.Report(*fault);
  } else {
    Tell(program, fault->Detail, BoxIcon::Exclamation);
  }
}

void CopyImage(Program& program, const Picture& picture, QSize size) {
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
  Command Does;
  const char* Name;
  const char* Title;
  const char* File;
  output::ListingLines (*Make)(Program&);
};

constexpr PrintedText kTexts[] = {
    {Command::PrintData, "PrintData", "Print Sounding Data", "SoundingData.txt", DataLines},
    {Command::PrintDecoded, "PrintDeCodedData", "Print DeCoded Data", "DeCodedData.txt",
     DecodedText},
    {Command::PrintSource, "PrintDataFile", "Print Source Data", "SourceData.txt", SourceText},
};

bool ShowText(Program& program, Command command, QWidget* parent) {
  for (const PrintedText& row : kTexts) {
    if (row.Does != command) continue;
    if (program.Current.Record.NumTempLevels() == 0) return true;
    ShownText text{
        .Name = row.Name,
        .Title = row.Title,
        .FileName = row.File,
        .Lines = row.Make(program),
        .Header = output::PageHeader({program.Current.Record, program.Results, program.Set}, {})};
    if (text.Lines.empty()) return true;
    auto* window = new TextWindow(program, std::move(text), parent);
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->show();
    return true;
  }
  return false;
}

// The dialog names the folder as it would a file.
void WriteReport(Program& program) {
  if (program.Current.Record.NumTempLevels() == 0) return;
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
  const std::string lost = LostBelowSea(program.Current.Record);
  Tell(program,
       "The report is in " + *name +
           (lost.empty() ? "" : "\n" + std::string(report::kNativeName) + ": " + lost),
       BoxIcon::Information);
}

bool RunImageCommand(Program& program, Command command, QWidget* window, QSize displaySize) {
  if (command != Command::SaveImage && command != Command::CopyImage &&
      command != Command::PrintImage) {
    return false;
  }
  if (!program.Plot) return true;
  if (command == Command::SaveImage) {
    SaveImage(
        program, [&program](const Surface& on) { return ShownDiagram(program, on); }, {},
        displaySize, window);
  }
  if (command == Command::CopyImage) CopyImage(program, program.Plot->Page, displaySize);
  if (command == Command::PrintImage) PrintPlotWindow(program, window).exec();
  return true;
}

}  // namespace

bool RunOutputCommand(Program& program, Command command, QWidget* window, QSize displaySize) {
  const bool isOurs = command == Command::SaveImage || command == Command::CopyImage ||
                      command == Command::PrintImage || command == Command::ExportData ||
                      command == Command::PrintData || command == Command::PrintDecoded ||
                      command == Command::PrintSource || command == Command::ReportFolder;
  if (!isOurs) return false;
  if (!program.Gate.IsOpen() || program.Current.Ask == nullptr) return true;
  if (command == Command::ExportData) {
    DataDumpWindow(program, window).exec();
    return true;
  }
  if (command == Command::ReportFolder) {
    WriteReport(program);
    return true;
  }
  return RunImageCommand(program, command, window, displaySize) ||
         ShowText(program, command, window);
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

void AddPictureMenu(QWidget& window, Program& program, std::function<const Picture&()> picture) {
  const auto add = [&window](const char* name, const char* caption, const char* key, auto does) {
    auto* action = new QAction(QString::fromLatin1(caption), &window);
    action->setObjectName(QString::fromLatin1(name));
    action->setShortcut(QKeySequence(QString::fromLatin1(key)));
    action->setShortcutContext(Qt::WindowShortcut);
    QObject::connect(action, &QAction::triggered, &window, does);
    window.addAction(action);
  };
  window.setContextMenuPolicy(Qt::ActionsContextMenu);
  add("mnuSavePicture", "Save &Image to File...", "Ctrl+S", [&window, &program, picture] {
    SaveImage(
        program, [picture](const Surface&) { return picture(); }, window.objectName(),
        window.size(), &window);
  });
  add("mnuCopyPicture", "&Copy Image to ClipBoard", "Ctrl+C",
      [&window, &program, picture] { CopyImage(program, picture(), window.size()); });
  add("mnuPrintPicture", "&Print Image...", "Ctrl+P", [&window, &program, picture] {
    output::PrintSetup setup = LastPrintSetup(program);
    setup.Turn = output::Orientation::Landscape;
    const output::ListingSource from{program.Current.Record, program.Results, program.Set};
    output::ListingLines header = output::PageHeader(from, setup.Header);
    const std::string_view heading = PrintHeading(window.objectName().toStdString());
    if (!heading.empty()) header.insert(header.begin(), std::string(heading));
    PrintSheets(program, {output::DisplayPage(picture(), header, setup)}, &window);
  });
}

}  // namespace vexa
