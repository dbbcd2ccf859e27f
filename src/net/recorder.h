// The archiver's recording: at every step of the local history (one a
// minute by default) it reads each recorded channel's live spectrum from the
// device servers and stores it under its local history server, and at every
// archive step (a quarter hour) under its archiver too. Then it forgets what
// is older than the retention: three days locally, two years in the archive.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <thread>

#include "net/archive_store.h"
#include "sim/simulated_accelerator.h"
#include "vire/transport.h"

namespace net {

class Recorder {
public:
    Recorder(std::shared_ptr<sim::SimulatedAccelerator> accelerator, std::shared_ptr<ArchiveStore> store,
             std::shared_ptr<vire::Transport> devices);
    ~Recorder();  // stops and waits for a recording under way
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    void Start();
    // One recording at time t (seconds, on the local step): what the tests
    // and the thread call. Returns the number of spectra stored.
    int RecordAt(int64_t t);

private:
    void Run();

    std::shared_ptr<sim::SimulatedAccelerator> accelerator_;
    std::shared_ptr<ArchiveStore> store_;
    std::shared_ptr<vire::Transport> devices_;
    std::mutex mutex_;
    std::condition_variable wake_;
    bool stopping_ = false;
    std::thread thread_;
};

}  // namespace net
