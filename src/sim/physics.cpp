#include "sim/physics.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace sim {
namespace {

constexpr double kTwoPi = 2.0 * std::numbers::pi;

// Which kind each property name (its last meaningful part) stands for.
struct KindRule {
    const char* prefix;
    SignalKind kind;
};
constexpr KindRule kKindRules[] = {
    {"ORBIT.RMS", SignalKind::OrbitRms}, {"ORBIT.", SignalKind::Orbit},
    {"POS.", SignalKind::Orbit},         {"SUM", SignalKind::BpmSum},
    {"LOSS.FAST", SignalKind::LossFast}, {"LOSS.INT", SignalKind::LossIntegral},
    {"HV", SignalKind::HighVoltage},     {"CURRENT.SET", SignalKind::CurrentSet},
    {"CURRENT.ACT", SignalKind::CurrentAct}, {"CURRENT.DIFF", SignalKind::CurrentDiff},
    {"VOLTAGE", SignalKind::Voltage},    {"CHARGE", SignalKind::BunchCharge},
    {"CURRENT", SignalKind::BeamCurrent}, {"LIFETIME", SignalKind::Lifetime},
    {"TUNE", SignalKind::Tune},          {"ENERGY", SignalKind::Constant},
    {"PRESSURE", SignalKind::Constant},  {"RF.", SignalKind::Constant},
    {"EFFICIENCY", SignalKind::Constant},
};

// Noise in [-1, 1) that changes once per `periodMs`.
double Noise(uint64_t key, int32_t element, int64_t timeMs, int64_t periodMs, uint64_t salt) {
    const int64_t bucket = timeMs >= 0 ? timeMs / periodMs : (timeMs - periodMs + 1) / periodMs;
    return 2.0 * Unit(Mix(Mix(key ^ salt, static_cast<uint64_t>(element)),
                          static_cast<uint64_t>(bucket))) - 1.0;
}

// Per-element constant in [0, 1).
double Spread(uint64_t key, int32_t element, uint64_t salt) {
    return Unit(Mix(key ^ salt, static_cast<uint64_t>(element) * 7919u + 1u));
}

double Seconds(int64_t timeMs) { return static_cast<double>(timeMs) / 1000.0; }

// Fraction of a top-up cycle gone: the stored beam decays for ten minutes, then
// is topped up again.
double TopUpDecay(int64_t timeMs) {
    constexpr int64_t kCycleMs = 600'000;
    const int64_t phase = ((timeMs % kCycleMs) + kCycleMs) % kCycleMs;
    return static_cast<double>(phase) / kCycleMs;
}

// A power-supply set value: a per-element level that moves by up to 2 % every
// two hours.
double SetValue(const Signal& s, int32_t element, int64_t timeMs) {
    constexpr int64_t kStepMs = 7'200'000;
    const double level = (0.45 + 0.4 * Spread(s.key, element, 11)) * s.currentScale;
    return level * (1.0 + 0.02 * Noise(s.key, element, timeMs, kStepMs, 12));
}

// The actual value approaches each new set value with a 20 s time constant.
double ActualValue(const Signal& s, int32_t element, int64_t timeMs) {
    constexpr int64_t kStepMs = 7'200'000;
    const int64_t sinceStep = ((timeMs % kStepMs) + kStepMs) % kStepMs;
    const double now = SetValue(s, element, timeMs);
    const double before = SetValue(s, element, timeMs - sinceStep - 1);
    const double settled = now + (before - now) * std::exp(-static_cast<double>(sinceStep) / 20'000.0);
    return settled + 0.0005 * s.currentScale * Noise(s.key, element, timeMs, 1000, 13);
}

double OrbitValue(const Signal& s, int32_t element, int64_t timeMs) {
    const double scale = (s.max - s.min) / 10.0;  // +-5 mm range -> 1 mm orbit
    const double phase = kTwoPi * 4.27 * element / std::max(s.size, 1);
    const double pattern = (0.3 + 0.5 * Spread(s.key, element, 1)) * std::sin(phase + 6.0 * Spread(s.key, 0, 2));
    const double drift = 0.15 * std::sin(kTwoPi * Seconds(timeMs) / 3600.0 + kTwoPi * Spread(s.key, element, 3));
    return scale * (pattern + drift + 0.03 * Noise(s.key, element, timeMs, 1000, 4));
}

double LossSpike(const Signal& s, int32_t element, int64_t timeMs) {
    // About one element in a hundred sees a spike in a given 10 s.
    const double chance = Unit(Mix(Mix(s.key ^ 21u, static_cast<uint64_t>(element)),
                                   static_cast<uint64_t>(timeMs / 10'000)));
    return chance < 0.01 ? 0.3 + 0.6 * (chance / 0.01) : 0.0;
}

double BunchCharge(const Signal& s, int32_t element, int64_t timeMs) {
    // A ring's fill pattern: trains of 40 buckets filled, 10 empty, and a
    // longer gap at the end of each part. Short devices (a linac's bunch
    // monitors) see every bunch filled.
    const int32_t inPart = element % std::max(s.size, 1);
    const bool gap = s.size >= 200 && (inPart % 50 >= 40 || inPart >= s.size - 60);
    if (gap) return 0.02 * s.max * std::abs(Noise(s.key, element, timeMs, 1000, 31));
    const double level = 0.6 * s.max * (1.0 + 0.08 * (Spread(s.key, element, 32) - 0.5));
    return level * (1.0 - 0.03 * TopUpDecay(timeMs)) * (1.0 + 0.005 * Noise(s.key, element, timeMs, 1000, 33));
}

}  // namespace

uint64_t Mix(uint64_t a, uint64_t b) {
    uint64_t z = a + 0x9E3779B97F4A7C15ull + (b << 6) + (b >> 2) + b * 0xBF58476D1CE4E5B9ull;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
    return z ^ (z >> 31);
}

uint64_t HashText(const std::string& text) {
    uint64_t h = 1469598103934665603ull;
    for (unsigned char c : text) h = (h ^ c) * 1099511628211ull;
    return Mix(h, text.size());
}

double Unit(uint64_t hash) { return static_cast<double>(hash >> 11) / 9007199254740992.0; }

SignalKind KindOfProperty(const std::string& property) {
    for (const auto& rule : kKindRules)
        if (property.rfind(rule.prefix, 0) == 0) return rule.kind;
    return SignalKind::Generic;
}

float SignalValue(const Signal& s, int32_t element, int64_t timeMs) {
    const double range = s.max - s.min;
    double v = 0.0;
    switch (s.kind) {
    case SignalKind::Orbit: v = OrbitValue(s, element, timeMs); break;
    case SignalKind::BpmSum:
        v = s.max * (0.6 + 0.05 * Spread(s.key, element, 5)) * (1.0 - 0.03 * TopUpDecay(timeMs)) +
            0.002 * s.max * Noise(s.key, element, timeMs, 1000, 6);
        break;
    case SignalKind::OrbitRms:
        v = s.max * (0.2 + 0.15 * Spread(s.key, element, 7)) * (1.0 + 0.1 * Noise(s.key, element, timeMs, 1000, 8));
        break;
    case SignalKind::LossFast:
        v = s.max * (0.02 + 0.03 * Spread(s.key, element, 9) + LossSpike(s, element, timeMs)) *
            (1.0 + 0.2 * Noise(s.key, element, timeMs, 1000, 10));
        break;
    case SignalKind::LossIntegral:
        v = s.max * (0.2 + 0.15 * Spread(s.key, element, 14) + 0.3 * TopUpDecay(timeMs) +
                     0.8 * LossSpike(s, element, timeMs));
        break;
    case SignalKind::HighVoltage:
        v = s.max * (0.75 + 0.005 * Spread(s.key, element, 15)) + 0.0002 * s.max * Noise(s.key, element, timeMs, 1000, 16);
        break;
    case SignalKind::CurrentSet: v = SetValue(s, element, timeMs); break;
    case SignalKind::CurrentAct: v = ActualValue(s, element, timeMs); break;
    case SignalKind::CurrentDiff: v = ActualValue(s, element, timeMs) - SetValue(s, element, timeMs); break;
    case SignalKind::Voltage:
        v = s.max * (0.3 + 0.3 * Spread(s.key, element, 17)) * (ActualValue(s, element, timeMs) / std::max(1e-6, SetValue(s, element, timeMs)));
        break;
    case SignalKind::BunchCharge: v = BunchCharge(s, element, timeMs); break;
    case SignalKind::BeamCurrent:
        v = 0.95 * s.max * (1.0 - 0.03 * TopUpDecay(timeMs)) + 0.0005 * s.max * Noise(s.key, element, timeMs, 1000, 18);
        break;
    case SignalKind::Lifetime:
        v = s.max * (0.45 + 0.05 * std::sin(kTwoPi * Seconds(timeMs) / 5400.0)) *
            (1.0 + 0.01 * Noise(s.key, element, timeMs, 1000, 19));
        break;
    case SignalKind::Tune:
        v = s.max * (0.45 + 0.2 * Spread(s.key, element, 20)) + 0.0005 * Noise(s.key, element, timeMs, 1000, 22);
        break;
    case SignalKind::Constant:
        v = (s.min + 0.8 * range) * (1.0 + 0.002 * Noise(s.key, element, timeMs, 1000, 23));
        break;
    case SignalKind::Generic:
        v = s.min + range * (0.5 + 0.25 * std::sin(kTwoPi * Seconds(timeMs) / 3600.0 + kTwoPi * Spread(s.key, element, 24)) +
                             0.01 * Noise(s.key, element, timeMs, 1000, 25));
        break;
    }
    return static_cast<float>(v);
}

}  // namespace sim
