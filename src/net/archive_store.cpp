#include "net/archive_store.h"

#include <algorithm>
#include <cstdlib>

#include "vire/wire.h"

namespace net {
namespace {

Blob FloatsToBlob(std::span<const float> values) {
    Blob blob(values.size() * 4);
    for (size_t i = 0; i < values.size(); ++i) vire::StoreFloat(blob, 4 * i, values[i]);
    return blob;
}

// A transaction that rolls back unless committed.
class Transaction {
public:
    explicit Transaction(SqlDatabase& db) : db_(db) { db_.Run("BEGIN"); }
    ~Transaction() {
        if (!done_) {
            try {
                db_.Run("ROLLBACK");
            } catch (const StoreError&) {
            }
        }
    }
    void Commit() {
        db_.Run("COMMIT");
        done_ = true;
    }

private:
    SqlDatabase& db_;
    bool done_ = false;
};

}  // namespace

ArchiveStore::ArchiveStore(std::unique_ptr<SqlDatabase> database) : db_(std::move(database)) {
    db_->Run("CREATE TABLE IF NOT EXISTS series (server TEXT NOT NULL, property TEXT NOT NULL, "
             "element INTEGER NOT NULL, t BIGINT NOT NULL, value REAL NOT NULL, "
             "PRIMARY KEY (server, property, element, t))");
    db_->Run("CREATE TABLE IF NOT EXISTS snapshots (server TEXT NOT NULL, property TEXT NOT NULL, "
             "t BIGINT NOT NULL, count INTEGER NOT NULL, data " + db_->BlobType() + " NOT NULL, "
             "PRIMARY KEY (server, property, t))");
}

void ArchiveStore::PutSnapshot(const std::string& server, const std::string& property, int64_t t,
                               std::span<const float> values, bool replace) {
    std::lock_guard<std::mutex> lock(mutex_);
    db_->Run(std::string("INSERT INTO snapshots (server, property, t, count, data) VALUES ($1, $2, $3, $4, $5) "
                         "ON CONFLICT (server, property, t) DO ") +
                 (replace ? "UPDATE SET count = excluded.count, data = excluded.data" : "NOTHING"),
             {server, property, t, static_cast<int64_t>(values.size()), FloatsToBlob(values)});
}

std::optional<std::vector<float>> ArchiveStore::Snapshot(const std::string& server, const std::string& property,
                                                         int64_t t) {
    std::lock_guard<std::mutex> lock(mutex_);
    const auto rows =
        db_->Run("SELECT data FROM snapshots WHERE server = $1 AND property = $2 AND t = $3", {server, property, t});
    if (rows.empty()) return std::nullopt;
    const Blob& blob = AsBlob(rows.front().at(0));
    std::vector<float> values(blob.size() / 4);
    for (size_t i = 0; i < values.size(); ++i) values[i] = vire::LoadFloat(blob, 4 * i);
    return values;
}

void ArchiveStore::PutSeries(const std::string& server, const std::string& property, int32_t element,
                             const std::vector<std::pair<int64_t, float>>& values) {
    if (values.empty()) return;
    std::lock_guard<std::mutex> lock(mutex_);
    Transaction transaction(*db_);
    // Many rows per statement: one round trip per batch, not per value.
    constexpr size_t kBatch = 200;
    for (size_t first = 0; first < values.size(); first += kBatch) {
        const size_t last = std::min(values.size(), first + kBatch);
        std::string sql = "INSERT INTO series (server, property, element, t, value) VALUES ";
        std::vector<SqlValue> parameters{server, property, static_cast<int64_t>(element)};
        for (size_t i = first; i < last; ++i) {
            const size_t n = parameters.size();
            sql += (i == first ? "" : ", ") + std::string("($1, $2, $3, $") + std::to_string(n + 1) + ", $" +
                   std::to_string(n + 2) + ")";
            parameters.emplace_back(values[i].first);
            parameters.emplace_back(static_cast<double>(values[i].second));
        }
        db_->Run(sql + " ON CONFLICT DO NOTHING", parameters);
    }
    transaction.Commit();
}

std::map<int64_t, float> ArchiveStore::Series(const std::string& server, const std::string& property,
                                              int32_t element, int64_t from, int64_t to) {
    std::map<int64_t, float> values;
    std::lock_guard<std::mutex> lock(mutex_);
    for (const auto& row : db_->Run("SELECT t, value FROM series WHERE server = $1 AND property = $2 AND "
                                    "element = $3 AND t BETWEEN $4 AND $5",
                                    {server, property, static_cast<int64_t>(element), from, to}))
        values[AsInteger(row.at(0))] = static_cast<float>(AsReal(row.at(1)));
    const size_t offset = 4 * static_cast<size_t>(element);
    for (const auto& row : db_->Run("SELECT t, data FROM snapshots WHERE server = $1 AND property = $2 AND "
                                    "t BETWEEN $3 AND $4",
                                    {server, property, from, to})) {
        const Blob& blob = AsBlob(row.at(1));
        if (element >= 0 && blob.size() >= offset + 4) values[AsInteger(row.at(0))] = vire::LoadFloat(blob, offset);
    }
    return values;
}

void ArchiveStore::Prune(const std::string& server, int64_t before) {
    std::lock_guard<std::mutex> lock(mutex_);
    db_->Run("DELETE FROM series WHERE server = $1 AND t < $2", {server, before});
    db_->Run("DELETE FROM snapshots WHERE server = $1 AND t < $2", {server, before});
}

std::string DefaultArchivePath() {
    std::string base;
    if (const char* data = std::getenv("XDG_DATA_HOME"); data != nullptr && *data == '/') base = data;
    else if (const char* home = std::getenv("HOME"); home != nullptr && *home != '\0')
        base = std::string(home) + "/.local/share";
    else base = ".";
    return base + "/lumiscope/archive.sqlite";
}

}  // namespace net
