// Name and property queries answered by the simulated servers of the sample
// configuration, as the viewer and the tools ask them.
#include <gtest/gtest.h>

#include "sim/simulated_accelerator.h"
#include "vire/completion_codes.h"
#include "vire/queries.h"
#include "vire/transport.h"

namespace {

class ServerQueryTest : public ::testing::Test {
protected:
    void SetUp() override { accelerator = sim::InstallSimulatedAccelerator(LUMISCOPE_SAMPLE_CONFIG_DIR); }
    void TearDown() override { vire::SetTransport(nullptr); }
    std::shared_ptr<sim::SimulatedAccelerator> accelerator;
};

TEST_F(ServerQueryTest, APropertyListNamesTheAskedOneFirstAndNothingForOneTheServerLacks) {
    struct Case { const char* server; const char* property; vire::Status status; std::vector<std::string> names; };
    const Case cases[] = {
        {"/ORKA/BPMQ1", "ORBIT.Y", vire::kOk, {"ORBIT.Y", "ORBIT.X"}},
        {"/ORKA/BPMQ1", "ORBIT.X", vire::kOk, {"ORBIT.X", "ORBIT.Y"}},
        {"/ORKA/BPMQ1", "ORBIT.Z", vire::kNoData, {}},
        {"/ORKA/BPMQ1", "ORBIT", vire::kNoData, {}},  // a prefix is not the property
        {"/ORKA/NOWHERE", "ORBIT.X", vire::kLinkError, {}},
    };
    for (const Case& c : cases) {
        vire::PropertyList list;
        list.names = {"stale"};
        EXPECT_EQ(vire::GetProperties(c.server, c.property, list), c.status) << c.server << " " << c.property;
        const size_t shown = std::min(list.names.size(), c.names.size());
        EXPECT_EQ(std::vector<std::string>(list.names.begin(), list.names.begin() + static_cast<long>(shown)), c.names)
            << c.property;
        EXPECT_EQ(list.names.empty(), c.names.empty()) << c.property;
    }
}

TEST_F(ServerQueryTest, NamesLongerThanTheirFieldArriveWhole) {
    struct Case { const char* server; const char* property; size_t at; const char* name; };
    const Case cases[] = {
        {"/LYRAS/PSSTEER", "CURRENT.SET", 0, "LINAC.STEERER.H01"},
        {"/LYRAS/PSSTEER", "CURRENT.SET", 23, "LINAC.STEERER.H24"},
        {"/LYRAS/PSQUAD", "CURRENT.SET", 9, "LQUAD.10"},
    };
    for (const Case& c : cases) {
        int32_t count = 0;
        std::vector<std::string> names;
        ASSERT_EQ(vire::GetDeviceNames(c.server, c.property, count, names), vire::kOk) << c.server;
        ASSERT_GT(names.size(), c.at) << c.server;
        EXPECT_EQ(names[c.at], c.name) << c.server;
    }
}

}  // namespace
