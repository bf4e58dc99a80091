#include "app/area_map_form.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QSpinBox>
#include <string>
#include <utility>

#include "app/drag_view.h"
#include "program/section_map.h"

namespace vexa {
namespace {

constexpr double kStationReach = 10 * kUnitsPerPixel;

std::vector<map::MapStation> PlacesOf(const std::vector<SectionStation>& stations) {
  std::vector<map::MapStation> places;
  for (const SectionStation& station : stations) places.push_back({station.At, station.Name});
  return places;
}

}  // namespace

AreaMapForm::AreaMapForm(Program& program, const DisplayRow& row, Events events, QWidget* parent)
    : MapWindow(program, row, std::move(events), parent) {
  within_ = new QSpinBox(this);
  within_->setObjectName(QStringLiteral("spnWithin"));
  within_->setRange(5, 2000);
  within_->setSingleStep(25);
  within_->setValue(150);
  within_->setPrefix(QStringLiteral("within "));
  within_->setSuffix(QStringLiteral(" km"));
  within_->setToolTip(QStringLiteral("How far from a line that is laid its stations may stand"));
  within_->setAccessibleName(within_->toolTip());
  ControlLine().addWidget(within_);
  auto* all = new QPushButton(QStringLiteral("&All stations"), this);
  all->setObjectName(QStringLiteral("cmdAllStations"));
  all->setAutoDefault(false);
  connect(all, &QPushButton::clicked, this, [this] {
    commands::PickAllStations(program_);
    Picked();
  });
  ControlLine().addWidget(all);
  view_->setToolTip(
      QStringLiteral("Click a station to take it into the section or out of it.\n"
                     "Drag from a station, or from anywhere with Shift, to lay the line;\n"
                     "drag an end of the line to lead it elsewhere.\n"
                     "Drag the ground to move the map, turn the wheel to enlarge it."));
  FollowSoundings(program_);
  Follow();
}

map::AreaMap AreaMapForm::Map(const Surface& on, const map::MapFrame* frame) {
  return MapOfSection({program_, program_.Set}, on, frame, laid_);
}

std::optional<std::size_t> AreaMapForm::StationUnder(vexa::Point at) const {
  if (!Frame().On().Contains(at)) return std::nullopt;
  return StationAt(PlacesOf(StationsOf(SectionViewOf(program_))), Frame(), at, kStationReach);
}

bool AreaMapForm::Grasp(vexa::Point at) {
  fixed_.reset();
  grasped_.reset();
  leadsBegin_ = false;
  const std::vector<SectionStation> stations = StationsOf(SectionViewOf(program_));
  if (const auto under = StationUnder(at)) {
    grasped_ = stations[*under].At;
    fixed_ = grasped_;
    // An end of the line leads it; its other end stays.
    std::size_t last = 0;
    while (last + 1 < stations.size() && stations[last + 1].IsIn) ++last;
    if (stations[0].IsIn && last > 0 && (*under == 0 || *under == last)) {
      leadsBegin_ = *under == 0;
      fixed_ = stations[leadsBegin_ ? last : 0].At;
    }
    return true;
  }
  if (!View().PressedWith().testFlag(Qt::ShiftModifier)) return false;
  fixed_ = Frame().ToPlace(at);
  return fixed_.has_value();
}

void AreaMapForm::DragTo(vexa::Point at) {
  const auto under = StationUnder(at);
  const std::optional<map::Place> to =
      under ? StationsOf(SectionViewOf(program_))[*under].At : Frame().ToPlace(at);
  if (!to || !fixed_) return;
  laid_ = leadsBegin_ ? std::vector{*to, *fixed_} : std::vector{*fixed_, *to};
  Draw();
}

void AreaMapForm::Release(vexa::Point, bool moved) {
  const std::vector<map::Place> laid = std::exchange(laid_, {});
  if (!moved) {
    if (grasped_) commands::PickStation(program_, *grasped_);
    return Picked();
  }
  if (laid.size() == 2 &&
      !commands::PickAlong(program_, laid[0], laid[1], static_cast<double>(within_->value()))) {
    Draw();
    return Tell("Fewer than two stations stand near this line; the section stays.");
  }
  Picked();
}

std::string AreaMapForm::TextAt(vexa::Point at) const {
  std::string text = MapWindow::TextAt(at);
  if (const auto under = StationUnder(at)) {
    const SectionStation station = StationsOf(SectionViewOf(program_))[*under];
    text += "   " + crosssection::SoundingLine(*station.Columns.front());
  }
  return text;
}

void AreaMapForm::Picked() {
  SaveSectionSettings(program_);
  events_.Changed({.View = true});
  Draw();
}

}  // namespace vexa
