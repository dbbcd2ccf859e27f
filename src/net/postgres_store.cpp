// PostgreSQL behind SqlDatabase: one connection; parameters go as text
// (binary for blobs), results come back binary and are read by column type.
#include <libpq-fe.h>

#include <bit>
#include <cstring>
#include <sstream>

#include "net/sql_database.h"

namespace net {
namespace {

// Column types the store's statements return.
constexpr Oid kInt8 = 20, kInt2 = 21, kInt4 = 23, kText = 25, kFloat4 = 700, kFloat8 = 701, kBytea = 17,
              kVarchar = 1043;

uint64_t BigEndian(const char* data, int size) {
    uint64_t value = 0;
    for (int i = 0; i < size; ++i) value = (value << 8) | static_cast<uint8_t>(data[i]);
    return value;
}

SqlValue ReadField(const PGresult* result, int row, int column) {
    if (PQgetisnull(result, row, column)) return std::monostate{};
    const char* data = PQgetvalue(result, row, column);
    const int size = PQgetlength(result, row, column);
    switch (PQftype(result, column)) {
    case kInt2: return static_cast<int64_t>(static_cast<int16_t>(BigEndian(data, 2)));
    case kInt4: return static_cast<int64_t>(static_cast<int32_t>(BigEndian(data, 4)));
    case kInt8: return static_cast<int64_t>(BigEndian(data, 8));
    case kFloat4: return static_cast<double>(std::bit_cast<float>(static_cast<uint32_t>(BigEndian(data, 4))));
    case kFloat8: return std::bit_cast<double>(BigEndian(data, 8));
    case kBytea: {
        const auto* bytes = reinterpret_cast<const std::byte*>(data);
        return Blob(bytes, bytes + size);
    }
    case kText:
    case kVarchar:
    default: return std::string(data, static_cast<size_t>(size));
    }
}

class PostgresDatabase : public SqlDatabase {
public:
    explicit PostgresDatabase(const std::string& uri) : connection_(PQconnectdb(uri.c_str())) {
        if (connection_ == nullptr || PQstatus(connection_) != CONNECTION_OK) {
            const std::string message = connection_ != nullptr ? PQerrorMessage(connection_) : "out of memory";
            PQfinish(connection_);
            throw StoreError("cannot connect to the database: " + message);
        }
        Run("SET client_min_messages TO WARNING", {});
    }
    ~PostgresDatabase() override { PQfinish(connection_); }

    std::string BlobType() const override { return "BYTEA"; }

    std::vector<SqlRow> Run(const std::string& sql, const std::vector<SqlValue>& parameters) override {
        std::vector<std::string> texts(parameters.size());
        std::vector<const char*> values(parameters.size(), nullptr);
        std::vector<int> lengths(parameters.size(), 0);
        std::vector<int> formats(parameters.size(), 0);
        for (size_t i = 0; i < parameters.size(); ++i) {
            const SqlValue& v = parameters[i];
            if (std::holds_alternative<std::monostate>(v)) continue;
            if (std::holds_alternative<Blob>(v)) {
                const Blob& b = std::get<Blob>(v);
                values[i] = reinterpret_cast<const char*>(b.data());
                lengths[i] = static_cast<int>(b.size());
                formats[i] = 1;
                continue;
            }
            if (std::holds_alternative<int64_t>(v)) texts[i] = std::to_string(std::get<int64_t>(v));
            else if (std::holds_alternative<double>(v)) {
                std::ostringstream text;
                text.precision(17);
                text << std::get<double>(v);
                texts[i] = text.str();
            } else texts[i] = std::get<std::string>(v);
            values[i] = texts[i].c_str();
            lengths[i] = static_cast<int>(texts[i].size());
        }
        PGresult* result = PQexecParams(connection_, sql.c_str(), static_cast<int>(parameters.size()), nullptr,
                                        values.data(), lengths.data(), formats.data(), 1);
        struct Clear {
            PGresult* r;
            ~Clear() { PQclear(r); }
        } clear{result};
        const ExecStatusType status = PQresultStatus(result);
        if (status != PGRES_COMMAND_OK && status != PGRES_TUPLES_OK)
            throw StoreError(std::string("statement failed: ") + PQerrorMessage(connection_));
        std::vector<SqlRow> rows;
        for (int r = 0; r < PQntuples(result); ++r) {
            SqlRow row;
            for (int c = 0; c < PQnfields(result); ++c) row.push_back(ReadField(result, r, c));
            rows.push_back(std::move(row));
        }
        return rows;
    }

private:
    PGconn* connection_;
};

}  // namespace

std::unique_ptr<SqlDatabase> OpenPostgres(const std::string& uri) { return std::make_unique<PostgresDatabase>(uri); }

}  // namespace net
