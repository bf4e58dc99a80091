#include "archive/analogues.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <string>
#include <utility>

#include "archive/climate.h"
#include "archive/query.h"
#include "archive/standard_levels.h"
#include "core/files.h"
#include "core/platform.h"

namespace vexa::archive {
namespace alike {

inline constexpr std::string_view kIndices[] = {"Water",      "CAPE total", "CIN total",
                                                "700-500 LR", "FRZG Lvl",   "s-rH 0-3km"};
constexpr std::size_t kLevels = kStandardPress.size();
constexpr std::size_t kParts = 4;  // temperature, dew point, wind, indices
constexpr std::array<std::size_t, kParts + 1> kBegins = {0, kLevels, 2 * kLevels, 4 * kLevels,
                                                         4 * kLevels + std::size(kIndices)};
constexpr std::size_t kSize = kBegins[kParts];

constexpr double kPerDeviation = 2000;    // to a standard deviation
constexpr std::int32_t kLargest = 16000;  // eight of them; squares of differences stay 32 bits wide
constexpr std::int16_t kAbsent = -32768;

using Raw = std::array<std::optional<double>, kSize>;
using Row = std::array<std::int16_t, kSize>;

struct Scale {
  double Mean = 0;
  double Deviation = 1;
};

struct Head {
  char Mark[8] = {'V', 'E', 'X', 'A', 'L', 'I', 'K', '1'};
  std::int64_t Changes = 0;
  std::int64_t Count = 0;
  std::int64_t Size = kSize;
  std::array<Scale, kSize> Scales{};
};

// By which soundings are chosen before they are compared.
struct Key {
  std::int64_t Id = 0;
  std::int32_t Station = 0;
  std::int16_t Day = 0;   // of the year; 0: not known
  std::int16_t Hour = 0;  // -1: not known
};

}  // namespace alike

using namespace alike;

namespace {

Raw RawOf(const StandardLevels& levels) {
  Raw raw;
  for (std::size_t i = 0; i < kLevels; ++i) {
    raw[i] = levels[i].Temp;
    raw[kLevels + i] = levels[i].Dewpt;
    raw[2 * kLevels + i] = levels[i].U;
    raw[3 * kLevels + i] = levels[i].V;
  }
  return raw;
}

Row RowFrom(const Raw& raw, const std::array<Scale, kSize>& scales) {
  Row row;
  for (std::size_t i = 0; i < kSize; ++i) {
    row[i] = kAbsent;
    if (!raw[i]) continue;
    const double steps = (*raw[i] - scales[i].Mean) / scales[i].Deviation * kPerDeviation;
    row[i] = static_cast<std::int16_t>(
        std::lround(std::clamp(steps, double{-kLargest}, double{kLargest})));
  }
  return row;
}

// Mean square of a part in squared deviations; none without common values.
struct PartSum {
  std::int64_t Squares = 0;
  int Count = 0;
};

PartSum Compare(const std::int16_t* a, const std::int16_t* b, std::size_t from, std::size_t to) {
  PartSum sum;
  for (std::size_t i = from; i < to; ++i) {
    const bool isCommon = a[i] != kAbsent && b[i] != kAbsent;
    const std::int32_t apart = isCommon ? a[i] - b[i] : 0;
    sum.Squares += apart * apart;
    sum.Count += isCommon ? 1 : 0;
  }
  return sum;
}

std::optional<double> SquaredDistance(const std::int16_t* a, const std::int16_t* b) {
  constexpr int kLeastTemps = 5;
  double total = 0;
  int parts = 0;
  for (std::size_t part = 0; part < kParts; ++part) {
    const PartSum sum = Compare(a, b, kBegins[part], kBegins[part + 1]);
    if (part == 0 && sum.Count < kLeastTemps) return std::nullopt;
    if (sum.Count == 0) continue;
    total += static_cast<double>(sum.Squares) / sum.Count;
    ++parts;
  }
  return total / parts / (kPerDeviation * kPerDeviation);
}

bool Chosen(const AnalogueRequest& request, const Key& key) {
  const auto around = [](int a, int b, int circle) {
    const int apart = std::abs(a - b);
    return std::min(apart, circle - apart);
  };
  constexpr int kDays = 366, kHours = 24;
  if (request.Station != 0 && key.Station != request.Station) return false;
  if (request.DayOfYear != 0 &&
      (key.Day == 0 || around(key.Day, request.DayOfYear, kDays) > request.WindowDays)) {
    return false;
  }
  return !request.Hour ||
         (key.Hour >= 0 && around(key.Hour, *request.Hour, kHours) <= request.WindowHours);
}

std::string SelectAll(const Catalogue& catalogue) {
  std::string sql = "SELECT s.id, s.station, s.month, s.day, s.hour, p.levels";
  for (const std::string_view name : kIndices) {
    const Column& column = *FindColumn(name);
    sql += catalogue.Has(column) ? ", s." + Quoted(column.Name) : ", NULL";
  }
  return sql + " FROM soundings s JOIN profiles p ON p.id = s.id ORDER BY s.id";
}

constexpr int kFirstIndex = 6;  // of the columns of SelectAll

Raw RawOf(const Statement& row) {
  Raw raw = RawOf(Unpacked(row.Text(kFirstIndex - 1)));
  for (std::size_t i = 0; i < std::size(kIndices); ++i) {
    const int column = kFirstIndex + static_cast<int>(i);
    if (!row.IsNull(column)) raw[kBegins[kParts - 1] + i] = row.Number(column);
  }
  return raw;
}

Key KeyOf(const Statement& row) {
  const auto part = [&](int column) { return static_cast<int>(row.Whole(column)); };
  return {.Id = row.Whole(0),
          .Station = part(1),
          .Day = static_cast<std::int16_t>(DayOfYear(part(2), part(3))),
          .Hour = static_cast<std::int16_t>(row.IsNull(4) ? -1 : part(4))};
}

std::array<Scale, kSize> ScalesOf(Catalogue& catalogue, std::int64_t& count) {
  // Welford (1962): one pass, no loss of figures.
  std::array<double, kSize> mean{}, squares{};
  std::array<std::int64_t, kSize> number{};
  Statement all = catalogue.Store().Prepare(SelectAll(catalogue));
  for (count = 0; all.Step(); ++count) {
    const Raw raw = RawOf(all);
    for (std::size_t i = 0; i < kSize; ++i) {
      if (!raw[i]) continue;
      const double apart = *raw[i] - mean[i];
      mean[i] += apart / static_cast<double>(++number[i]);
      squares[i] += apart * (*raw[i] - mean[i]);
    }
  }
  std::array<Scale, kSize> scales;
  for (std::size_t i = 0; i < kSize; ++i) {
    const double variance = number[i] > 1 ? squares[i] / static_cast<double>(number[i] - 1) : 0;
    constexpr double kLeastDeviation = 1e-3;  // of what is the same everywhere
    scales[i] = {mean[i], std::max(std::sqrt(variance), kLeastDeviation)};
  }
  return scales;
}

template <class T>
std::string_view BytesOf(const T& value) {
  return {reinterpret_cast<const char*>(&value), sizeof value};
}

// Head, rows, keys.
std::optional<Fault> WriteVectors(Catalogue& catalogue, std::int64_t changes,
                                  const std::filesystem::path& path) {
  AtomicFile file(path, SystemFileOps(), Links::Replace);
  std::optional<Fault> failed;
  const auto write = [&](std::string_view bytes) {
    if (!failed) failed = file.Write(bytes);
  };
  const auto fault = Stored([&] {
    // Both passes see the same catalogue.
    catalogue.Store().Run("BEGIN");
    Head head{.Changes = changes};
    head.Scales = ScalesOf(catalogue, head.Count);
    write(BytesOf(head));
    std::vector<Key> keys;
    std::string bytes;
    Statement all = catalogue.Store().Prepare(SelectAll(catalogue));
    while (!failed && all.Step()) {
      keys.push_back(KeyOf(all));
      bytes += BytesOf(RowFrom(RawOf(all), head.Scales));
      constexpr std::size_t kBuffer = std::size_t{1} << 20;
      if (bytes.size() > kBuffer) write(std::exchange(bytes, {}));
    }
    all.Reset();
    write(bytes);
    write({reinterpret_cast<const char*>(keys.data()), keys.size() * sizeof(Key)});
    catalogue.Store().Run("COMMIT");
  });
  if (fault) return fault;
  return failed ? failed : file.Commit();
}

}  // namespace

struct Vectors::Kept {
  MappedFile File;
  Head Opening{};
  std::size_t Count() const { return static_cast<std::size_t>(Opening.Count); }
  const std::int16_t* Rows() const {
    return reinterpret_cast<const std::int16_t*>(File.Bytes().data() + sizeof(Head));
  }
  Key KeyAt(std::size_t i) const {
    Key key;
    const std::size_t at = sizeof(Head) + Count() * sizeof(Row) + i * sizeof(Key);
    std::memcpy(&key, File.Bytes().data() + at, sizeof key);
    return key;
  }
  // Whether it is whole and of this catalogue as it is now.
  bool Fits(std::int64_t changes) {
    const Head expected;
    if (File.Bytes().size() < sizeof(Head)) return false;
    std::memcpy(&Opening, File.Bytes().data(), sizeof(Head));
    return std::memcmp(Opening.Mark, expected.Mark, sizeof expected.Mark) == 0 &&
           Opening.Changes == changes && Opening.Size == expected.Size && Opening.Count >= 0 &&
           File.Bytes().size() == sizeof(Head) + Count() * (sizeof(Row) + sizeof(Key));
  }
};

Vectors::Vectors(std::unique_ptr<Kept> kept) : kept_(std::move(kept)) {}
Vectors::Vectors(Vectors&&) noexcept = default;
Vectors& Vectors::operator=(Vectors&&) noexcept = default;
Vectors::~Vectors() = default;

Outcome<Vectors> Vectors::Of(Catalogue& catalogue) {
  const std::filesystem::path path = PathFromText(catalogue.Store().Name() + ".alike");
  std::int64_t changes = 0;  // another number for every state of every catalogue under this name
  const auto uncounted = Stored([&] {
    const std::optional<FileState> state = StateOf(PathFromText(catalogue.Store().Name()), false);
    changes = catalogue.Changes() + (state ? state->Written + state->Size : 0);
  });
  if (uncounted) return *uncounted;
  auto kept = std::make_unique<Kept>(Kept{MappedFile(path)});
  if (!kept->Fits(changes)) {
    kept.reset();
    if (auto fault = WriteVectors(catalogue, changes, path)) return *fault;
    kept = std::make_unique<Kept>(Kept{MappedFile(path)});
    if (!kept->Fits(changes)) {
      return Fault{kFaultDeviceError, "Vectors", "what was written cannot be read",
                   TextFromPath(path)};
    }
  }
  return Vectors(std::move(kept));
}

std::size_t Vectors::Count() const {
  return kept_->Count();
}

std::vector<Analogue> Vectors::Nearest(const Entered& sounding,
                                       const AnalogueRequest& request) const {
  // As it would be kept, so that the same sounding is no distance away.
  Raw raw = RawOf(Unpacked(Packed(LevelsOf(sounding.Results))));
  for (std::size_t i = 0; i < std::size(kIndices); ++i) {
    const Cell value = ValueOf(*FindColumn(kIndices[i]), sounding);
    if (const auto* number = std::get_if<double>(&value)) raw[kBegins[kParts - 1] + i] = *number;
  }
  const Row own = RowFrom(raw, kept_->Opening.Scales);
  // The farthest of the nearest so far stands in front.
  std::vector<std::pair<double, std::size_t>> nearest;
  const std::int16_t* row = kept_->Rows();
  for (std::size_t i = 0; i < kept_->Count(); ++i, row += kSize) {
    if (!Chosen(request, kept_->KeyAt(i))) continue;
    const std::optional<double> distance = SquaredDistance(own.data(), row);
    if (!distance || request.Most == 0) continue;
    if (nearest.size() == request.Most) {
      if (*distance >= nearest.front().first) continue;
      std::ranges::pop_heap(nearest);
      nearest.pop_back();
    }
    nearest.emplace_back(*distance, i);
    std::ranges::push_heap(nearest);
  }
  std::ranges::sort_heap(nearest);
  std::vector<Analogue> found;
  for (const auto& [distance, i] : nearest) {
    found.push_back({kept_->KeyAt(i).Id, std::sqrt(distance)});
  }
  return found;
}

Outcome<std::vector<Cell>> RowOf(Catalogue& catalogue, std::int64_t id,
                                 std::span<const Column* const> columns) {
  std::vector<Cell> cells;
  const auto fault = Stored([&] {
    std::string sql;
    for (const Column* column : columns) {
      sql += (sql.empty() ? "SELECT " : ", ") + SqlOf(catalogue, *column);
    }
    sql += " FROM soundings s JOIN files f ON f.id = s.of WHERE s.id = ?";
    Statement& row = catalogue.Store().Kept(sql);
    row.Bind(1, id);
    const bool isThere = row.Step();
    for (int i = 0; isThere && i < row.Columns(); ++i) cells.push_back(row.Value(i));
    row.Reset();
  });
  if (fault) return *fault;
  return cells;
}

}  // namespace vexa::archive
