// A display that is a map: the wheel and two buttons enlarge it, a drag of the ground moves it, a
// third button shows all of it again. What else a drag does the window of the map says.
#pragma once

#include <optional>

#include "app/display_window.h"
#include "map/area_map.h"

class QLabel;

namespace vexa {

class MapWindow : public PlainDisplayWindow {
 public:
  MapWindow(Program& program, const DisplayRow& row, Events events, QWidget* parent);

  const map::MapFrame& Frame() const { return frame_; }

 protected:
  /// The map; of the whole area where there is no frame yet.
  virtual map::AreaMap Map(const Surface& on, const map::MapFrame* frame) = 0;
  /// Takes hold of what stands at a place of the page; false: the drag moves the map.
  virtual bool Grasp(Point) { return false; }
  virtual void DragTo(Point) {}
  /// A drag, or a click where nothing moved, ended here.
  virtual void Release(Point, bool /*moved*/) {}
  /// What is told of a place; the position without more.
  virtual std::string TextAt(Point at) const;

  Picture Drawn(const Surface& on) final;
  void ShowAll();
  void Tell(const std::string& text);

 private:
  void Enlarge(double factor, std::optional<vexa::Point> about);
  void AddButton(const char* name, const char* text, const char* tip, std::function<void()> does);

  map::MapFrame frame_{};
  bool isWhole_ = true;  // it follows the stations
  bool isGrasped_ = false;
  bool hasMoved_ = false;
  QPointF pressed_{};
  vexa::Point at_{};
  QLabel* told_ = nullptr;
};

}  // namespace vexa
