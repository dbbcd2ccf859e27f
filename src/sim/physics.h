// What the simulated devices measure: deterministic functions of the seed, the
// element and the time, so that the live value of a moment and the recorded
// value of the same moment are the same number.
#pragma once

#include <cstdint>
#include <string>

namespace sim {

enum class SignalKind {
    Orbit,        // beam position: a closed-orbit pattern, slow drift, noise
    BpmSum,       // button sum signal
    OrbitRms,     // position noise
    LossFast,     // loss rate: low background with occasional spikes
    LossIntegral, // integrated losses: slow sawtooth plus the spikes
    HighVoltage,  // detector supply
    CurrentSet,   // power-supply set value, stepping now and then
    CurrentAct,   // power-supply actual value, following the set value
    Voltage,      // power-supply voltage, following the actual current
    CurrentDiff,  // actual minus set
    BunchCharge,  // fill pattern: trains of filled buckets, decay and top-up
    BeamCurrent,  // stored current, decay and top-up
    Lifetime,
    Tune,
    Constant,     // energy, pressure, RF: steady with a little noise
    Generic,      // anything else: a slow wave inside the channel's range
};

// The kind of a property by its name ("ORBIT.X", "CURRENT.ACT.HIST", ...).
SignalKind KindOfProperty(const std::string& property);

// One measured quantity: the channel's range scales the kinds that have no
// natural scale of their own.
struct Signal {
    SignalKind kind = SignalKind::Generic;
    uint64_t key = 0;   // seed and device: elements of one device share it
    float max = 1.0f;
    float min = 0.0f;
    int32_t size = 1;   // elements of the device (sets the orbit pattern)
    // Full scale of a power supply's current: the set value's range, shared
    // by the device's actual, difference and voltage channels.
    float currentScale = 1.0f;
};

// Value of `element` at `timeMs` (ms since 1970).
float SignalValue(const Signal& signal, int32_t element, int64_t timeMs);

// A stable 64-bit hash for keys and noise.
uint64_t Mix(uint64_t a, uint64_t b);
uint64_t HashText(const std::string& text);
// Uniform in [0, 1) from a hash.
double Unit(uint64_t hash);

}  // namespace sim
