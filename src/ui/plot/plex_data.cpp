#include "ui/plot/plex_data.h"

#include "vire/completion_codes.h"
#include "vire/link.h"

namespace ui {

vire::Status PlexData::Read(vire::DataObject& out, const vire::DataObject& in) {
    called_ = true;
    reported_ = 0;
    int16_t access = 0;
    if (accessMode_ == "READ") access = vire::kAccessRead;
    if (accessMode_ == "WRITE") access = vire::kAccessWrite;
    if (access == 0) {
        out.count = 0;
        lastStatus_ = vire::kIllegalAccess;
        return lastStatus_;
    }
    out.stamp = 0;
    lastStatus_ = vire::LinkCall(deviceName_, property_, out, in, access, timeOut_);
    reported_ = out.stamp;
    return lastStatus_;
}

std::string PlexData::ErrorText() const { return called_ ? vire::ErrorText(lastStatus_) : std::string(); }

}  // namespace ui
