// The little the archive store needs of a database: statements with numbered
// parameters ($1, $2, ...) and rows back, in transactions. SQLite and
// PostgreSQL both read the same statement texts.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

namespace net {

using Blob = std::vector<std::byte>;
using SqlValue = std::variant<std::monostate, int64_t, double, std::string, Blob>;
using SqlRow = std::vector<SqlValue>;

// A database that failed: cannot open, statement refused, connection lost.
class StoreError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

class SqlDatabase {
public:
    virtual ~SqlDatabase() = default;
    // Runs one statement; the rows it returns, if any. Throws StoreError.
    virtual std::vector<SqlRow> Run(const std::string& sql, const std::vector<SqlValue>& parameters = {}) = 0;
    // The type name of binary columns in this database's dialect.
    virtual std::string BlobType() const = 0;
};

// "postgresql://..." (or "postgres://...") opens PostgreSQL; anything else is
// the path of an SQLite file (made, with its folder, when missing).
std::unique_ptr<SqlDatabase> OpenSqlDatabase(const std::string& uri);
std::unique_ptr<SqlDatabase> OpenSqlite(const std::string& path);
std::unique_ptr<SqlDatabase> OpenPostgres(const std::string& uri);

int64_t AsInteger(const SqlValue& value);
double AsReal(const SqlValue& value);
const Blob& AsBlob(const SqlValue& value);

}  // namespace net
