// Tabs down the left side with upright captions: eight long ones are seen at once, and the pages
// keep their height on small screens.
#pragma once

#include <QTabWidget>

namespace vexa {

class SideTabs : public QTabWidget {
 public:
  explicit SideTabs(QWidget* parent = nullptr);
};

}  // namespace vexa
