#include <algorithm>
#include <cmath>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "cli/commands.h"
#include "cli/inputs.h"
#include "cli/loaded_program.h"
#include "cli/toolkit.h"
#include "core/data_checks.h"
#include "core/files.h"
#include "core/numbers.h"
#include "crosssection/section_plot.h"
#include "ingest/source_header.h"
#include "program/section_work.h"
#include "report/section_json.h"
#include "report/section_netcdf.h"

namespace vexa::cli {
namespace {

using crosssection::FieldAnalysis;
using crosssection::FieldRow;
using crosssection::IntervalSettings;
using crosssection::Section;
using crosssection::SectionOptions;

constexpr std::string_view kSectionKinds[] = {"distance", "time"};
constexpr std::string_view kFormats[] = {"json", "csv", "netcdf"};
constexpr auto kScales = Words(crosssection::SectionScale{});
constexpr auto kResolutions = Words(crosssection::GridResolution{});
constexpr std::string_view kFieldPlace = "{field}";

constexpr ArgumentRow kSectionOptions[] = {
    {"--kind", "-k", "KIND", "along a line of stations, or in time at one; distance without it",
     kSectionKinds},
    {"--field", "-f", "CODE,...",
     "what to draw, TMP without it: TMP PT EPT WET DPD RH CLDS MIX PW LWC REFN REFK DEN DVAL WND "
     "XWND UWND VWND CAT HiCAT WAVE LLWS ICE CBI LIGHT TRAIL DUCT; several stand one above the "
     "other, or {field} in the output makes a picture of each"},
    {"--output", "-o", "OUT",
     "picture file: .png, .jpg, .bmp, .svg or .pdf; or where the grid goes"},
    {"--format", "", "FORMAT", "the grid in place of a picture", kFormats},
    {"--size", "", "WxH", "size in pixels, 1600x1200 without it"},
    {"--scale", "", "SCALE", "heights in mb, km or ft", kScales},
    {"--top", "", "HPA", "upper limit, 100 without it", {}, 10, 900},
    {"--interval", "", "X", "between two isolines"},
    {"--resolution", "", "GRID", "of the grid, medium without it", kResolutions},
    {"--passes", "", "N", "smoothing passes, 2 without it", {}, 0, crosssection::kMostPasses},
    {"--interpolate", "", "", "put interpolated soundings between the others"},
    {"--reverse", "", "", "turn the section round"},
    {"--direction", "", "DEG", "that XWND is across; the section's own without it", {}, 0, 360},
    {"--from", "", "TIME", "take soundings from this time on, 2024-03-05T12:00"},
    {"--to", "", "TIME", "take soundings up to this time"},
    {"--name", "", "NAME", "of the section, in its title"},
    kRootOption,
    {"--sounding", "-n", "N", "take the Nth sounding of each file alone", {}, 1, 99999},
    kSetOption,
};

// What the words of the command line ask for.
struct AskedSection {
  std::vector<const FieldRow*> Fields{};
  crosssection::SectionKind Kind{};
  SectionChoice Choice{};
  SectionOptions Set{};
  IntervalSettings Intervals{};
  PixelSize Size{1600, 1200};
  std::string Output{};
  std::string Format{};
};

Outcome<std::vector<const FieldRow*>> FieldsOf(const std::string& text) {
  std::vector<const FieldRow*> fields;
  std::vector<std::string_view> codes;
  for (const FieldRow& row : crosssection::Fields()) codes.push_back(row.Code);
  for (std::size_t at = 0; at <= text.size();) {
    const std::size_t comma = std::min(text.find(',', at), text.size());
    const std::string code(Trim(std::string_view(text).substr(at, comma - at)));
    const FieldRow* field = crosssection::FindField(code);
    if (field == nullptr) {
      return Wrong("section", "there is no field \"" + code + "\"" + DidYouMean(code, codes) +
                                  "; there are " + Joined(codes));
    }
    fields.push_back(field);
    at = comma + 1;
  }
  return fields;
}

std::optional<Fault> TakeTime(const Arguments& arguments, std::string_view name,
                              std::optional<ObservationTime>& into) {
  const auto text = arguments.Value(name);
  if (!text) return std::nullopt;
  into = ingest::ParseIsoTime(*text);
  if (into) return std::nullopt;
  return Wrong("section",
               std::string(name) + " takes a time like 2024-03-05T12:00, not \"" + *text + "\"");
}

template <class E, std::size_t kCount>
void TakeWord(const Arguments& arguments, std::string_view name,
              const std::array<std::string_view, kCount>& words, E& into) {
  const auto given = arguments.Value(name);
  if (given) into = static_cast<E>(std::ranges::find(words, *given) - words.begin());
}

std::string Ending(const std::string& output) {
  std::string ending = TextFromPath(PathFromText(output).extension());
  std::ranges::transform(ending, ending.begin(), [](char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  });
  return ending;
}

std::optional<Fault> TakeOutput(const Arguments& arguments, AskedSection& asked) {
  asked.Output = arguments.Value("--output").value_or("");
  asked.Format = arguments.Value("--format").value_or("");
  if (!asked.Format.empty()) return std::nullopt;
  if (asked.Output.empty()) return Wrong("section", "no output is given with -o, nor a --format");
  constexpr std::string_view kEndings[] = {".png", ".jpg", ".jpeg", ".bmp", ".svg", ".pdf"};
  if (std::ranges::find(kEndings, Ending(asked.Output)) == std::end(kEndings)) {
    return Wrong("section",
                 "\"" + asked.Output + "\" does not end in .png, .jpg, .bmp, .svg or .pdf");
  }
  return std::nullopt;
}

Outcome<AskedSection> AskedSectionBy(const Arguments& arguments, const CommandSetup& setup) {
  AskedSection asked;
  if (const auto fault = TakeOutput(arguments, asked)) return *fault;
  const auto fields = FieldsOf(arguments.Value("--field").value_or("TMP"));
  if (!fields) return fields.Error();
  asked.Fields = fields.Value();
  asked.Kind = arguments.Value("--kind") == "time" ? crosssection::SectionKind::Time
                                                   : crosssection::SectionKind::Distance;
  if (const auto number = arguments.Whole("--sounding")) asked.Choice.Indices = {*number - 1};
  if (const auto fault = TakeTime(arguments, "--from", asked.Choice.From)) return *fault;
  if (const auto fault = TakeTime(arguments, "--to", asked.Choice.Until)) return *fault;
  asked.Set = SectionOptionsFor(setup.Root, setup.Settings.Set);
  TakeWord(arguments, "--scale", kScales, asked.Set.Scale);
  TakeWord(arguments, "--resolution", kResolutions, asked.Set.Resolution);
  asked.Set.UpperLimit = arguments.Whole("--top").value_or(ToWhole(asked.Set.UpperLimit));
  asked.Set.SmoothingPasses = arguments.Whole("--passes").value_or(asked.Set.SmoothingPasses);
  if (const auto degrees = arguments.Whole("--direction")) asked.Set.CrossDirection = *degrees;
  if (const auto text = arguments.Value("--interval")) {
    const Outcome<double> interval = crosssection::IntervalFrom(*text);
    if (!interval) return interval.Error();
    for (const FieldRow* field : asked.Fields) {
      asked.Intervals.Chosen[std::string(field->Code)] = interval.Value();
    }
  }
  if (const auto text = arguments.Value("--size")) {
    const Outcome<PixelSize> given = ParseSize(*text);
    if (!given) return given.Error();
    asked.Size = given.Value();
  }
  return asked;
}

std::string OneLine(std::string text) {
  std::ranges::replace(text, '\n', ' ');
  return text;
}

std::string Row(const Section& section, const FieldAnalysis& field,
                const crosssection::FieldContext& context, int column, int row) {
  const crosssection::GridX& grid = field.Grid;
  const crosssection::VerticalAxis& axis = field.Axis;
  const double x =
      section.Columns.front().X + section.RangeX() * (column - 1) / (grid.Columns() - 1);
  const double at = axis.Bottom + (axis.Top - axis.Bottom) * (row - 1) / (grid.Rows() - 1);
  const bool isPress = axis.Scale == crosssection::SectionScale::Pressure;
  return std::string(field.Field->Code) + "," + UnitOf(*field.Field, context) + "," +
         Shortest(Rounded(x, 3)) + "," + Shortest(Rounded(isPress ? std::exp(-at) : at, 3)) + "," +
         (grid.Has(column, row) ? Shortest(Rounded(static_cast<double>(grid(column, row)), 4))
                                : std::string()) +
         "\n";
}

// A row for each node, the lowest row first.
std::string CsvOf(const Section& section, const SectionOptions& options,
                  const std::vector<FieldAnalysis>& fields) {
  const bool isPress = options.Scale == crosssection::SectionScale::Pressure;
  std::string text = std::string("field,unit,") +
                     (section.Kind == crosssection::SectionKind::Time ? "x (hours)," : "x (km),") +
                     (isPress                              ? "pressure (hPa),"
                      : options.Heights == HeightMode::Agl ? "height above ground (m),"
                                                           : "height (m),") +
                     "value\n";
  const crosssection::FieldContext context = ContextOf(section, options);
  for (const FieldAnalysis& field : fields) {
    for (int row = 1; row <= field.Grid.Rows(); ++row) {
      for (int column = 1; column <= field.Grid.Columns(); ++column) {
        text += Row(section, field, context, column, row);
      }
    }
  }
  return text;
}

// Several fields one above the other, each with its own title and scale.
Picture PageOf(const Section& section, const AskedSection& asked, const Options& options,
               std::span<const FieldAnalysis> fields) {
  const Surface whole = ImageSurface(asked.Size.Width, asked.Size.Height);
  const auto draw = [&](const FieldAnalysis& field, const Surface& on) {
    return crosssection::PlotSection({section, asked.Set, options, field}, on).Page;
  };
  if (fields.size() == 1) return draw(fields.front(), whole);
  const double height = whole.Height / static_cast<double>(fields.size());
  Picture page;
  double top = 0;
  for (const FieldAnalysis& field : fields) {
    Picture part = draw(field, {whole.Width, height, whole.On});
    if (top == 0) page = Picture(whole.Width, whole.Height, part.Paper());
    page.Add("field", Inset{{0, top, whole.Width, top + height}, std::move(part)});
    top += height;
  }
  return page;
}

std::optional<Fault> SavePage(const Picture& page, const std::string& output, const PixelSize& size,
                              Console& console) {
  const std::filesystem::path path = PathFromText(output);
  if (Ending(output) == ".svg") return SaveFile(path, ToSvg(page, size.Width, size.Height));
  return console.Tools->SavePicture(page, path, size.Width, size.Height, {});
}

class SectionRun {
 public:
  SectionRun(const AskedSection& asked, const CommandSetup& setup, Console& console)
      : asked_(asked), setup_(setup), console_(console), inputs_(console, setup.Stations, 0) {}

  int Run(const Arguments& arguments) {
    if (!Assemble(arguments)) return inputs_.ExitCode();
    std::vector<FieldAnalysis> fields;
    for (const FieldRow* field : asked_.Fields) {
      for (const Box& box : ChecksFor(section_, *field, asked_.Set)) Tell(box.Text);
      Outcome<FieldAnalysis> analysis =
          AnalyzeField(section_, *field, asked_.Set, asked_.Intervals);
      if (!analysis) {
        inputs_.Fail("section", OneLine(crosssection::CreationError(analysis.Error().Detail).Text));
        return inputs_.ExitCode();
      }
      std::string refusal;
      for (const std::string& line : analysis.Value().Refusal) refusal += line + " ";
      if (!refusal.empty()) inputs_.Fail(std::string(field->Code), Trim(refusal));
      fields.push_back(std::move(analysis.Value()));
    }
    asked_.Format.empty() ? Draw(fields) : Write(fields);
    return inputs_.ExitCode();
  }

 private:
  void Tell(std::string text) {
    console_.Err("vexa-cli: section: " + OneLine(std::move(text)) + "\n");
  }

  bool Assemble(const Arguments& arguments) {
    SectionWork work(setup_.Settings.Set, setup_.MountainFile);
    section_.Kind = asked_.Kind;
    section_.Name = arguments.Value("--name").value_or("");
    std::vector<std::filesystem::path> files;
    for (const std::string& file : arguments.Files) files.push_back(PathFromText(file));
    work.Load(files, asked_.Choice, {.Stations = &setup_.Stations}, {}, section_);
    StationMountains mountains(setup_.MountainFile, console_);
    for (const crosssection::Column& column : section_.Columns) mountains.Of(column.Sounding);
    for (const SectionTrouble& trouble : work.Troubles()) {
      trouble.Failed ? inputs_.Fail(trouble.Name, *trouble.Failed)
                     : inputs_.Doubt(trouble.Name, trouble.Finding);
    }
    if (const std::string why = WhyNoSection(section_); !why.empty()) {
      inputs_.Fail("section", why);
      return false;
    }
    if (arguments.Has("--reverse")) section_.Direction = crosssection::SectionDirection::Reverse;
    Arrange(section_);
    for (const std::string& remark : SectionRemarks(section_)) Tell(remark);
    if (arguments.Has("--interpolate")) work.Interpolate(section_);
    return true;
  }

  Outcome<std::string> TextOf(const std::vector<FieldAnalysis>& fields) const {
    if (asked_.Format == "netcdf") return report::SectionNetcdf(section_, asked_.Set, fields);
    if (asked_.Format == "csv") return CsvOf(section_, asked_.Set, fields);
    return report::JsonText(report::SectionJson(section_, asked_.Set, fields)) + "\n";
  }

  void Write(const std::vector<FieldAnalysis>& fields) {
    const Outcome<std::string> text = TextOf(fields);
    if (!text) return inputs_.Fail("section", text.Error());
    if (asked_.Output.empty()) {
      console_.Out(text.Value());
    } else if (const auto fault = SaveFile(PathFromText(asked_.Output), text.Value())) {
      inputs_.Fail(asked_.Output, *fault);
    }
  }

  void Draw(const std::vector<FieldAnalysis>& fields) {
    const auto save = [&](std::span<const FieldAnalysis> some, const std::string& output) {
      const Picture page = PageOf(section_, asked_, setup_.Settings.Set, some);
      if (const auto fault = SavePage(page, output, asked_.Size, console_)) {
        inputs_.Fail(output, *fault);
      }
    };
    const std::size_t place = asked_.Output.find(kFieldPlace);
    if (place == std::string::npos) return save(fields, asked_.Output);
    for (const FieldAnalysis& field : fields) {
      std::string output = asked_.Output;
      output.replace(place, kFieldPlace.size(), field.Field->Code);
      save({&field, 1}, output);
    }
  }

  const AskedSection& asked_;
  const CommandSetup& setup_;
  Console& console_;
  Inputs inputs_;
  Section section_{};
};

int RunSection(const Arguments& arguments, Console& console) {
  const Outcome<CommandSetup> setup = SetupOf(arguments, console);
  if (!setup) return UsageError(console, kSectionCommand, setup.Error().Detail);
  const Outcome<AskedSection> asked = AskedSectionBy(arguments, setup.Value());
  if (!asked) return UsageError(console, kSectionCommand, asked.Error().Detail);
  const bool isPicture = asked.Value().Format.empty() && Ending(asked.Value().Output) != ".svg";
  if (isPicture && console.Tools == nullptr) {
    return LacksToolkit(console, kSectionCommand,
                        Ending(asked.Value().Output) + " pictures, only .svg");
  }
  if (const auto fault = NotAnInput(arguments, asked.Value().Output)) {
    return UsageError(console, kSectionCommand, fault->Detail);
  }
  return SectionRun(asked.Value(), setup.Value(), console).Run(arguments);
}

}  // namespace

const Command kSectionCommand = {
    {"section", "FILE-OR-FOLDER... -o OUT.{png,jpg,bmp,svg,pdf} [options]",
     "Draws soundings side by side, along a line of stations or in time.", kSectionOptions},
    RunSection,
    true};

}  // namespace vexa::cli
