// The archive store on both databases it supports: the same statements, the
// same answers.
#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <memory>

#include "net/archive_store.h"
#include "server_processes.h"

namespace net_test {
namespace {

constexpr const char* kPostgresBinaries = "/usr/lib/postgresql/15/bin";

// A PostgreSQL 15 server of the test's own in a temporary directory, listening
// on a free loopback port; stopped and removed when the tests end.
struct PostgresServer {
    PostgresServer() : directory("/tmp/lumiscope-pg-" + std::to_string(getpid())) {
        std::filesystem::remove_all(directory);
        std::filesystem::create_directories(directory);
        std::filesystem::permissions(directory, std::filesystem::perms::all);
        const std::string port = std::to_string(DeadPort());
        if (Run("initdb -D " + directory + "/data -A trust -U lumiscope --no-sync -E UTF8") &&
            Run("pg_ctl -D " + directory + "/data -w -t 60 -l " + directory + "/server.log -o \"-p " + port + " -k " +
                directory + " -c listen_addresses=127.0.0.1 -c fsync=off\" start"))
            uri = "postgresql://lumiscope@127.0.0.1:" + port + "/postgres";
    }
    ~PostgresServer() {
        if (!uri.empty()) Run("pg_ctl -D " + directory + "/data -w -m immediate stop");
        std::error_code error;
        std::filesystem::remove_all(directory, error);
    }
    // As root the server programs refuse to run: they run as "postgres" (or "nobody").
    bool Run(const std::string& command) const {
        const std::string user = getpwnam("postgres") != nullptr ? "postgres" : "nobody";
        const std::string as = geteuid() == 0 ? "runuser -u " + user + " -- " : "";
        return std::system((as + kPostgresBinaries + "/" + command + " >>" + directory + "/setup.log 2>&1").c_str()) == 0;
    }
    const std::string directory;
    std::string uri;
};

class ArchiveStoreTest : public ::testing::TestWithParam<std::string> {
protected:
    void SetUp() override {
        if (GetParam() == "postgresql") {
            if (!std::filesystem::exists(std::string(kPostgresBinaries) + "/pg_ctl"))
                GTEST_SKIP() << "PostgreSQL 15 is not installed (" << kPostgresBinaries
                             << "): ./scripts/setup.sh installs it";
            static const PostgresServer postgres;
            ASSERT_FALSE(postgres.uri.empty()) << "the test's PostgreSQL server did not start: see "
                                               << postgres.directory << "/setup.log and server.log";
            uri = postgres.uri;
            auto db = net::OpenSqlDatabase(uri);
            db->Run("DROP TABLE IF EXISTS series");
            db->Run("DROP TABLE IF EXISTS snapshots");
        } else {
            uri = ::testing::TempDir() + "/archive-" + std::to_string(getpid()) + "/" +
                  ::testing::UnitTest::GetInstance()->current_test_info()->name() + ".sqlite";
            std::filesystem::remove(uri);
        }
        Reopen();
    }
    void Reopen() {
        store.reset();
        store = std::make_unique<net::ArchiveStore>(net::OpenSqlDatabase(uri));
    }
    std::string uri;
    std::unique_ptr<net::ArchiveStore> store;
};

TEST_P(ArchiveStoreTest, SeriesJoinBackFilledValuesAndRecordedSpectraWhichReplaceAndArePrunedPerServer) {
    // Back-filled element 2 at 60..300; a spectrum filled in at 180, then recorded at 180 and 360.
    std::vector<std::pair<int64_t, float>> filled;
    for (int64_t t = 60; t <= 300; t += 60) filled.emplace_back(t, static_cast<float>(t) / 10);
    store->PutSeries("OKHISTORY", "LOSS.INT", 2, filled);
    store->PutSeries("OKHISTORY", "LOSS.INT", 2, {{60, -1.0f}});  // held already: kept
    store->PutSeries("OKHISTORY", "LOSS.INT", 3, {{120, 77.0f}});  // another element
    store->PutSnapshot("OKHISTORY", "LOSS.INT", 180, std::vector<float>{9, 9, 9}, false);
    store->PutSnapshot("OKHISTORY", "LOSS.INT", 180, std::vector<float>{0, 1, 222.5f, 3}, true);
    store->PutSnapshot("OKHISTORY", "LOSS.INT", 180, std::vector<float>{5, 5, 5, 5}, false);  // a recorded one stays
    store->PutSnapshot("OKHISTORY", "LOSS.INT", 360, std::vector<float>{0, 1, 333.5f}, true);
    store->PutSnapshot("OKHISTORY", "LOSS.INT", 420, std::vector<float>{0, 1}, true);  // too short for element 2
    Reopen();  // what was stored is there after reopening

    EXPECT_EQ(store->Snapshot("OKHISTORY", "LOSS.INT", 180), (std::vector<float>{0, 1, 222.5f, 3}));
    EXPECT_EQ(store->Snapshot("OKHISTORY", "LOSS.INT", 181), std::nullopt);
    EXPECT_EQ(store->Snapshot("VEHISTORY", "LOSS.INT", 180), std::nullopt);
    EXPECT_EQ(store->Snapshot("OKHISTORY", "LOSS.FAST", 180), std::nullopt);
    const std::map<int64_t, float> expected{{60, 6}, {120, 12}, {180, 222.5f}, {240, 24}, {300, 30}, {360, 333.5f}};
    EXPECT_EQ(store->Series("OKHISTORY", "LOSS.INT", 2, 0, 1000), expected);
    // Both ends of the window count.
    EXPECT_EQ(store->Series("OKHISTORY", "LOSS.INT", 2, 120, 180),
              (std::map<int64_t, float>{{120, 12}, {180, 222.5f}}));
    EXPECT_EQ(store->Series("OKHISTORY", "LOSS.INT", 3, 0, 1000),
              (std::map<int64_t, float>{{120, 77}, {180, 3}}));
    EXPECT_TRUE(store->Series("VEHISTORY", "LOSS.INT", 2, 0, 1000).empty());
    // Batches of many rows: a whole day at one value a minute.
    std::vector<std::pair<int64_t, float>> day;
    for (int64_t t = 0; t < 86'400; t += 60) day.emplace_back(t, static_cast<float>(t % 977));
    store->PutSeries("/ORKA/BLMHIST", "LOSS.INT.HIST", 0, day);
    store->PutSnapshot("/ORKA/BLMHIST", "LOSS.INT.HIST", 120, std::vector<float>{1}, true);
    const auto back = store->Series("/ORKA/BLMHIST", "LOSS.INT.HIST", 0, 0, INT32_MAX);
    ASSERT_EQ(back.size(), day.size());
    EXPECT_EQ(back.rbegin()->second, day.back().second);

    // Pruning forgets the values and spectra before its time, of its server only.
    store->Prune("OKHISTORY", 240);
    EXPECT_EQ(store->Series("OKHISTORY", "LOSS.INT", 2, 0, 1000),
              (std::map<int64_t, float>{{240, 24}, {300, 30}, {360, 333.5f}}));
    EXPECT_TRUE(store->Series("OKHISTORY", "LOSS.INT", 3, 0, 1000).empty());
    EXPECT_EQ(store->Series("/ORKA/BLMHIST", "LOSS.INT.HIST", 0, 0, INT32_MAX), back);
}

INSTANTIATE_TEST_SUITE_P(Both, ArchiveStoreTest, ::testing::Values("sqlite", "postgresql"),
                         [](const auto& info) { return info.param; });

TEST(ArchiveStoreFailures, UnusableDatabasesAreReportedNotCrashedOn) {
    const std::string folder = ::testing::TempDir() + "/archive-bad-" + std::to_string(getpid());
    std::filesystem::create_directories(folder);
    std::ofstream(folder + "/text.sqlite") << std::string(4096, 'x');
    std::ofstream(folder + "/file") << "a file where a folder should be";
    for (const std::string& uri : {folder + "/text.sqlite", folder + "/file/archive.sqlite",
                                  std::string("postgresql://nobody@127.0.0.1:1/none?connect_timeout=2")})
        EXPECT_THROW(net::ArchiveStore(net::OpenSqlDatabase(uri)), net::StoreError) << uri;
}

}  // namespace
}  // namespace net_test
