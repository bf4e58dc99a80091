#include "diagram/mark_column.h"

#include <algorithm>

namespace vexa::diagram {

const std::vector<Mark>& MarkColumn::Arrange(double top, double bottom, double gap) {
  while (marks_.size() > 1 && gap * static_cast<double>(marks_.size() - 1) > bottom - top) {
    marks_.erase(std::ranges::max_element(marks_, {}, &Mark::Priority));
  }
  std::ranges::stable_sort(marks_, {}, &Mark::Y);
  // Taking off gap·i turns "at least gap apart" into "not falling": pool adjacent violators, whose
  // pooled means are the least-squares answer.
  struct Pool {
    double Sum = 0;
    int Count = 0;
    double Mean() const { return Sum / Count; }
  };
  std::vector<Pool> pools;
  for (std::size_t i = 0; i < marks_.size(); ++i) {
    pools.push_back({marks_[i].Y - gap * static_cast<double>(i), 1});
    while (pools.size() > 1 && pools[pools.size() - 2].Mean() > pools.back().Mean()) {
      const Pool last = pools.back();
      pools.pop_back();
      pools.back().Sum += last.Sum;
      pools.back().Count += last.Count;
    }
  }
  const double highest = bottom - gap * (static_cast<double>(marks_.size()) - 1);
  std::size_t i = 0;
  for (const Pool& pool : pools) {
    const double place = std::max(top, std::min(pool.Mean(), highest));
    for (int n = 0; n < pool.Count; ++n, ++i) {
      marks_[i].PlacedY = place + gap * static_cast<double>(i);
    }
  }
  return marks_;
}

}  // namespace vexa::diagram
