// The map of the cross-section's stations, on which a user picks what the section is made of.
#pragma once

#include <optional>
#include <vector>

#include "app/map_window.h"

class QSpinBox;

namespace vexa {

/// A click on a station takes it into the section or out of it. A drag from a station lays the line
/// of the section: the stations near it are taken; from an end of the line it leads that end. With
/// the shift key a line begins anywhere.
class AreaMapForm final : public MapWindow {
 public:
  AreaMapForm(Program& program, const DisplayRow& row, Events events, QWidget* parent);

 protected:
  map::AreaMap Map(const Surface& on, const map::MapFrame* frame) override;
  bool Grasp(vexa::Point at) override;
  void DragTo(vexa::Point at) override;
  void Release(vexa::Point at, bool moved) override;
  std::string TextAt(vexa::Point at) const override;

 private:
  std::optional<std::size_t> StationUnder(vexa::Point at) const;
  void Picked();

  std::optional<map::Place> fixed_{};    // the end of the line that stays
  std::optional<map::Place> grasped_{};  // the station that was pressed
  bool leadsBegin_ = false;              // the drag leads the first end of the line
  std::vector<map::Place> laid_{};
  QSpinBox* within_ = nullptr;
};

}  // namespace vexa
