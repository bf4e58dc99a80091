// The answers of a catalogue as they are written: a table for people, CSV, JSON, or names of
// soundings that other commands take. One sounding is written and forgotten before the next comes.
#pragma once

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "archive/columns.h"
#include "cli/console.h"

namespace vexa::cli {

class ArchiveTable {
 public:
  virtual ~ArchiveTable() = default;
  virtual void Add(std::span<const archive::Cell> cells) = 0;
  virtual void End() {}
};

/// format  "text", "csv", "json", or "list", of which the columns are file and sounding
std::unique_ptr<ArchiveTable> MakeArchiveTable(std::string_view format,
                                               std::vector<const archive::Column*> columns,
                                               Console& console);

}  // namespace vexa::cli
