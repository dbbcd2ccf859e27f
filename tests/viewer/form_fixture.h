// A viewer window on the simulated accelerator of a configuration directory,
// driven by the test clock and a manual scheduler, with every message box
// answered and recorded. Local time is a zone with daylight saving, so that
// a caption computed in UTC shows.
#pragma once

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <memory>
#include <string>

#include "fake_live_transport.h"
#include "scoped_time_zone.h"
#include "scratch_config.h"
#include "sim/simulated_accelerator.h"
#include "ui/controls/scoped_dialog_responder.h"
#include "ui/plot/plex_plot.h"
#include "viewer/spectrum_form.h"
#include "vire/clock.h"
#include "vire/link.h"
#include "vire/scheduler.h"
#include "vire/transport.h"
#include "vire/formats.h"
#include "vire/queries.h"

namespace viewer_test {

// 2023-11-14 22:13:20 UTC, 23:13:20 in Berlin.
inline constexpr int64_t kStartMs = 1'700'000'000'000;

inline std::string SampleConfig() { return LUMISCOPE_SAMPLE_CONFIG_DIR; }

// The application path whose "configs" directory is `configDir`.
inline std::string ApplicationPathOf(std::string dir) {
    while (!dir.empty() && dir.back() == '/') dir.pop_back();
    return dir.substr(0, dir.rfind('/'));
}

// Devices the test decides: live values set per "device property" (1, 2, ...
// while unset), and element names "N0", "N1", ... from every server.
inline std::shared_ptr<test_support::FakeLiveTransport> FakeDevices() {
    auto devices = std::make_shared<test_support::FakeLiveTransport>();
    devices->countUpWhenUnset = true;
    devices->call = [](const std::string&, const std::string&, vire::DataObject& out, const vire::DataObject&,
                       int16_t, int32_t) {
        std::vector<std::string> names;
        for (int32_t i = 0; out.format == vire::kFormatName16 && i < out.count; ++i)
            names.push_back("N" + std::to_string(i));
        return test_support::AnswerFields(out, names, vire::kDeviceNameWidth);
    };
    return devices;
}

class FormFixture {
public:
    // Without a transport, the simulated accelerator of configDir answers.
    explicit FormFixture(std::string commandLine = "", std::string configDir = SampleConfig(),
                         const std::string& user = "OPERATOR",
                         std::shared_ptr<vire::Transport> transport = nullptr) {
        savedUser_ = vire::UserName();
        vire::SetUserName(user);
        vire::SetTestClock(kStartMs);
        vire::SetScheduler(&scheduler);
        if (transport) vire::SetTransport(transport);
        else accelerator = sim::InstallSimulatedAccelerator(configDir);
        viewer::Library() = viewer::LibraryValues{};
        form = new viewer::SpectrumForm(std::move(commandLine), ApplicationPathOf(configDir));
        form->setAttribute(Qt::WA_DeleteOnClose, false);
    }
    ~FormFixture() {
        delete form;
        vire::SetTransport(nullptr);
        vire::SetScheduler(nullptr);
        vire::UseSystemClock();
        vire::SetUserName(savedUser_);
    }
    FormFixture(const FormFixture&) = delete;
    FormFixture& operator=(const FormFixture&) = delete;

    // Loads the window and lets the first events run.
    viewer::SpectrumForm& Load() {
        form->Load();
        Settle();
        return *form;
    }
    // Runs what the event loop and the scheduler have pending.
    void Settle() {
        QApplication::processEvents();
        scheduler.RunPending();
        QApplication::processEvents();
    }
    // Lets live time pass in steps of the polling interval.
    void Advance(int64_t milliseconds, int64_t step = 1000) {
        for (int64_t done = 0; done < milliseconds; done += step) {
            scheduler.AdvanceBy(step);
            Settle();
        }
    }
    viewer::FormState& State() { return form->State(); }

    ui::ScopedDialogResponder dialogs;
    vire::ManualScheduler scheduler;
    std::shared_ptr<sim::SimulatedAccelerator> accelerator;
    viewer::SpectrumForm* form = nullptr;

private:
    test_support::ScopedTimeZone zone_{"Europe/Berlin"};
    std::string savedUser_;
};

}  // namespace viewer_test
