// The table of indices: a row each with its panel label, name, unit, mask, formula in words, source
// and the function that computes it. Panel, listings, JSON and explanations walk this table.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/index_reader.h"

namespace vexa::analysis {

struct IndexRow {
  std::string_view Label;    // ten characters, right-aligned
  std::string_view Name;     // "K Index"
  std::string_view Unit;     // "C", empty for a bare number
  std::string_view Mask;     // how the value is shown
  std::string_view Formula;  // in words
  std::string_view Source;
  double (*Compute)(IndexReader& in);
};

std::span<const IndexRow> IndexTable();

/// The row of a trimmed panel label, compared without regard to case; null when there is none.
const IndexRow* FindIndex(std::string_view label);

/// One index of a sounding; never NaN.
IndexValue ComputeIndex(const IndexRow& row, const SoundingRecord& sounding,
                        const AnalysisResults& results, const Options& options);

/// Every index of the table, in its order.
std::vector<IndexValue> ComputeIndices(const SoundingRecord& sounding,
                                       const AnalysisResults& results, const Options& options);

/// How an index came about, for people: name and value, formula, source, inputs or the reason why
/// there is no value. Lines end in LF.
std::string Explain(const IndexValue& index);

}  // namespace vexa::analysis
