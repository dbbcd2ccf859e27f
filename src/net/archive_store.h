// The archive's records in a database, one schema for SQLite and PostgreSQL:
//   series    (server, property, element, t, value)  one element's values
//   snapshots (server, property, t, count, data)     whole spectra, data as
//                                                    little-endian 32-bit floats
// `server` is a local history server's address ("/ORKA/BPMHIST") or an
// archiver's name ("OKHISTORY"); t is seconds since 1970.
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "net/sql_database.h"

namespace net {

class ArchiveStore {
public:
    // Makes the tables when they are missing. Throws StoreError.
    explicit ArchiveStore(std::unique_ptr<SqlDatabase> database);

    // A recorded spectrum replaces one of the same time; a back-filled one
    // (replace = false) never replaces anything.
    void PutSnapshot(const std::string& server, const std::string& property, int64_t t,
                     std::span<const float> values, bool replace);
    std::optional<std::vector<float>> Snapshot(const std::string& server, const std::string& property, int64_t t);

    // Back-filled values of one element; times already held are kept.
    void PutSeries(const std::string& server, const std::string& property, int32_t element,
                   const std::vector<std::pair<int64_t, float>>& values);
    // The element's values over [from, to]: from the series, and from the
    // snapshots, which win where both hold a time.
    std::map<int64_t, float> Series(const std::string& server, const std::string& property, int32_t element,
                                    int64_t from, int64_t to);

    // Forgets everything of `server` older than `before`.
    void Prune(const std::string& server, int64_t before);

private:
    std::mutex mutex_;
    std::unique_ptr<SqlDatabase> db_;
};

// Where the archive lives by default: archive.sqlite under the user's data
// directory ($XDG_DATA_HOME/lumiscope, else ~/.local/share/lumiscope).
std::string DefaultArchivePath();

}  // namespace net
