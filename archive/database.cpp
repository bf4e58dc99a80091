#include "archive/database.h"

#include <sqlite3.h>

#include "core/files.h"
#include "core/late_library.h"
#include "core/numbers.h"

namespace vexa::archive {
namespace {

#ifdef VEXA_SQLITE_LIBRARY
VEXA_LATE_LIBRARY(Sqlite, VEXA_SQLITE_LIBRARY);
VEXA_LATE_FUNCTION(SqliteLibrary, sqlite3_bind_blob);
VEXA_LATE_FUNCTION(SqliteLibrary, sqlite3_bind_double);
VEXA_LATE_FUNCTION(SqliteLibrary, sqlite3_bind_int64);
VEXA_LATE_FUNCTION(SqliteLibrary, sqlite3_bind_null);
VEXA_LATE_FUNCTION(SqliteLibrary, sqlite3_bind_text);
VEXA_LATE_FUNCTION(SqliteLibrary, sqlite3_busy_timeout);
VEXA_LATE_FUNCTION(SqliteLibrary, sqlite3_close_v2);
VEXA_LATE_FUNCTION(SqliteLibrary, sqlite3_column_blob);
VEXA_LATE_FUNCTION(SqliteLibrary, sqlite3_column_bytes);
VEXA_LATE_FUNCTION(SqliteLibrary, sqlite3_column_count);
VEXA_LATE_FUNCTION(SqliteLibrary, sqlite3_column_double);
VEXA_LATE_FUNCTION(SqliteLibrary, sqlite3_column_int64);
VEXA_LATE_FUNCTION(SqliteLibrary, sqlite3_column_name);
VEXA_LATE_FUNCTION(SqliteLibrary, sqlite3_column_type);
VEXA_LATE_FUNCTION(SqliteLibrary, sqlite3_db_config);
VEXA_LATE_FUNCTION(SqliteLibrary, sqlite3_errmsg);
VEXA_LATE_FUNCTION(SqliteLibrary, sqlite3_errstr);
VEXA_LATE_FUNCTION(SqliteLibrary, sqlite3_exec);
VEXA_LATE_FUNCTION(SqliteLibrary, sqlite3_extended_result_codes);
VEXA_LATE_FUNCTION(SqliteLibrary, sqlite3_finalize);
VEXA_LATE_FUNCTION(SqliteLibrary, sqlite3_last_insert_rowid);
VEXA_LATE_FUNCTION(SqliteLibrary, sqlite3_open_v2);
VEXA_LATE_FUNCTION(SqliteLibrary, sqlite3_prepare_v2);
VEXA_LATE_FUNCTION(SqliteLibrary, sqlite3_reset);
VEXA_LATE_FUNCTION(SqliteLibrary, sqlite3_step);
#else
constexpr bool HasSqlite() {
  return true;
}
#endif

// What the library reports, in our words where users meet it.
[[noreturn]] void Throw(sqlite3* database, const std::string& name, int code) {
  Fault fault{kFaultDeviceError, "Catalogue", {}, name};
  const std::string said = database != nullptr ? sqlite3_errmsg(database) : sqlite3_errstr(code);
  switch (code & 0xff) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      fault.Number = kFaultAccessRefused;
      fault.Detail = "the catalogue is locked by another process";
      break;
    case SQLITE_FULL:
      fault.Number = kFaultDiskFull;
      fault.Detail = "the disk is full; what was entered before is kept";
      break;
    case SQLITE_CORRUPT:
      fault.Number = kFaultBadData;
      fault.Detail = "the catalogue is damaged: " + said;
      break;
    case SQLITE_NOTADB:
      fault.Number = kFaultFormat;
      fault.Detail = "this is no catalogue of soundings, or a damaged one";
      break;
    case SQLITE_CANTOPEN:
      fault.Number = kFaultFileNotFound;
      fault.Detail = "the catalogue cannot be opened";
      break;
    case SQLITE_READONLY:
      fault.Number = kFaultAccessRefused;
      fault.Detail = "the catalogue cannot be written to";
      break;
    case SQLITE_NOMEM:
      fault.Number = kFaultNoMemory;
      fault.Detail = "out of memory";
      break;
    default:
      fault.Detail = "the catalogue cannot be used: " + said;
  }
  throw StoreError(std::move(fault));
}

}  // namespace

void Statement::End::operator()(sqlite3_stmt* statement) const {
  sqlite3_finalize(statement);
}

Statement::Statement(sqlite3* database, std::string name, std::string_view sql)
    : database_(database), name_(std::move(name)) {
  sqlite3_stmt* statement = nullptr;
  const int code =
      sqlite3_prepare_v2(database, sql.data(), static_cast<int>(sql.size()), &statement, nullptr);
  statement_.reset(statement);
  if (code != SQLITE_OK) Throw(database, name_, code);
}

Statement& Statement::Bind(int place, const Cell& value) {
  int code = SQLITE_OK;
  if (const auto* whole = std::get_if<std::int64_t>(&value)) {
    code = sqlite3_bind_int64(statement_.get(), place, *whole);
  } else if (const auto* number = std::get_if<double>(&value)) {
    code = sqlite3_bind_double(statement_.get(), place, *number);
  } else if (const auto* text = std::get_if<std::string>(&value)) {
    return Bind(place, *text, false);
  } else {
    code = sqlite3_bind_null(statement_.get(), place);
  }
  if (code != SQLITE_OK) Throw(database_, name_, code);
  return *this;
}

Statement& Statement::Bind(int place, std::string_view bytes, bool isBlob) {
  const auto size = static_cast<int>(bytes.size());
  const int code =
      isBlob ? sqlite3_bind_blob(statement_.get(), place, bytes.data(), size, SQLITE_TRANSIENT)
             : sqlite3_bind_text(statement_.get(), place, bytes.data(), size, SQLITE_TRANSIENT);
  if (code != SQLITE_OK) Throw(database_, name_, code);
  return *this;
}

bool Statement::Step() {
  const int code = sqlite3_step(statement_.get());
  if (code == SQLITE_ROW) return true;
  if (code == SQLITE_DONE) return false;
  sqlite3_reset(statement_.get());
  Throw(database_, name_, code);
}

void Statement::Run() {
  while (Step()) {
  }
  Reset();
}

void Statement::Reset() {
  sqlite3_reset(statement_.get());
}

int Statement::Columns() const {
  return sqlite3_column_count(statement_.get());
}

std::string_view Statement::ColumnName(int column) const {
  return sqlite3_column_name(statement_.get(), column);
}

bool Statement::IsNull(int column) const {
  return sqlite3_column_type(statement_.get(), column) == SQLITE_NULL;
}

std::int64_t Statement::Whole(int column) const {
  return sqlite3_column_int64(statement_.get(), column);
}

double Statement::Number(int column) const {
  return sqlite3_column_double(statement_.get(), column);
}

std::string_view Statement::Text(int column) const {
  const auto* bytes = static_cast<const char*>(sqlite3_column_blob(statement_.get(), column));
  const int size = sqlite3_column_bytes(statement_.get(), column);
  return {bytes == nullptr ? "" : bytes, static_cast<std::size_t>(size)};
}

Cell Statement::Value(int column) const {
  switch (sqlite3_column_type(statement_.get(), column)) {
    case SQLITE_INTEGER:
      return Whole(column);
    case SQLITE_FLOAT:
      return Number(column);
    case SQLITE_NULL:
      return {};
    default:
      return std::string(Text(column));
  }
}

void Database::End::operator()(sqlite3* database) const {
  sqlite3_close_v2(database);
}

Database::Database(const std::filesystem::path& path, const Opening& opening)
    : name_(TextFromPath(path)) {
  if (!HasSqlite()) {
    Fault fault = NoLibrary("Catalogue", "catalogues need SQLite, which this system lacks");
    fault.File = name_;
    throw StoreError(std::move(fault));
  }
  const int flags = opening.MayMake    ? SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE
                    : opening.MayWrite ? SQLITE_OPEN_READWRITE
                                       : SQLITE_OPEN_READONLY;
  sqlite3* database = nullptr;
  // One thread at a time has a database: no locks about each value that is bound.
  const int code = sqlite3_open_v2(name_.c_str(), &database, flags | SQLITE_OPEN_NOMUTEX, nullptr);
  database_.reset(database);
  if (code != SQLITE_OK) Throw(database, name_, code);
  sqlite3_extended_result_codes(database, 1);
  sqlite3_busy_timeout(database, opening.WaitMs);
  // Twice quotation marks make a name and never a text by mistake.
  sqlite3_db_config(database, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
  sqlite3_db_config(database, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
  Run("PRAGMA cache_size=-16384");  // kB
  Run("PRAGMA temp_store=FILE");
  if (opening.MostPages > 0) Run("PRAGMA max_page_count=" + std::to_string(opening.MostPages));
}

void Database::Run(const std::string& sql) {
  const int code = sqlite3_exec(database_.get(), sql.c_str(), nullptr, nullptr, nullptr);
  if (code != SQLITE_OK) Throw(database_.get(), name_, code);
}

Statement Database::Prepare(std::string_view sql) {
  return {database_.get(), name_, sql};
}

Statement& Database::Kept(const std::string& sql) {
  const auto found = kept_.find(sql);
  if (found != kept_.end()) return found->second;
  return kept_.emplace(sql, Prepare(sql)).first->second;
}

std::int64_t Database::LastId() const {
  return sqlite3_last_insert_rowid(database_.get());
}

Transaction::Transaction(Database& database) : database_(database) {
  database_.Run("BEGIN IMMEDIATE");
}

Transaction::~Transaction() {
  if (!isOpen_) return;
  // The library may have undone it itself, as when the disk is full.
  static_cast<void>(Stored([this] { database_.Run("ROLLBACK"); }));
}

void Transaction::Commit() {
  database_.Run("COMMIT");
  isOpen_ = false;
}

std::string Quoted(std::string_view name) {
  std::string quoted = "\"";
  for (const char c : name) {
    if (c == '"') quoted += '"';
    quoted += c;
  }
  return quoted + '"';
}

}  // namespace vexa::archive
