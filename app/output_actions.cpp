#include "app/output_actions.h"

#include <optional>
#include <string>

#include "app/print_plot_window.h"
#include "core/error_report.h"
#include "core/files.h"
#include "output/paint/paint.h"

namespace vexa {
namespace {

void Tell(Program& program, std::string text, BoxIcon icon) {
  program.Current.StatusText = text;
  if (program.Current.Ask == nullptr) return;
  program.Current.Ask->Ask(
      Box{.Title = std::string(kErrorBoxTitle), .Text = std::move(text), .Icon = icon});
}

void SaveImage(Program& program, QSize size) {
  const std::optional<std::string> name = program.Current.Ask->ChooseFile(
      {.Title = "Save Image", .Filter = paint::kImageFilter, .Saving = true});
  if (!name) return;
  std::string extension = TextFromPath(PathFromText(*name).extension());
  extension.erase(0, 1);
  const Outcome<std::string> bytes =
      paint::EncodePicture(program.Plot->Page, extension, size.width(), size.height());
  if (!bytes) return Tell(program, bytes.Error().Detail, BoxIcon::Exclamation);
  if (const auto fault = SaveFile(PathFromText(*name), bytes.Value())) {
    ErrorReport(program.Current, *fault);
  }
}

}  // namespace

bool RunOutputCommand(Program& program, Command command, QWidget* window, QSize displaySize) {
  if (command != Command::SaveImage && command != Command::CopyImage &&
      command != Command::PrintImage) {
    return false;
  }
  if (!program.Gate.IsOpen() || !program.Plot || program.Current.Ask == nullptr) return true;
  if (command == Command::SaveImage) SaveImage(program, displaySize);
  if (command == Command::CopyImage) {
    Tell(program, paint::CopyPicture(program.Plot->Page, displaySize.width(), displaySize.height()),
         BoxIcon::Information);
  }
  if (command == Command::PrintImage) PrintPlotWindow(program, window).exec();
  return true;
}

}  // namespace vexa
