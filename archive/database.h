// The catalogue's database: SQLite with values bound by type and statements that end with their
// scope. What goes wrong is thrown as a StoreError inside this folder; Stored() turns it into the
// fault that callers get.
#pragma once

#include <cstdint>
#include <exception>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

#include "core/fault.h"

struct sqlite3;
struct sqlite3_stmt;

namespace vexa::archive {

class StoreError : public std::exception {
 public:
  explicit StoreError(Fault fault) : Why(std::move(fault)) {}
  const char* what() const noexcept override { return Why.Detail.c_str(); }
  Fault Why;
};

/// A value of a column; none where the sounding has none.
using Cell = std::variant<std::monostate, std::int64_t, double, std::string>;

class Statement {
 public:
  Statement(sqlite3* database, std::string name, std::string_view sql);

  Statement& Bind(int place, const Cell& value);  // places from 1
  Statement& Bind(int place, std::string_view bytes, bool isBlob);
  /// True while there is a row.
  bool Step();
  /// Runs a statement without rows and makes it ready for the next run.
  void Run();
  void Reset();

  int Columns() const;
  std::string_view ColumnName(int column) const;  // from 0
  bool IsNull(int column) const;
  std::int64_t Whole(int column) const;
  double Number(int column) const;
  std::string_view Text(int column) const;  // or a blob's bytes; until the next step
  Cell Value(int column) const;

 private:
  struct End {
    void operator()(sqlite3_stmt* statement) const;
  };
  sqlite3* database_;
  std::string name_;
  std::unique_ptr<sqlite3_stmt, End> statement_;
};

/// How a database is opened.
struct Opening {
  bool MayWrite = true;
  bool MayMake = false;        // makes one where there is none
  int WaitMs = 5000;           // for another process that holds it
  std::int64_t MostPages = 0;  // of 4096 bytes that it may grow to; 0: what the disk has
};

class Database {
 public:
  Database(const std::filesystem::path& path, const Opening& opening);

  const std::string& Name() const { return name_; }
  void Run(const std::string& sql);
  Statement Prepare(std::string_view sql);
  /// Prepared once and kept.
  Statement& Kept(const std::string& sql);
  std::int64_t LastId() const;

 private:
  struct End {
    void operator()(sqlite3* database) const;
  };
  std::string name_;
  std::unique_ptr<sqlite3, End> database_{};
  std::map<std::string, Statement> kept_{};
};

/// What was changed since is undone unless Commit is reached.
class Transaction {
 public:
  explicit Transaction(Database& database);
  ~Transaction();
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;
  void Commit();

 private:
  Database& database_;
  bool isOpen_ = true;
};

/// A name between quotation marks.
std::string Quoted(std::string_view name);

/// Runs what may throw; the fault where it did.
template <class Body>
std::optional<Fault> Stored(Body&& body) {
  try {
    std::forward<Body>(body)();
    return std::nullopt;
  } catch (const StoreError& error) {
    return error.Why;
  } catch (const std::bad_alloc&) {
    return Fault{kFaultNoMemory, "Catalogue", "out of memory"};
  }
}

}  // namespace vexa::archive
