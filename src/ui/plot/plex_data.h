// The non-visual data control (PLEXData): synchronous link calls with a
// time-out, an access mode, a device name and a property, keeping the last
// call's completion code for its error text.
#pragma once

#include <cstdint>
#include <string>

#include "vire/data_object.h"

namespace ui {

class PlexData {
public:
    // Time-out of each call in milliseconds.
    void SetTimeOut(int32_t milliseconds) { timeOut_ = milliseconds; }
    int32_t TimeOut() const { return timeOut_; }
    // "READ" (access 1) or "WRITE" (access 3); any other mode makes calls fail.
    void SetAccessMode(const std::string& mode) { accessMode_ = mode; }
    std::string AccessMode() const { return accessMode_; }
    // Full device name, "/CONTEXT/SERVER/DEVICE".
    void SetDeviceName(const std::string& name) { deviceName_ = name; }
    std::string DeviceName() const { return deviceName_; }
    void SetProperty(const std::string& property) { property_ = property; }
    std::string Property() const { return property_; }

    // One blocking call with the settings above: `in` is sent, `out` filled
    // (out.count becomes the elements delivered). Returns the completion code
    // (0 = success); an unknown access mode answers 15 without calling.
    vire::Status Read(vire::DataObject& out, const vire::DataObject& in);
    // Completion code of the last call (0 before any).
    vire::Status LastStatus() const { return lastStatus_; }
    // The middleware's text for the last call's completion code; "" before any call.
    std::string ErrorText() const;
    // The 32-bit value the server reported with the last call's data (its
    // time stamp, seconds since 1970), 0 when it reported none.
    int32_t ReportedValue() const { return reported_; }

private:
    int32_t timeOut_ = 1000;
    std::string accessMode_ = "READ";
    std::string deviceName_;
    std::string property_;
    bool called_ = false;
    vire::Status lastStatus_ = 0;
    int32_t reported_ = 0;
};

}  // namespace ui
