#include "config/settings_store.h"

#include <utility>

#include "config/catalogue.h"
#include "config/old_places.h"
#include "config/system_file.h"
#include "core/user_file.h"

namespace vexa {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kFieldsPerRecord = 3;

// The options of a file in the order of the catalogue, up to three of a tab on a record; after them
// the option arrays, an element on each record.
Records<Options> OptionRecords(SettingsFile file) {
  Records<Options> records, elements;
  for (const OptionRow& row : Catalogue()) {
    if (row.File != file) continue;
    Records<Options>& target = row.Element > 0 ? elements : records;
    const bool starts = target.empty() || target.back().front()->Place != row.Place ||
                        target.back().front()->Element != row.Element ||
                        (row.Element == 0 && target.back().size() == kFieldsPerRecord);
    if (starts) target.emplace_back();
    target.back().push_back(&row);
  }
  records.insert(records.end(), elements.begin(), elements.end());
  return records;
}

// Shows a file's parts to `visit`, in their order in the file.
template <class Store, class Visit>
void VisitParts(SettingsFile file, Store& store, Visit&& visit) {
  visit(store.Set, OptionRecords(file));
  const auto own = [&visit](auto& settings) { visit(settings, MarkedRecords(RowsOf(settings))); };
  switch (file) {
    case SettingsFile::System:
      return own(store.System);
    case SettingsFile::Soaring:
      return own(store.Soaring);
    case SettingsFile::Hodograph:
      return own(store.Hodograph);
    case SettingsFile::Hodogram3D:
      return own(store.Hodogram3D);
    case SettingsFile::Window:
      return own(store.Window);
    case SettingsFile::Listing:
      return own(store.Listing);
    case SettingsFile::Main:
      return;
  }
}

// The options as the files are to have them. Those of this run may not go together with what the
// user has changed beside them: then all are kept.
Options OptionsToKeep(const SettingsStore& store) {
  Options kept = store.Set;
  for (const RunOption& option : store.ForThisRun) {
    const OptionRow& row = *FindOption(option.Key);
    if (row.Write(kept) == option.Now) row.Read(kept, option.Kept);
  }
  return CheckOptions(kept) ? store.Set : kept;
}

// What the user has changed since is no more for one run.
void ForgetChanged(SettingsStore& store) {
  std::erase_if(store.ForThisRun, [&store](const RunOption& option) {
    return FindOption(option.Key)->Write(store.Set) != option.Now;
  });
}

std::string WriteFile(SettingsFile file, SettingsStore store) {
  SystemWriter writer;
  store.Set = OptionsToKeep(store);
  if (file == SettingsFile::System) writer.TextRecord(kSystemTag);
  if (file != SettingsFile::System) writer.TextRecord(kKeysMark);
  VisitParts(file, store, [&writer, file](const auto& settings, const auto& records) {
    if (file == SettingsFile::System) {
      writer.Write(settings, records);
    } else {
      writer.WriteKeyed(settings, records);
    }
  });
  return writer.Take();
}

// What the file says, by keys or by place.
std::vector<KeyedField> FieldsOf(SettingsFile file, SystemReader& reader) {
  if (file != SettingsFile::System && reader.HasKeys()) return reader.KeyedFields();
  std::vector<KeyedField> fields = reader.FieldsAt(
      file == SettingsFile::System ? PlacesOf(MarkedRecords(RowsOf(SystemSettings{})))
                                   : OldPlaces(file));
  reader.ExpectEnd();
  return fields;
}

// What was wrong with the file; empty when nothing was. Options that do not go together fall back
// to their defaults.
std::string ReadParts(SettingsFile file, const std::string& name, const std::string& bytes,
                      SettingsStore& store) {
  SystemReader reader(name, bytes);
  if (file == SettingsFile::System && reader.TextRecord("the version tag") != kSystemTag) {
    reader.Note("the version tag is not " + std::string(kSystemTag));
    store.System = {};
    return reader.Problem();
  }
  std::vector<KeyedField> fields = FieldsOf(file, reader);
  VisitParts(file, store,
             [&](auto& settings, const auto& records) { reader.Read(settings, records, fields); });
  for (const KeyedField& field : fields) {
    if (!field.IsKnown) reader.Note(field.Line, "there is no setting \"" + field.Key + '"');
  }
  if (file != SettingsFile::Main) return reader.Problem();
  const std::vector<std::string> repaired = RepairOptions(store.Set);
  if (!reader.Problem().empty() || repaired.empty()) return reader.Problem();
  return name + ": " + repaired.front();
}

}  // namespace

std::string SettingsFileName(SettingsFile file, Configuration active) {
  const std::string tag(kSystemTag);
  switch (file) {
    case SettingsFile::System:
      return "VEXA.SYS";
    case SettingsFile::Soaring:
      return "VEXAsoar.CFG";
    case SettingsFile::Hodograph:
      return tag + ".HOD";
    case SettingsFile::Hodogram3D:
      return tag + ".H3D";
    case SettingsFile::Window:
      return tag + ".RAW";
    case SettingsFile::Listing:
      return tag + ".THM";
    case SettingsFile::Main:
      break;
  }
  const bool isNamed = active != Configuration::None;
  return "VEXA" + (isNamed ? std::string(Word(active)) : "") + "MAIN.SYS";
}

void LoadSettingsFile(const fs::path& folder, SettingsFile file, SettingsStore& store,
                      std::vector<std::string>& notes) {
  const std::string name = SettingsFileName(file, store.Active);
  std::erase_if(store.ForThisRun,
                [file](const RunOption& option) { return FindOption(option.Key)->File == file; });
  const Outcome<std::string> bytes = ReadFile(folder / PathFromText(name));
  const bool isMissing = !bytes && bytes.Error().Number == kFaultFileNotFound;
  std::string problem = ReadParts(file, name, bytes ? bytes.Value() : "", store);
  if (!bytes) problem = isMissing ? "" : bytes.Error().Detail;
  if (file == SettingsFile::System) store.Active = store.System.Current;
  if (!problem.empty()) notes.push_back(problem + '.');
}

void LoadSettings(const fs::path& folder, SettingsStore& store, std::vector<std::string>& notes) {
  store = {};
  for (const SettingsFile file : kSettingsFiles) LoadSettingsFile(folder, file, store, notes);
}

std::optional<Fault> SetForThisRun(SettingsStore& store,
                                   const std::vector<std::string>& assignments) {
  const Options before = store.Set;
  Options set = before;
  for (const std::string& assignment : assignments) {
    if (std::optional<Fault> fault = SetOption(set, assignment)) return fault;
  }
  if (std::optional<Fault> fault = CheckOptions(set)) return fault;
  for (const OptionRow& row : Catalogue()) {
    const std::string now = row.Write(set), kept = row.Write(before);
    if (now != kept) store.ForThisRun.push_back({std::string(row.Key), now, kept});
  }
  store.Set = set;
  return std::nullopt;
}

std::optional<Fault> SaveSettingsFile(const fs::path& folder, SettingsFile file,
                                      SettingsStore& store, FileOps& ops) {
  const std::string name = SettingsFileName(file, store.Active);
  const Objection objects = [&](std::string_view text) {
    SettingsStore read;
    return ReadParts(file, name, std::string(text), read);
  };
  return SaveUserFile(folder / PathFromText(name), WriteFile(file, store), objects, ops);
}

std::optional<Fault> SaveChangedSettings(const fs::path& folder, SettingsStore& store,
                                         const SettingsStore& before, FileOps& ops) {
  std::optional<Fault> first;
  for (const SettingsFile file : kSettingsFiles) {
    if (WriteFile(file, store) == WriteFile(file, before)) continue;
    const std::optional<Fault> fault = SaveSettingsFile(folder, file, store, ops);
    if (!first) first = fault;
  }
  ForgetChanged(store);
  return first;
}

std::optional<Fault> SwitchConfiguration(const fs::path& folder, Configuration to,
                                         SettingsStore& store, std::vector<std::string>& notes,
                                         FileOps& ops) {
  SettingsStore next = store;
  if (auto fault = SaveSettingsFile(folder, SettingsFile::Main, next, ops)) return fault;
  next.Active = next.System.Current = to;
  std::vector<std::string> found;
  LoadSettingsFile(folder, SettingsFile::Main, next, found);
  if (auto fault = SaveSettingsFile(folder, SettingsFile::System, next, ops)) return fault;
  store = std::move(next);
  notes.insert(notes.end(), found.begin(), found.end());
  return std::nullopt;
}

std::string ConfigurationCaption(const SettingsStore& store) {
  const SystemSettings& system = store.System;
  const bool isShown = system.CaptionEnabled && system.CaptionOnDiagram;
  if (!isShown || store.Active == Configuration::None) return {};
  const auto index = static_cast<std::size_t>(store.Active) - 1;
  return "VEXA Config #" + std::string(Word(store.Active)) + ": " +
         system.Configurations[index].Name;
}

}  // namespace vexa
