#include "archive/merge.h"

#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "core/files.h"
#include "core/platform.h"

namespace vexa::archive {
namespace {

namespace fs = std::filesystem;

// One catalogue, gone through by path.
class Input {
 public:
  explicit Input(Catalogue catalogue)
      : catalogue_(std::move(catalogue)),
        files_(catalogue_.Store().Prepare(
            "SELECT path, written, whole, id FROM files ORDER BY path")) {
    Advance();
  }
  bool AtEnd() const { return atEnd_; }
  void Advance() {
    atEnd_ = !files_.Step();
    if (!atEnd_) path_ = files_.Text(0);
  }
  const std::string& Path() const { return path_; }
  std::int64_t Written() const { return files_.Whole(1); }
  bool IsWhole() const { return files_.Whole(2) != 0; }
  std::int64_t Id() const { return files_.Whole(3); }
  Catalogue& Of() { return catalogue_; }

 private:
  Catalogue catalogue_;
  Statement files_;
  std::string path_{};
  bool atEnd_ = false;
};

bool IsBetter(const Input& one, const Input& other) {
  if (one.IsWhole() != other.IsWhole()) return one.IsWhole();
  return one.Written() > other.Written();
}

// The rows of a statement into a table, with other numbers in their first columns.
class Copy {
 public:
  Copy(Catalogue& from, Catalogue& into, std::string_view select, const std::string& insert)
      : select_(from.Store().Prepare(select)), insert_(into.Store().Kept(insert)) {}

  template <class Number>
  void Run(std::int64_t file, const Number& number) {
    select_.Bind(1, file);
    while (select_.Step()) {
      number(select_, insert_);
      for (int column = 1; column < select_.Columns(); ++column) {
        insert_.Bind(column + 1, select_.Value(column));
      }
      insert_.Run();
    }
    select_.Reset();
  }

 private:
  Statement select_;
  Statement& insert_;
};

class Merger {
 public:
  explicit Merger(Catalogue& into) : into_(into), transaction_(into.Store()) {
    for (const Column& column : Columns()) {
      if (column.IsOfFile) continue;
      names_ += ", " + Quoted(column.Name);
      places_ += ", ?";
    }
    into_.CountChange();
  }

  void CopySettings(Catalogue& from) {
    Statement all = from.Store().Prepare("SELECT fingerprint, text FROM settings");
    while (all.Step()) into_.NameSettings(all.Text(0), all.Text(1));
  }

  void CopyFile(Input& input) {
    FileState file = *input.Of().Find(input.Path());
    const std::int64_t id = file.Id;
    file.Id = 0;
    file = into_.Begin(std::move(file));
    std::string wanted;
    for (const Column& column : Columns()) {
      if (!column.IsOfFile) wanted += ", " + SqlName(input.Of(), column);
    }
    Copy(input.Of(), into_, "SELECT of" + wanted + " FROM soundings WHERE of = ? ORDER BY sounding",
         "INSERT INTO soundings(of" + names_ + ") VALUES(?" + places_ + ")")
        .Run(id, [&](Statement&, Statement& insert) { insert.Bind(1, file.Id); });
    Copy(
        input.Of(), into_,
        "SELECT s.sounding, p.levels FROM soundings s JOIN profiles p ON p.id = s.id WHERE s.of = ?"
        " ORDER BY s.sounding",
        "INSERT INTO profiles(id, levels) SELECT id, CAST(?2 AS BLOB) FROM soundings"
        " WHERE of = ?3 AND sounding = ?1")
        .Run(id, [&](Statement& row, Statement& insert) {
          insert.Bind(1, row.Value(0)).Bind(3, file.Id);
          ++soundings_;
        });
    Copy(input.Of(), into_,
         "SELECT of, sounding, reason FROM refused WHERE of = ? ORDER BY sounding",
         "INSERT INTO refused(of, sounding, reason) VALUES(?, ?, ?)")
        .Run(id, [&](Statement&, Statement& insert) { insert.Bind(1, file.Id); });
  }

  void End() { transaction_.Commit(); }

 private:
  static std::string SqlName(const Catalogue& from, const Column& column) {
    return from.Has(column) ? Quoted(column.Name) : "NULL";
  }

  Catalogue& into_;
  Transaction transaction_;
  std::string names_{}, places_{};
  std::int64_t soundings_ = 0;
};

void MergeAll(std::vector<Input>& inputs, Catalogue& into) {
  Merger merger(into);
  for (Input& input : inputs) merger.CopySettings(input.Of());
  while (true) {
    Input* best = nullptr;
    for (Input& input : inputs) {
      if (input.AtEnd()) continue;
      const int order = best == nullptr ? -1 : input.Path().compare(best->Path());
      if (order < 0 || (order == 0 && IsBetter(input, *best))) best = &input;
    }
    if (best == nullptr) break;
    merger.CopyFile(*best);
    const std::string path = best->Path();
    for (Input& input : inputs) {
      if (!input.AtEnd() && input.Path() == path) input.Advance();
    }
  }
  merger.End();
}

}  // namespace

std::optional<Fault> Merge(const fs::path& into, std::span<const fs::path> from) {
  if (IsThere(into)) {
    return Fault{kFaultFileExists, "Merge", "the catalogue exists already", TextFromPath(into)};
  }
  fs::path making = into;
  making += ".merging";
  Remove(making);  // what a process that was killed has left
  Remove(PathFromText(TextFromPath(making) + "-journal"));
  std::optional<Fault> fault;
  {
    std::vector<Input> inputs;
    inputs.reserve(from.size());
    for (const fs::path& path : from) {
      Outcome<Catalogue> catalogue = Catalogue::Open(path, {.MayWrite = false});
      if (!catalogue) {
        fault = catalogue.Error();
        fault->File = TextFromPath(path);
        return fault;
      }
      fault = Stored([&] { inputs.emplace_back(std::move(catalogue.Value())); });
      if (fault) return fault;
    }
    Outcome<Catalogue> made = Catalogue::Open(making, {.MayMake = true});
    if (!made) return made.Error();
    fault = Stored([&] { MergeAll(inputs, made.Value()); });
  }
  if (!fault) {
    const std::error_code failed = RenameOver(making, into);
    if (!failed) return std::nullopt;
    fault = Fault{FaultNumber(failed), "Merge", failed.message(), TextFromPath(into)};
  }
  Remove(making);
  return fault;
}

}  // namespace vexa::archive
