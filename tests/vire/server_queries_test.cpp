// Property queries answered by the simulated servers of the sample configuration.
#include <gtest/gtest.h>

#include "sim/simulated_accelerator.h"
#include "vire/completion_codes.h"
#include "vire/queries.h"
#include "vire/transport.h"

namespace {

TEST(ServerQuery, APropertyListNamesTheAskedOneFirstAndNothingForOneTheServerLacks) {
    const auto accelerator = sim::InstallSimulatedAccelerator(LUMISCOPE_SAMPLE_CONFIG_DIR);
    const struct { const char* server; const char* property; vire::Status status; std::vector<std::string> names; }
        cases[] = {
        {"/ORKA/BPMQ1", "ORBIT.Y", vire::kOk, {"ORBIT.Y", "ORBIT.X"}},
        {"/ORKA/BPMQ1", "ORBIT.Z", vire::kNoData, {}},
        {"/ORKA/BPMQ1", "ORBIT", vire::kNoData, {}},  // a prefix is not the property
        {"/ORKA/NOWHERE", "ORBIT.X", vire::kLinkError, {}},
    };
    for (const auto& c : cases) {
        vire::PropertyList list;
        EXPECT_EQ(vire::GetProperties(c.server, c.property, list), c.status) << c.property;
        EXPECT_EQ(list.names, c.names) << c.property;
    }
    vire::SetTransport(nullptr);
}

}  // namespace
