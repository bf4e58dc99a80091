#include "app/window_table.h"

#include <algorithm>
#include <string>

#include "app/analysis_dock.h"
#include "app/archive_window.h"
#include "app/config_window.h"
#include "app/data_windows.h"
#include "app/diagram_control.h"
#include "app/edit_actions.h"
#include "app/forecast_windows.h"
#include "app/front_window.h"
#include "app/help_window.h"
#include "app/loop_window.h"
#include "app/mountain_forms.h"
#include "app/output_actions.h"
#include "app/parcel_dock.h"
#include "app/severe_table_window.h"
#include "app/sounding_window.h"
#include "app/surface_window.h"
#include "program/displays.h"
#include "program/severe_table_file.h"
#include "program/sounding_loop.h"

namespace vexa {
namespace {

void ShowDiagram(const Opening& opening) {
  opening.Over.ToFront();
}

void OpenPanel(const Opening& opening) {
  opening.Over.TogglePanel(opening.Name);
}

void ChooseRegion(const Opening& opening) {
  opening.Over.Control().ChooseRegion();
}

void OpenLoop(const Opening& opening) {
  if (EditLoop(opening.In, &opening.Over)) opening.Show(StartLoop(opening.In));
}

void OpenSurface(const Opening& opening) {
  auto* window = new SurfaceWindow(
      opening.In, [over = &opening.Over](Changes changes) { over->Show(changes); }, &opening.Over);
  window->setAttribute(Qt::WA_DeleteOnClose);
  window->open();
}

void OpenSevereTable(const Opening& opening) {
  SevereTableWindow window(
      opening.In.Severe,
      [&opening](const analysis::SevereTable& table) {
        opening.In.Severe = table;
        if (const auto fault = analysis::SaveTable(SevereTablePath(opening.In), table)) {
          opening.Over.ShowStatus(fault->Detail);
        }
        opening.Over.FollowDisplays();
      },
      &opening.Over);
  window.AskThrough(opening.In.Current.Ask);
  window.exec();
}

void OpenHelpTopic(const Opening& opening) {
  OpenHelp(opening.In, &opening.Over)
      .ShowTopic(opening.At.empty() ? std::string_view("contents") : opening.At);
}

// It comes up by itself for a file of several soundings.
void OpenRecent(const Opening& opening) {
  opening.Over.Run("mnuRecentFile1");
}

constexpr WindowRow kWindows[] = {
    {.Name = "Sounding", .Open = ShowDiagram, .IsWindow = false, .WhileBusy = true},
    {.Name = "InfoPanel", .Open = OpenPanel, .WhileBusy = true},
    {.Name = "FourParcels", .Open = OpenPanel, .WhileBusy = true},
    {.Name = "ZoomRegion", .Open = ChooseRegion, .IsWindow = false},
    {.Name = kChooserName, .Open = OpenRecent},
    {.Name = "SurfaceValues", .Open = OpenSurface},
    {.Name = "LoopOptions", .Open = OpenLoop},
    {.Name = "SevereTable", .Open = OpenSevereTable},
    {.Name = "HelpWindow", .Open = OpenHelpTopic, .WhileBusy = true},
};

// Rows of one kind stand with what they open.
template <class Visit>
void EachTable(Visit visit) {
  visit(std::span<const WindowRow>(kWindows));
  visit(EditorWindows());
  visit(DataWindowRows());
  visit(ArchiveWindows());
  visit(ForecastWindows());
  visit(FrontWindows());
  visit(OutputWindows());
  visit(WaveWindows());
  visit(FormWindows());
}

}  // namespace

void Opening::Show(Changes changes) const {
  Over.Show(changes);
}

const WindowRow* FindWindow(std::string_view name) {
  const WindowRow* found = nullptr;
  EachTable([&](std::span<const WindowRow> rows) {
    const auto row = std::ranges::find(rows, name, &WindowRow::Name);
    if (row != rows.end()) found = &*row;
  });
  return found;
}

std::vector<std::string_view> WindowNames(std::span<const DisplayRow> displays) {
  std::vector<std::string_view> names;
  EachTable([&](std::span<const WindowRow> rows) {
    for (const WindowRow& row : rows) {
      if (row.IsWindow) names.push_back(row.Name);
    }
  });
  for (const DisplayRow& display : displays) {
    if (display.Plot != nullptr && !display.Entry.empty()) names.push_back(display.Id);
  }
  return names;
}

std::vector<Panel*> MakePanels(Program& program, SoundingWindow& window) {
  return {new AnalysisDock(program, &window), new ParcelDock(program, &window)};
}

}  // namespace vexa
