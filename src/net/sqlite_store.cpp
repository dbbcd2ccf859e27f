// SQLite behind SqlDatabase: one connection, statements prepared per run.
#include <sqlite3.h>

#include <filesystem>

#include "net/sql_database.h"

namespace net {
namespace {

class SqliteDatabase : public SqlDatabase {
public:
    explicit SqliteDatabase(const std::string& path) {
        std::error_code error;
        const auto folder = std::filesystem::path(path).parent_path();
        if (!folder.empty()) std::filesystem::create_directories(folder, error);
        if (sqlite3_open_v2(path.c_str(), &db_, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_FULLMUTEX,
                            nullptr) != SQLITE_OK) {
            const std::string message = db_ != nullptr ? sqlite3_errmsg(db_) : "out of memory";
            sqlite3_close(db_);
            throw StoreError("cannot open " + path + ": " + message);
        }
        sqlite3_busy_timeout(db_, 5000);
        try {
            // A file that is no database opens fine and fails here; the
            // destructor does not run for a constructor that throws.
            Run("PRAGMA journal_mode=WAL", {});
            Run("PRAGMA synchronous=NORMAL", {});
        } catch (...) {
            sqlite3_close(db_);
            db_ = nullptr;
            throw;
        }
    }
    ~SqliteDatabase() override { sqlite3_close(db_); }

    std::string BlobType() const override { return "BLOB"; }

    std::vector<SqlRow> Run(const std::string& sql, const std::vector<SqlValue>& parameters) override {
        sqlite3_stmt* statement = nullptr;
        if (sqlite3_prepare_v2(db_, sql.c_str(), static_cast<int>(sql.size()), &statement, nullptr) != SQLITE_OK)
            throw StoreError(std::string("statement refused: ") + sqlite3_errmsg(db_));
        struct Finalizer {
            sqlite3_stmt* s;
            ~Finalizer() { sqlite3_finalize(s); }
        } finalizer{statement};
        for (size_t i = 0; i < parameters.size(); ++i) {
            const std::string name = "$" + std::to_string(i + 1);
            const int index = sqlite3_bind_parameter_index(statement, name.c_str());
            if (index == 0) continue;
            const SqlValue& v = parameters[i];
            int rc = SQLITE_OK;
            if (std::holds_alternative<int64_t>(v)) rc = sqlite3_bind_int64(statement, index, std::get<int64_t>(v));
            else if (std::holds_alternative<double>(v)) rc = sqlite3_bind_double(statement, index, std::get<double>(v));
            else if (std::holds_alternative<std::string>(v)) {
                const auto& s = std::get<std::string>(v);
                rc = sqlite3_bind_text(statement, index, s.data(), static_cast<int>(s.size()), SQLITE_TRANSIENT);
            } else if (std::holds_alternative<Blob>(v)) {
                const auto& b = std::get<Blob>(v);
                rc = sqlite3_bind_blob(statement, index, b.data(), static_cast<int>(b.size()), SQLITE_TRANSIENT);
            } else {
                rc = sqlite3_bind_null(statement, index);
            }
            if (rc != SQLITE_OK) throw StoreError(std::string("parameter refused: ") + sqlite3_errmsg(db_));
        }
        std::vector<SqlRow> rows;
        for (;;) {
            const int rc = sqlite3_step(statement);
            if (rc == SQLITE_DONE) return rows;
            if (rc != SQLITE_ROW) throw StoreError(std::string("statement failed: ") + sqlite3_errmsg(db_));
            SqlRow row;
            for (int c = 0; c < sqlite3_column_count(statement); ++c) {
                switch (sqlite3_column_type(statement, c)) {
                case SQLITE_INTEGER: row.emplace_back(static_cast<int64_t>(sqlite3_column_int64(statement, c))); break;
                case SQLITE_FLOAT: row.emplace_back(sqlite3_column_double(statement, c)); break;
                case SQLITE_TEXT:
                    row.emplace_back(std::string(reinterpret_cast<const char*>(sqlite3_column_text(statement, c)),
                                                 static_cast<size_t>(sqlite3_column_bytes(statement, c))));
                    break;
                case SQLITE_BLOB: {
                    const auto* data = static_cast<const std::byte*>(sqlite3_column_blob(statement, c));
                    row.emplace_back(Blob(data, data + sqlite3_column_bytes(statement, c)));
                    break;
                }
                default: row.emplace_back(std::monostate{});
                }
            }
            rows.push_back(std::move(row));
        }
    }

private:
    sqlite3* db_ = nullptr;
};

}  // namespace

std::unique_ptr<SqlDatabase> OpenSqlite(const std::string& path) { return std::make_unique<SqliteDatabase>(path); }

}  // namespace net
