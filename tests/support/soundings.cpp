#include "support/soundings.h"

#include <cstdlib>
#include <random>

#include "core/files.h"
#include "core/raw_file.h"
#include "core/units.h"

namespace vexa::test {
namespace fs = std::filesystem;

namespace {

// What the user at this machine has set up, a list of stations say, is no part of a test.
class OwnRoot : public testing::Environment {
 public:
  void SetUp() override {
    folder_.emplace();
    const std::string root = TextFromPath(folder_->Path());
#ifdef _WIN32
    _putenv_s("VEXA_ROOT", root.c_str());
#else
    setenv("VEXA_ROOT", root.c_str(), 1);
#endif
  }
  void TearDown() override {
    folder_.reset();
  }

 private:
  std::optional<TemporaryFolder> folder_{};
};

const auto* const kOwnRoot = testing::AddGlobalTestEnvironment(new OwnRoot);

}  // namespace

SoundingRecord Profile(std::initializer_list<TempRow> temps, std::initializer_list<WindRow> winds,
                       int elevM) {
  SoundingRecord record;
  ClearData(record);
  record.FileTag = "VEXA 5.7";
  record.StationTitle = "test";
  SetElevation(record, elevM);
  for (const TempRow& row : temps) record.AddTemp(row.Press, row.Temp, row.Dewpt);
  for (const WindRow& row : winds) record.AddWind(row.Height, row.Dir, row.Spd);
  record.DataFormat = "RAW";
  return record;
}

constexpr std::initializer_list<WindRow> kConvectiveWinds = {
    {357, 160, 12},   {600, 165, 20},   {1000, 175, 28},  {1500, 190, 33},  {2000, 205, 34},
    {3000, 225, 36},  {4000, 235, 42},  {5500, 243, 50},  {7000, 247, 58},  {9000, 250, 72},
    {10500, 252, 84}, {12000, 255, 90}, {14000, 258, 62}, {16500, 260, 38}, {20600, 270, 15}};

SoundingRecord ReferenceConvective() {
  SoundingRecord record =
      Profile({{970, 28.0, 18.8},   {950, 26.3, 18.0},   {925, 24.0, 17.4},   {900, 21.8, 16.8},
               {870, 19.6, 15.2},   {850, 18.6, 12.6},   {830, 18.8, 8.0},    {800, 17.2, 4.0},
               {750, 13.2, 0.4},    {700, 8.6, -3.2},    {650, 3.8, -7.0},    {600, -1.4, -11.2},
               {550, -6.7, -17.0},  {500, -12.5, -24.1}, {450, -18.6, -30.3}, {400, -25.7, -37.0},
               {350, -33.9, -45.0}, {300, -43.3, -54.0}, {250, -53.9, 999.9}, {225, -58.3, 999.9},
               {200, -59.1, 999.9}, {175, -58.6, 999.9}, {150, -58.3, 999.9}, {125, -60.2, 999.9},
               {100, -62.7, 999.9}, {70, -61.5, 999.9},  {50, -58.9, 999.9}},
              kConvectiveWinds, 357);
  SetDecimalPosition(record, 35.2, -97.4);
  record.StationTitle = "Reference A, convective";
  return record;
}

SoundingRecord WithEmptyWinds(const SoundingRecord& sounding) {
  constexpr WindRow kEmpty[] = {
      {0, 999.9, 999.9}, {0, 999.9, 12}, {0, 240, 999.9}, {0, -999, -999}, {0, 9999, 9999}};
  SoundingRecord record = sounding;
  record = WithoutWinds(std::move(record));
  record.WorkWindDir.Clear();
  record.WorkWindSpd.Clear();
  std::size_t next = 0;
  const auto addEmpty = [&](double height) {
    const WindRow& empty = kEmpty[next++ % std::size(kEmpty)];
    record.AddWind(height, empty.Dir, empty.Spd);
  };
  for (int i = 1; i <= sounding.NumWindLevels(); ++i) {
    addEmpty(i == 1 ? sounding.WindHgt(1) - 0.5
                    : (sounding.WindHgt(i - 1) + sounding.WindHgt(i)) / 2);
    record.AddWind(sounding.WindHgt(i), sounding.WindDir(i), sounding.WindSpd(i));
  }
  addEmpty(sounding.WindHgt.Top() + 100);
  return record;
}

void ChangeWinds(SoundingRecord& sounding, const std::function<void(WindLevel&)>& change) {
  for (int i = 1; i <= sounding.NumWindLevels(); ++i) {
    WindLevel level{sounding.WindHgt(i), sounding.WindDir(i), sounding.WindSpd(i)};
    change(level);
    EXPECT_FALSE(ChangeWindLevel(sounding, i, level));
  }
}

constexpr std::initializer_list<WindRow> kWinterWinds = {
    {120, 250, 6},   {300, 255, 10},   {600, 260, 15},   {900, 265, 20},
    {1200, 275, 26}, {1600, 285, 30},  {2200, 290, 34},  {3000, 292, 40},
    {4000, 294, 48}, {5000, 295, 56},  {6500, 296, 70},  {8000, 297, 88},
    {9200, 298, 96}, {10400, 298, 86}, {12000, 296, 60}, {16000, 290, 30}};

SoundingRecord Mirrored(SoundingRecord sounding) {
  SetDecimalPosition(sounding, -sounding.LatSigned, sounding.LonSigned);
  ChangeWinds(sounding, [](WindLevel& wind) { wind.Dir = Wrap360(180 - wind.Dir); });
  return sounding;
}

SoundingRecord ReferenceWinter() {
  SoundingRecord record =
      Profile({{1005, -2.0, -3.0},  {985, -1.4, -2.6},   {960, -2.9, -3.9},   {925, -5.2, -6.2},
               {900, -6.9, -7.9},   {880, -3.4, -8.4},   {850, -3.8, -6.9},   {800, -6.3, -7.9},
               {750, -9.4, -10.9},  {700, -12.9, -14.9}, {650, -17.0, -20.0}, {600, -21.6, -27.6},
               {550, -26.6, -34.6}, {500, -32.1, -40.1}, {450, -38.0, -47.0}, {400, -44.6, -54.6},
               {350, -51.3, -61.3}, {300, -55.6, -67.6}, {275, -56.4, 999.9}, {250, -55.6, 999.9},
               {200, -54.8, 999.9}, {150, -55.2, 999.9}, {100, -57.0, 999.9}},
              kWinterWinds, 120);
  SetDecimalPosition(record, 45.0, 8.0);
  record.StationTitle = "Reference B, winter";
  return record;
}

fs::path SourceFolder() {
  return fs::absolute(VEXA_SOURCE_DIR);
}

fs::path TestData(const std::string& name) {
  return SourceFolder() / "tests" / "data" / name;
}

std::optional<fs::path> RealData(const std::string& name) {
  const char* folder = std::getenv("VEXA_REAL_DATA");
  const fs::path root =
      folder != nullptr ? fs::path(folder) : SourceFolder().parent_path() / "shared" / "data";
  std::error_code ignored;
  if (root.empty() || !fs::exists(root / name, ignored)) return std::nullopt;
  return root / name;
}

SoundingRecord WithoutWinds(SoundingRecord sounding) {
  sounding.WindHgt.Clear();
  sounding.WindDir.Clear();
  sounding.WindSpd.Clear();
  return sounding;
}

SoundingRecord EndingAt(SoundingRecord sounding, double press) {
  while (sounding.Press.Top() < press) {
    for (Levels<double>* levels : {&sounding.Press, &sounding.Temp, &sounding.Dewpt}) {
      levels->Erase(levels->Count());
    }
  }
  return sounding;
}

TemporaryFolder::TemporaryFolder() {
  std::random_device seed;
  path_ = fs::temp_directory_path() / ("vexa test " + std::to_string(seed()));
  fs::create_directories(path_);
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

fs::path TemporaryFolder::Write(const std::string& name, std::string_view bytes) const {
  const fs::path path = path_ / PathFromText(name);
  fs::create_directories(path.parent_path());
  EXPECT_FALSE(SaveFile(path, bytes));
  return path;
}

fs::path TemporaryFolder::Write(const std::string& name, const SoundingRecord& sounding) const {
  return Write(name, WriteRaw(sounding));
}

}  // namespace vexa::test
