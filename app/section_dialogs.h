// The forms of the cross-section's window: its diagram options and the intervals of its isolines.
// Both show each change at once and take it back when the user wants.
#pragma once

#include <functional>
#include <map>
#include <QDialog>
#include <string>
#include <vector>

#include "app/option_control.h"
#include "crosssection/intervals.h"
#include "crosssection/section_options.h"

class QLineEdit;

namespace vexa {

/// The options of the section's diagram, on tabs as their rows say.
class DiagramX : public QDialog {
 public:
  DiagramX(const crosssection::SectionOptions& options,
           std::function<void(const crosssection::SectionOptions&)> apply, QWidget* parent);

 private:
  void ShowAll();

  crosssection::SectionOptions set_;
  crosssection::SectionOptions before_;  // what UNDO goes back to
  std::function<void(const crosssection::SectionOptions&)> apply_;
  std::vector<std::function<void()>> shows_{};
};

/// The interval of each contoured field; an empty line stands for the usual one.
class IntervalSet : public QDialog {
 public:
  IntervalSet(const crosssection::IntervalSettings& intervals,
              const crosssection::FieldContext& context,
              std::function<void(const crosssection::IntervalSettings&)> apply, QWidget* parent);

 private:
  void Apply();

  std::map<std::string, QLineEdit*> lines_{};
  std::function<void(const crosssection::IntervalSettings&)> apply_;
};

}  // namespace vexa
