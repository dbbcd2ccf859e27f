#include "ui/plot/column_thinning.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

namespace ui {
namespace {

constexpr double kPixelLimit = 1e7;

double ClampPixel(double p) {
    if (std::isnan(p)) return 0.0;
    return std::clamp(p, -kPixelLimit, kPixelLimit);
}

class PolylineBuilder {
public:
    PolylineBuilder(const TracePoints& trace, const PixelMapping& m, std::vector<QPointF>& out)
        : t_(trace), m_(m), out_(out) {}

    float Value(size_t i) const {
        const float v = t_.values[i];
        return i < t_.reference.size() ? v - t_.reference[i] : v;
    }
    double X(size_t i) const { return t_.xs.empty() ? static_cast<double>(i) : t_.xs[i]; }
    double Px(double x) const { return ClampPixel((x - m_.xLower) * m_.xScale + m_.xLeft); }
    double Py(double y) const { return ClampPixel((y - m_.yLower) * m_.yScale + m_.yBottom); }

    void Push(double px, double py) {
        const QPointF p(px, py);
        if (out_.size() > start_ && out_.back() == p) return;
        out_.push_back(p);
    }

    void Exact(size_t first, size_t last) {
        for (size_t i = first; i <= last; ++i) {
            const float v = Value(i);
            const double x = X(i);
            if (std::isnan(v) || std::isnan(x)) continue;
            Push(Px(x), Py(v));
        }
    }

    // Points [first, end) all fall into pixel column `column`.
    void Column(size_t first, size_t end, double column) {
        size_t i = first;
        while (i < end && std::isnan(Value(i))) ++i;
        if (i == end) return;
        float firstV = Value(i), lastV = firstV, lo = firstV, hi = firstV;
        size_t loAt = i, hiAt = i;
        for (++i; i < end; ++i) {
            const float v = Value(i);
            if (std::isnan(v)) continue;
            lastV = v;
            if (v < lo) { lo = v; loAt = i; }
            if (v > hi) { hi = v; hiAt = i; }
        }
        Push(column, Py(firstV));
        if (loAt < hiAt) {
            Push(column, Py(lo));
            Push(column, Py(hi));
        } else {
            Push(column, Py(hi));
            Push(column, Py(lo));
        }
        Push(column, Py(lastV));
    }

    size_t PixelColumnEnd(size_t i, size_t last, double column) const {
        if (t_.xs.empty()) {
            // First index whose pixel lies in the next column; rounding may
            // leave a point for the same column, which then only adds a point.
            const double next = std::ceil((column + 1.0 - m_.xLeft) / m_.xScale + m_.xLower);
            if (!(next > static_cast<double>(i))) return i + 1;
            if (next > static_cast<double>(last)) return last + 1;
            return static_cast<size_t>(next);
        }
        size_t j = i + 1;
        while (j <= last && std::floor(Px(t_.xs[j])) == column) ++j;
        return j;
    }

    void Binned(size_t first, size_t last) {
        size_t i = first;
        while (i <= last) {
            const double column = std::floor(Px(X(i)));
            const size_t end = PixelColumnEnd(i, last, column);
            Column(i, end, column);
            i = end;
        }
    }

    void Build(int left, int right) {
        start_ = out_.size();
        const size_t n = t_.values.size();
        if (n == 0 || !(m_.xScale > 0.0) || !std::isfinite(m_.xScale)) return;
        if (!t_.xs.empty() && (t_.xs.size() < n || !t_.ascending)) {
            // Unordered x: every point as given, no binning.
            Exact(0, std::min(n, t_.xs.size()) - 1);
            return;
        }
        const double xFrom = (left - m_.xLeft) / m_.xScale + m_.xLower;
        const double xTo = (right + 1 - m_.xLeft) / m_.xScale + m_.xLower;
        if (!std::isfinite(xFrom) || !std::isfinite(xTo)) return;
        size_t first, last;
        if (t_.xs.empty()) {
            const double lo = std::clamp(std::floor(xFrom) - 1.0, 0.0, static_cast<double>(n - 1));
            const double hi = std::clamp(std::ceil(xTo) + 1.0, 0.0, static_cast<double>(n - 1));
            first = static_cast<size_t>(lo);
            last = static_cast<size_t>(hi);
        } else {
            const auto xs = t_.xs.first(n);
            const auto lo = std::lower_bound(xs.begin(), xs.end(), xFrom);
            const auto hi = std::upper_bound(xs.begin(), xs.end(), xTo);
            first = lo == xs.begin() ? 0 : static_cast<size_t>(lo - xs.begin()) - 1;
            last = hi == xs.end() ? n - 1 : static_cast<size_t>(hi - xs.begin());
        }
        if (first > last) return;
        const double columns = static_cast<double>(right - left + 1);
        if (static_cast<double>(last - first + 1) <= 2.0 * columns)
            Exact(first, last);
        else
            Binned(first, last);
    }

private:
    const TracePoints& t_;
    const PixelMapping& m_;
    std::vector<QPointF>& out_;
    size_t start_ = 0;
};

}  // namespace

void BuildPolyline(const TracePoints& trace, const PixelMapping& mapping, int left, int right,
                   std::vector<QPointF>& out) {
    if (right < left) return;
    PolylineBuilder(trace, mapping, out).Build(left, right);
}

}  // namespace ui
