// A profile's values by level number: 1-based like the levels that forecasters count, level 1
// lowest, sized exactly. An index outside throws std::out_of_range, which the command edge turns
// into fault 9; loops that must be fast take the plain vector from Values().
#pragma once

#include <stdexcept>
#include <utility>
#include <vector>

namespace vexa {

template <class T>
class Levels {
 public:
  Levels() = default;
  explicit Levels(std::vector<T> values) : values_(std::move(values)) {}

  int Count() const { return static_cast<int>(values_.size()); }
  bool Empty() const { return values_.empty(); }

  const T& operator()(int level) const { return values_[Index(level)]; }
  T& operator()(int level) { return values_[Index(level)]; }
  const T& Top() const { return (*this)(Count()); }

  void Resize(int count, T fill = T{}) { values_.resize(static_cast<std::size_t>(count), fill); }
  void Add(T value) { values_.push_back(value); }
  void Erase(int level) {
    values_.erase(values_.begin() + static_cast<std::ptrdiff_t>(Index(level)));
  }
  void Clear() { values_.clear(); }

  const std::vector<T>& Values() const { return values_; }
  std::vector<T>& Values() { return values_; }

  bool operator==(const Levels&) const = default;

 private:
  std::size_t Index(int level) const {
    if (level < 1 || level > Count()) throw std::out_of_range("level index");
    return static_cast<std::size_t>(level) - 1;
  }

  std::vector<T> values_;
};

}  // namespace vexa
