// The printers of the platform. What they need of the toolkit waits in a module of its own until a
// page is first printed.
#pragma once

#include <memory>
#include <QPagedPaintDevice>
#include <QString>

class QWidget;

namespace vexa {

/// A printer on which pages are painted.
class Printer {
 public:
  virtual ~Printer() = default;
  virtual QPagedPaintDevice& Device() = 0;
  /// What the list of waiting jobs is to call the pages.
  virtual void Name(const QString& job) = 0;
  /// Asks which printer it is to be, and how; false when the user cancels.
  virtual bool Choose(QWidget* parent) = 0;
  virtual void Abort() = 0;
};

/// Null where there is none, or where the module is missing.
std::unique_ptr<Printer> FindPrinter();

}  // namespace vexa
