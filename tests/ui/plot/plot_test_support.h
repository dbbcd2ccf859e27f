// What the ui tests share: a transport whose readings the test decides, the
// test clock with a manual scheduler, and a plot shown at a known size.
#pragma once

#include <QCoreApplication>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "ui/plot/plex_plot.h"
#include "ui/plot/plot_canvas.h"
#include "vire/clock.h"
#include "vire/polling.h"
#include "vire/scheduler.h"
#include "vire/transport.h"
#include "vire/wire.h"

namespace plot_test {

inline constexpr int64_t kStartMs = 1'700'000'000'000;

// Live readings per "device property", synchronous calls answered by `call`.
class FakeTransport : public vire::PollingTransport {
public:
    struct Reading {
        vire::Status status = 0;
        std::vector<float> values;
        int16_t format = 517;
    };
    std::map<std::string, Reading> readings;
    std::vector<vire::SubscriptionRequest> subscribed;
    std::function<vire::Status(const std::string&, const std::string&, vire::DataObject&,
                               const vire::DataObject&, int16_t, int32_t)>
        call;
    std::function<void(const std::string& device)> beforePoll;  // e.g. to detach a link mid-round

    vire::Status Call(const std::string& device, const std::string& property, vire::DataObject& out,
                      const vire::DataObject& in, int16_t access, int32_t timeoutMs) override {
        return call ? call(device, property, out, in, access, timeoutMs) : vire::Status{2};
    }
    vire::SubscriptionId Subscribe(const vire::SubscriptionRequest& request,
                                   std::function<void(const vire::LinkData&)> onData) override {
        subscribed.push_back(request);
        return PollingTransport::Subscribe(request, std::move(onData));
    }

protected:
    vire::LinkData Poll(const vire::SubscriptionRequest& request) override {
        if (beforePoll) beforePoll(request.fullDeviceName);
        const Reading& r = readings[request.fullDeviceName + " " + request.property];
        vire::LinkData data;
        data.status = r.status;
        data.format = r.format;
        data.count = static_cast<int32_t>(r.values.size());
        data.bytes.resize(4 * r.values.size());
        for (size_t i = 0; i < r.values.size(); ++i) vire::StoreFloat(data.bytes, 4 * i, r.values[i]);
        return data;
    }
};

// The test clock, a manual scheduler and a fake transport, installed for one test.
class LiveFixture {
public:
    LiveFixture() : transport(std::make_shared<FakeTransport>()) {
        vire::SetTestClock(kStartMs);
        vire::SetScheduler(&scheduler);
        vire::SetTransport(transport);
    }
    ~LiveFixture() {
        vire::SetTransport(nullptr);
        vire::SetScheduler(nullptr);
        vire::UseSystemClock();
    }
    vire::ManualScheduler scheduler;
    std::shared_ptr<FakeTransport> transport;
};

// The axis limits, set as the caller sets them.
inline void SetLimits(ui::PlexPlot& plot, double xMin, double xMax, double yMin, double yMax) {
    plot.SetXRange(xMin, xMax);
    plot.SetYMin(yMin);
    plot.SetYMax(yMax);
}

// A plot on screen (offscreen platform) at a known size, laid out.
inline void Show(ui::PlexPlot& plot, int width = 600, int height = 400) {
    plot.resize(width, height);
    plot.show();
    QCoreApplication::processEvents();
    plot.Canvas()->LayOut();
}

}  // namespace plot_test
