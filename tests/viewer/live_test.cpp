// The spectrum data handler on devices whose values the test decides: the
// gate, reversed parts, peak hold, the 8000-point limit, labels and captions.
#include <gtest/gtest.h>

#include <QRadioButton>
#include <cmath>

#include "form_fixture.h"

namespace {

using viewer_test::FormFixture;
using viewer_test::ScratchConfig;

// A window showing the first channel of `rows` on fake devices.
struct LiveWindow {
    explicit LiveWindow(const std::vector<std::string>& rows)
        : config(rows), devices(viewer_test::FakeDevices()),
          f("", config.Dir(), "OPERATOR", devices) {
        f.Load();
        form().SpectrumCombo_Click();
    }
    viewer::SpectrumForm& form() { return *f.form; }
    std::vector<float> Live(int from, int n) { return {&f.State().LiveValues[from], &f.State().LiveValues[from] + n}; }
    std::vector<std::string> Texts() {
        std::vector<std::string> texts;
        for (const auto& [handle, text] : form().PLEXPlotSpectrum->Model().texts) texts.push_back(text.text);
        return texts;
    }
    // One polling round, the handler run through the plot's own event.
    void Tick() { f.Advance(1000); }

    ScratchConfig config;
    std::shared_ptr<test_support::FakeLiveTransport> devices;
    FormFixture f;
};

TEST(LiveSpectrum, ReversedPartsArriveLastFirstAndLabelsCarryTheTag) {
    const struct { int size; std::vector<float> delivered; std::vector<float> shown; } cases[] = {
        {5, {1, 2, 3, 4, 5}, {5, 4, 3, 2, 1}}, {4, {1, 2, 3, 4}, {4, 3, 2, 1}},
        {6, {1, 2, 3, 4, 5, 6}, {6, 5, 4, 3, 2, 1}}, {1, {7}, {7}},
    };
    for (const auto& c : cases) {
        const std::string size = std::to_string(c.size);
        LiveWindow w({"T,HEAD/D,P,2,Head,10,0,mm,,H,,1,A", "T,REV/D,P," + size + ",Part,10,0,mm,yes reverse,R,,0,"});
        w.devices->readings["/T/HEAD/D P"].values = {9, 8};
        w.devices->readings["/T/REV/D P"].values = c.delivered;
        w.Tick();
        std::vector<float> shown{9, 8};  // the head part is not reversed
        shown.insert(shown.end(), c.shown.begin(), c.shown.end());
        EXPECT_EQ(w.Live(0, 2 + c.size), shown) << size;
        EXPECT_EQ(w.f.State().LivePointCount, 2 + c.size);
        EXPECT_EQ(w.f.State().LiveLabels[1] + w.f.State().LiveLabels[2], "/HN1/RN0");
    }
}

TEST(LiveSpectrum, PeakHoldKeepsOnlyStrictlyLargerHeldValues) {
    LiveWindow w({"T,S/D,P,3,Orbit,10,0,mm,,,,1,A"});
    w.devices->readings["/T/S/D P"].values = {5, 0.0f, 5};
    w.Tick();
    w.Tick();
    w.form().LivePeakHold->setChecked(true);
    // Smaller, equal (-0 equals +0 and must be taken), larger.
    w.devices->readings["/T/S/D P"].values = {4, -0.0f, 6};
    w.Tick();
    EXPECT_EQ(w.Live(0, 3), (std::vector<float>{5, 0, 6}));
    EXPECT_TRUE(std::signbit(w.f.State().LiveValues[1])) << "an equal value replaces the held one";
    w.devices->readings["/T/S/D P"].values = {-1, -1, -1};
    w.Tick();
    EXPECT_EQ(w.Live(0, 3), (std::vector<float>{5, 0, 6}));
    w.form().LivePeakHold->setChecked(false);
    w.Tick();
    EXPECT_EQ(w.Live(0, 3), (std::vector<float>{-1, -1, -1}));
}

TEST(LiveSpectrum, EightThousandPointsFitAndOneMoreIsRefused) {
    for (const int second : {4000, 4001}) {
        LiveWindow w({"T,A/D,P,4000,Big,10,0,mm,,,,1,A",
                      "T,B/D,P," + std::to_string(second) + ",Big2,10,0,mm,yes,,,0,"});
        w.Tick();
        if (second == 4000) {
            const ui::Trace* trace = w.form().PLEXPlotSpectrum->Model().traces.Find(w.f.State().cat.SpectrumTrace);
            EXPECT_TRUE(w.f.dialogs.Texts().empty() && trace && trace->values.size() == 8000u);
            EXPECT_EQ(w.f.State().LiveValues[7999], 4000.0f);
        } else {
            // The message and the run-time error of the copy, once per
            // channel choice; the plot's notice says why it stays empty.
            const size_t boxes = w.f.dialogs.Texts().size();
            EXPECT_EQ(w.f.dialogs.Texts()[boxes - 2], "Array larger than 8000 Points");
            EXPECT_EQ(w.f.dialogs.Texts()[boxes - 1].rfind("Run-time error", 0), 0u);
            EXPECT_LT(w.f.State().cat.SpectrumTrace, 0);
            w.Tick();
            EXPECT_EQ(w.f.dialogs.Texts().size(), boxes) << "the rounds after it are dropped quietly";
            EXPECT_NE(w.form().PLEXPlotSpectrum->Notice().find("Array larger than 8000 Points"), std::string::npos);
            w.form().SpectrumCombo_Click();
            w.Tick();
            EXPECT_EQ(w.f.dialogs.Texts().size(), boxes + 2) << "told again for the new choice";
        }
    }
}

TEST(LiveSpectrum, AChannelThatCannotBeOpenedShowsItsOwnFrameAndSaysInThePlotWhatIsMissing) {
    const struct {  // frame: caption, unit, range box
        const char* server; int position; std::vector<std::string> frame; int32_t links; std::string notice;
    } cases[] = {
        {"/ORKA/BPMSRV", 2, {"ORKA: BPM sum signal", "V", "2"}, 0, "Part 1 of 1 missing: /ORKA/BPMSRV/SUM.RING SUM"},
        {"/ORKA/BPMQ3", 1, {"ORKA: Orbit vertical", "mm", "5"}, 2, "Parts 3 to 4 of 4 missing: /ORKA/BPMQ3/ORBIT ORBIT.Y"},
    };
    for (const auto& c : cases) {
        FormFixture f;
        viewer::SpectrumForm& form = f.Load();  // the horizontal orbit, live
        f.accelerator->SetFault(c.server, sim::Fault{sim::Fault::Kind::Down});
        form.SpectrumCombo->setCurrentIndex(c.position);
        form.SpectrumCombo_Click();
        f.Advance(3000);
        const ui::PlexPlot& plot = *form.PLEXPlotSpectrum;
        EXPECT_EQ((std::vector<std::string>{plot.Caption(), plot.YLabel(), form.TxtSelect[0]->text().toStdString()}),
                  c.frame);
        EXPECT_EQ(plot.LinkCount(), c.links) << c.server;
        EXPECT_EQ(plot.Notice(), c.notice + " not opened: " + vire::ErrorText(2) + " (2)");
        EXPECT_EQ(plot.Model().texts.empty(), c.links == 0) << c.server << ": no live time over an empty plot";
    }
}

TEST(LiveSpectrum, TheGateDropsSuppressedArchiveAndFailedEvents) {
    const std::pair<const char*, std::function<void(LiveWindow&)>> gates[] = {
        {"suppressed", [](LiveWindow& w) { w.f.State().SuppressSpectrumUpdates = true; }},
        {"archive display", [](LiveWindow& w) { w.form().OptArchiveData->setChecked(true); }},
        {"failed round", [](LiveWindow& w) { w.devices->readings["/T/S/D P"].status = 45; }},
    };
    for (const auto& [name, close] : gates) {
        LiveWindow w({"T,S/D,P,3,Orbit,10,0,mm,,,,1,A"});
        w.devices->readings["/T/S/D P"].values = {1, 2, 3};
        w.Tick();
        close(w);
        w.devices->readings["/T/S/D P"].values = {7, 8, 9};
        const int32_t updated = w.f.State().LastLiveUpdate;
        w.Tick();
        EXPECT_TRUE(w.Live(0, 3) == (std::vector<float>{1, 2, 3}) && w.f.State().LastLiveUpdate == updated) << name;
    }
}

TEST(LiveSpectrum, CaptionsAppearFromTheSecondEventWithTheModesInOrder) {
    LiveWindow w({"T,S/D,P,3,Orbit,10,0,mm,,,,1,A"});
    w.f.Settle();  // the first reading, at once
    EXPECT_EQ(w.Texts(), std::vector<std::string>{}) << "a rebuild draws no caption";
    w.Tick();
    // Local time (Berlin) of the test clock, month to seconds.
    EXPECT_EQ(w.Texts(), (std::vector<std::string>{"Live : Nov 14 23:13:21", " Autoscale"}));
    w.form().LivePeakHold->setChecked(true);
    w.form().refDisplay->setChecked(true);
    w.Tick();
    EXPECT_EQ(w.Texts()[1], " Autoscale PeakHold Reference");
    for (QAction* a : w.form().LiveAutoScale) a->setChecked(false);
    w.form().LivePeakHold->setChecked(false);
    w.form().refDisplay->setChecked(false);
    w.Tick();
    EXPECT_EQ(std::pair(w.Texts().size(), w.f.State().SpectrumModeText), (std::pair<size_t, int32_t>(1, -1)));
}

TEST(LiveSpectrum, ADeadPartIsNamedWhileTheOtherPartsKeepUpdating) {
    FormFixture f;
    viewer::SpectrumForm& form = f.Load();
    form.SpectrumCombo_Click();  // four parts of 32 on four servers
    f.Advance(2000);
    f.accelerator->SetFault("/ORKA/BPMQ2", sim::Fault{sim::Fault::Kind::Down});
    f.Advance(1000);
    const float* live = &f.State().LiveValues[0];
    const std::vector<float> before(live, live + 64);
    f.Advance(5000);
    EXPECT_NE(std::vector<float>(before.begin(), before.begin() + 32), std::vector<float>(live, live + 32))
        << "the first part still moves";
    EXPECT_EQ(std::vector<float>(before.begin() + 32, before.end()), std::vector<float>(live + 32, live + 64))
        << "the dead part keeps its last values";
    const std::string failure = "/ORKA/BPMQ2/ORBIT ORBIT.X: " + vire::ErrorText(2) + " (2)";
    EXPECT_NE(form.PLEXPlotSpectrum->Caption().find(failure), std::string::npos) << form.PLEXPlotSpectrum->Caption();
    EXPECT_NE(form.StatusLine->text().toStdString().find("FAILING: " + failure), std::string::npos);
    EXPECT_EQ(form.PLEXPlotSpectrum->Notice(), "Part 2 of 4 failing, last values shown: " + failure);

    f.accelerator->SetFault("/ORKA/BPMQ3", sim::Fault{sim::Fault::Kind::Code, 45});
    f.Advance(2000);
    EXPECT_NE(form.PLEXPlotSpectrum->Caption().find("[2 of 4 parts failing: " + vire::ErrorText(2) + " (2)]"), std::string::npos)
        << form.PLEXPlotSpectrum->Caption();
    f.accelerator->ClearFault("/ORKA/BPMQ3");
    f.accelerator->ClearFault("/ORKA/BPMQ2");
    f.Advance(2000);
    EXPECT_TRUE(form.PLEXPlotSpectrum->Caption().find("[") == std::string::npos && form.PLEXPlotSpectrum->Notice().empty())
        << "recovered";
}

}  // namespace
