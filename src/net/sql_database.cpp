#include "net/sql_database.h"

namespace net {

std::unique_ptr<SqlDatabase> OpenSqlDatabase(const std::string& uri) {
    if (uri.rfind("postgresql://", 0) == 0 || uri.rfind("postgres://", 0) == 0) return OpenPostgres(uri);
    return OpenSqlite(uri);
}

int64_t AsInteger(const SqlValue& value) {
    if (std::holds_alternative<int64_t>(value)) return std::get<int64_t>(value);
    if (std::holds_alternative<double>(value)) return static_cast<int64_t>(std::get<double>(value));
    throw StoreError("an integer was expected from the database");
}

double AsReal(const SqlValue& value) {
    if (std::holds_alternative<double>(value)) return std::get<double>(value);
    if (std::holds_alternative<int64_t>(value)) return static_cast<double>(std::get<int64_t>(value));
    throw StoreError("a number was expected from the database");
}

const Blob& AsBlob(const SqlValue& value) {
    static const Blob empty;
    if (std::holds_alternative<Blob>(value)) return std::get<Blob>(value);
    if (std::holds_alternative<std::monostate>(value)) return empty;
    throw StoreError("binary data were expected from the database");
}

}  // namespace net
