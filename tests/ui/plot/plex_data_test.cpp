// The data control: one synchronous call per read with the settings in
// force, the completion code, its error text and the reported value.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "plot_test_support.h"
#include "ui/plot/plex_data.h"
#include "vire/completion_codes.h"

namespace {

TEST(PlexData, ReadsWithTheSettingsInForceAndKeepsTheLastOutcome) {
    // The call that reached the transport ("" for none), the status, its text and the reported value.
    struct Case { const char* name; std::string mode; vire::Status answer; std::string call; vire::Status status;
                  std::string text; int32_t reported; };
    const std::string where = "/ORKA/BPMHIST/#1 ORBIT.X.Q1.HIST 1 526 ";  // out count and format
    const Case cases[] = {  // access, time-out, input bytes
        {"read", "READ", 0, where + "1 1000 12", 0, "success", 1'795'373'940},
        {"write", "WRITE", 0, where + "3 1000 12", 0, "success", 1'795'373'940},
        {"time-out", "READ", vire::kTimeout, where + "1 1000 12", vire::kTimeout,
         "time-out: no answer from the server", 0},
        {"POLL is no mode for a call", "POLL", 0, "", vire::kIllegalAccess, "access mode not supported by the property", 0},
        {"lower case is not READ", "read", 0, "", vire::kIllegalAccess, "access mode not supported by the property", 0},
    };
    for (const Case& c : cases) {
        plot_test::LiveFixture live;
        live.transport->call = [&](auto&, auto&, vire::DataObject& out, auto&, int16_t, int32_t) {
            out.count = 1;
            out.stamp = c.answer == 0 ? 1'795'373'940 : 0;
            return c.answer;
        };
        ui::PlexData data;
        EXPECT_EQ(data.ErrorText(), "") << c.name;  // no call yet
        data.SetTimeOut(1000);
        data.SetAccessMode(c.mode);
        data.SetDeviceName("/ORKA/BPMHIST/#1");
        data.SetProperty("ORBIT.X.Q1.HIST");
        std::vector<std::byte> input(12), output(8);
        vire::DataObject in{3, 515, "", input, 0}, out{1, 526, "", output, 5};
        EXPECT_EQ(data.Read(out, in), c.status) << c.name;
        EXPECT_EQ(live.transport->calls, std::vector<std::string>(!c.call.empty(), c.call)) << c.name;
        EXPECT_EQ(out.count, c.call.empty() ? 0 : 1) << c.name;
        EXPECT_EQ(data.ErrorText(), c.text) << c.name;
        EXPECT_EQ(data.ReportedValue(), c.reported) << c.name;
    }
    ui::PlexData data;  // no transport at all
    vire::DataObject in, out;
    EXPECT_EQ(data.Read(out, in), vire::kNoTransport);
    EXPECT_EQ(data.ErrorText(), "no link transport installed");
}

}  // namespace
