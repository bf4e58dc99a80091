#include "program/page_boxes.h"

#include <utility>

#include "diagram/line_legend.h"
#include "display/side_boxes.h"
#include "hodograph/hodograph_plot.h"
#include "program/hodograph_commands.h"

namespace vexa {

std::vector<PageBox> PageBoxesOf(const Program& program, const Options& set) {
  const SoundingRecord& sounding = program.Current.Record;
  std::vector<PageBox> boxes = display::PageBoxes({sounding, program.Results, set, program.Severe});
  boxes.push_back(diagram::LineLegendBox(set));
  if (!set.PlotHodo) return boxes;
  auto hodograph = hodograph::HodographBox(HodographOf(program, set));
  if (hodograph) boxes.push_back(std::move(*hodograph));
  return boxes;
}

}  // namespace vexa
