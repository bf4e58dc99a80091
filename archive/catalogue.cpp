#include "archive/catalogue.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <utility>

#include "archive/stable_hash.h"
#include "archive/standard_levels.h"
#include "core/files.h"
#include "core/numbers.h"
#include "core/platform.h"

namespace vexa::archive {
namespace {

constexpr int kMark = 0x56455841;  // of the file's header
constexpr int kVersion = 1;        // of the tables

std::string_view TypeWord(ColumnKind kind) {
  switch (kind) {
    case ColumnKind::Whole:
      return "INTEGER";
    case ColumnKind::Number:
      return "REAL";
    case ColumnKind::Text:
      break;
  }
  return "TEXT";
}

std::string Declared(const Column& column) {
  return Quoted(column.Name) + " " + std::string(TypeWord(column.Kind));
}

std::int64_t Asked(Database& database, const std::string& sql) {
  Statement statement = database.Prepare(sql);
  return statement.Step() ? statement.Whole(0) : 0;
}

StoreError Strange(const Database& database, std::string detail) {
  return StoreError({kFaultFormat, "Catalogue", std::move(detail), database.Name()});
}

std::optional<std::int64_t> HashOfFile(const std::filesystem::path& path) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(OpenFile(path, "rb"), std::fclose);
  if (!file) return std::nullopt;
  StableHash hash;
  std::string bytes(std::size_t{1} << 18, '\0');
  while (const std::size_t got = std::fread(bytes.data(), 1, bytes.size(), file.get())) {
    hash.AddWords(std::string_view(bytes).substr(0, got));
  }
  if (std::ferror(file.get()) != 0) return std::nullopt;
  return static_cast<std::int64_t>(hash.Value());
}

}  // namespace

Outcome<Catalogue> Catalogue::Open(const std::filesystem::path& path, const Opening& opening) {
  if (!opening.MayMake && !IsThere(path)) {
    return Fault{kFaultFileNotFound, "Catalogue", "there is no such catalogue", TextFromPath(path)};
  }
  std::optional<Catalogue> catalogue;
  const std::optional<Fault> fault = Stored([&] {
    Database database(path, opening);
    // A first reading of its tables shows whether it can be read at all.
    const bool isEmpty = Asked(database, "SELECT count(*) FROM sqlite_master") == 0;
    const std::int64_t mark = Asked(database, "PRAGMA application_id");
    const std::int64_t version = Asked(database, "PRAGMA user_version");
    catalogue.emplace(Catalogue(std::move(database)));
    Database& store = catalogue->database_;
    if (isEmpty && opening.MayMake) {
      catalogue->Make();
    } else if (isEmpty || mark != kMark) {
      throw Strange(store, "this is no catalogue of soundings");
    } else if (version > kVersion) {
      throw Strange(store, "the catalogue was made by a newer program");
    }
    catalogue->Adjust(opening.MayWrite || opening.MayMake);
  });
  if (fault) return *fault;
  return std::move(*catalogue);
}

void Catalogue::Make() {
  Transaction transaction(database_);
  if (Asked(database_, "SELECT count(*) FROM sqlite_master") > 0) return;  // another process did
  database_.Run("PRAGMA application_id=" + std::to_string(kMark));
  database_.Run("PRAGMA user_version=" + std::to_string(kVersion));
  std::string columns;
  for (const Column& column : Columns()) {
    if (!column.IsOfFile) columns += ", " + Declared(column);
  }
  database_.Run(
      "CREATE TABLE files(id INTEGER PRIMARY KEY, path TEXT NOT NULL UNIQUE, size INTEGER,"
      " written INTEGER, stamp INTEGER, settings TEXT, done INTEGER NOT NULL, whole INTEGER NOT "
      "NULL,"
      " trouble TEXT)");
  database_.Run(
      "CREATE TABLE refused(of INTEGER NOT NULL, sounding INTEGER NOT NULL, reason TEXT,"
      " PRIMARY KEY(of, sounding)) WITHOUT ROWID");
  database_.Run("CREATE TABLE soundings(id INTEGER PRIMARY KEY, of INTEGER NOT NULL" + columns +
                ", UNIQUE(of, sounding))");
  database_.Run("CREATE INDEX by_station ON soundings(station, month, hour)");
  database_.Run("CREATE TABLE profiles(id INTEGER PRIMARY KEY, levels BLOB NOT NULL)");
  database_.Run("CREATE TABLE settings(fingerprint TEXT PRIMARY KEY, text TEXT) WITHOUT ROWID");
  database_.Run("CREATE TABLE changes(count INTEGER NOT NULL)");
  database_.Run("INSERT INTO changes VALUES(0)");
  transaction.Commit();
}

// Columns of new indices; those that it has and the table no longer knows stay as they are.
void Catalogue::Adjust(bool mayWrite) {
  std::vector<std::string> there;
  Statement names = database_.Prepare("SELECT name FROM pragma_table_info('soundings')");
  while (names.Step()) there.emplace_back(names.Text(0));
  names.Reset();
  has_.clear();
  std::string columns, places;
  for (const Column& column : Columns()) {
    bool isThere = column.IsOfFile || std::ranges::find(there, column.Name) != there.end();
    if (!isThere && mayWrite) {
      database_.Run("ALTER TABLE soundings ADD COLUMN " + Declared(column));
      isThere = true;
    }
    has_.push_back(isThere);
    if (column.IsOfFile) continue;
    columns += ", " + Quoted(column.Name);
    places += ", ?";
  }
  insert_ = "INSERT INTO soundings(of" + columns + ") VALUES(?" + places + ")";
}

bool Catalogue::Has(const Column& column) const {
  return has_[static_cast<std::size_t>(&column - Columns().data())];
}

std::optional<FileState> Catalogue::Find(std::string_view path) {
  Statement& find = database_.Kept(
      "SELECT id, path, size, written, stamp, settings, done, whole, trouble FROM files"
      " WHERE path = ?");
  find.Bind(1, path, false);
  std::optional<FileState> state;
  if (find.Step()) {
    state = FileState{.Id = find.Whole(0),
                      .Path = std::string(find.Text(1)),
                      .Size = find.Whole(2),
                      .Written = find.Whole(3),
                      .Stamp = find.Whole(4),
                      .Settings = std::string(find.Text(5)),
                      .Done = static_cast<int>(find.Whole(6)),
                      .IsWhole = find.Whole(7) != 0,
                      .Trouble = std::string(find.Text(8))};
  }
  find.Reset();
  return state;
}

FileState Catalogue::Begin(FileState file) {
  if (const std::optional<FileState> before = Find(file.Path)) {
    for (const char* sql :
         {"DELETE FROM profiles WHERE id IN (SELECT id FROM soundings WHERE of = ?)",
          "DELETE FROM soundings WHERE of = ?", "DELETE FROM refused WHERE of = ?",
          "DELETE FROM files WHERE id = ?"}) {
      database_.Kept(sql).Bind(1, before->Id).Run();
    }
  }
  Statement& insert = database_.Kept("INSERT INTO files(path, done, whole) VALUES(?, 0, 0)");
  insert.Bind(1, file.Path, false).Run();
  file.Id = database_.LastId();
  Update(file);
  return file;
}

void Catalogue::Update(const FileState& file) {
  database_
      .Kept(
          "UPDATE files SET size = ?, written = ?, stamp = ?, settings = ?, done = ?, whole = ?,"
          " trouble = ? WHERE id = ?")
      .Bind(1, file.Size)
      .Bind(2, file.Written)
      .Bind(3, file.Stamp)
      .Bind(4, file.Settings)
      .Bind(5, std::int64_t{file.Done})
      .Bind(6, std::int64_t{file.IsWhole ? 1 : 0})
      .Bind(7, file.Trouble.empty() ? Cell() : Cell(file.Trouble))
      .Bind(8, file.Id)
      .Run();
}

void Catalogue::Enter(std::int64_t file, const Entered& entered) {
  Statement& insert = database_.Kept(insert_);
  insert.Bind(1, file);
  int place = 2;
  for (const Column& column : Columns()) {
    if (!column.IsOfFile) insert.Bind(place++, ValueOf(column, entered));
  }
  insert.Run();
  database_.Kept("INSERT INTO profiles(id, levels) VALUES(?, ?)")
      .Bind(1, database_.LastId())
      .Bind(2, Packed(LevelsOf(entered.Results)), true)
      .Run();
}

void Catalogue::Refuse(std::int64_t file, int sounding, std::string_view reason) {
  database_.Kept("INSERT INTO refused(of, sounding, reason) VALUES(?, ?, ?)")
      .Bind(1, file)
      .Bind(2, std::int64_t{sounding})
      .Bind(3, reason, false)
      .Run();
}

void Catalogue::NameSettings(std::string_view fingerprint, std::string_view text) {
  database_.Kept("INSERT OR IGNORE INTO settings VALUES(?, ?)")
      .Bind(1, fingerprint, false)
      .Bind(2, text, false)
      .Run();
}

std::int64_t Catalogue::Changes() {
  return Asked(database_, "SELECT count FROM changes");
}

void Catalogue::CountChange() {
  database_.Kept("UPDATE changes SET count = count + 1").Run();
}

CatalogueCounts Catalogue::Counts() {
  return {.Files = Asked(database_, "SELECT count(*) FROM files"),
          .Soundings = Asked(database_, "SELECT count(*) FROM soundings"),
          .Refused = Asked(database_, "SELECT count(*) FROM refused"),
          .Troubled = Asked(database_, "SELECT count(*) FROM files WHERE trouble IS NOT NULL")};
}

std::optional<FileState> StateOf(const std::filesystem::path& path, bool withStamp) {
  const std::optional<FileStamp> stamp = StampOf(path);
  if (!stamp) return std::nullopt;
  FileState state{
      .Path = TextFromPath(path),
      .Size = static_cast<std::int64_t>(stamp->Size),
      .Written = static_cast<std::int64_t>(
          std::chrono::duration_cast<std::chrono::nanoseconds>(stamp->Written.time_since_epoch())
              .count())};
  if (!withStamp) return state;
  const std::optional<std::int64_t> hash = HashOfFile(path);
  if (!hash) return std::nullopt;
  state.Stamp = *hash;
  return state;
}

Outcome<std::vector<std::string>> CheckCatalogue(Catalogue& catalogue, bool files) {
  std::vector<std::string> found;
  const std::optional<Fault> fault = Stored([&] {
    Database& store = catalogue.Store();
    constexpr std::size_t kMostTold = 100;
    Statement sound = store.Prepare("PRAGMA integrity_check(100)");
    while (sound.Step()) {
      if (sound.Text(0) != "ok") found.emplace_back(sound.Text(0));
    }
    const std::pair<const char*, const char*> rules[] = {
        {"SELECT count(*) FROM soundings WHERE of NOT IN (SELECT id FROM files)",
         "soundings without their file"},
        {"SELECT count(*) FROM soundings WHERE id NOT IN (SELECT id FROM profiles)",
         "soundings without their levels"},
        {"SELECT count(*) FROM profiles WHERE id NOT IN (SELECT id FROM soundings)",
         "levels without their sounding"},
        {"SELECT count(*) FROM files WHERE done <> (SELECT count(*) FROM soundings WHERE of = "
         "files.id)"
         " + (SELECT count(*) FROM refused WHERE of = files.id)",
         "files of which more or fewer soundings are there than were entered"},
    };
    for (const auto& [sql, text] : rules) {
      if (const std::int64_t count = Asked(store, sql); count > 0) {
        found.push_back(std::to_string(count) + " " + text);
      }
    }
    if (!files) return;
    Statement all = store.Prepare("SELECT path, size, written, whole FROM files ORDER BY path");
    while (all.Step() && found.size() < kMostTold) {
      const std::string path(all.Text(0));
      const std::optional<FileState> now = StateOf(PathFromText(path), false);
      if (!now) {
        found.push_back(path + ": the file is gone");
      } else if (now->Size != all.Whole(1) || now->Written != all.Whole(2)) {
        found.push_back(path + ": the file has changed since it was entered");
      } else if (all.Whole(3) == 0) {
        found.push_back(path + ": only a part of the file has been entered");
      }
    }
  });
  if (fault) return *fault;
  return found;
}

}  // namespace vexa::archive
