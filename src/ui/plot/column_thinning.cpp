#include "ui/plot/column_thinning.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace ui {
namespace {

constexpr double kPixelLimit = 1e7;

double ClampPixel(double p) {
    if (std::isnan(p)) return 0.0;
    return std::clamp(p, -kPixelLimit, kPixelLimit);
}

class ShapeBuilder {
public:
    ShapeBuilder(const TracePoints& trace, const PixelMapping& m, std::vector<QPointF>& out)
        : t_(trace), m_(m), out_(out) {}

    ShapeKind Build(int left, int right) {
        const size_t n = t_.values.size();
        if (n == 0 || !(m_.xScale > 0.0) || !std::isfinite(m_.xScale)) return ShapeKind::Polyline;
        if (!t_.xs.empty() && (t_.xs.size() < n || !t_.ascending)) {
            // Unordered x: every point as given, no binning.
            Exact(0, std::min(n, t_.xs.size()) - 1);
            return ShapeKind::Polyline;
        }
        const double xFrom = (left - m_.xLeft) / m_.xScale + m_.xLower;
        const double xTo = (right + 1 - m_.xLeft) / m_.xScale + m_.xLower;
        if (!std::isfinite(xFrom) || !std::isfinite(xTo)) return ShapeKind::Polyline;
        size_t first, last;
        if (t_.xs.empty()) {
            const double hiIndex = static_cast<double>(n - 1);
            first = static_cast<size_t>(std::clamp(std::floor(xFrom) - 1.0, 0.0, hiIndex));
            last = static_cast<size_t>(std::clamp(std::ceil(xTo) + 1.0, 0.0, hiIndex));
        } else {
            const auto xs = t_.xs.first(n);
            const auto lo = std::lower_bound(xs.begin(), xs.end(), xFrom);
            const auto hi = std::upper_bound(xs.begin(), xs.end(), xTo);
            first = lo == xs.begin() ? 0 : static_cast<size_t>(lo - xs.begin()) - 1;
            last = hi == xs.end() ? n - 1 : static_cast<size_t>(hi - xs.begin());
        }
        if (first > last) return ShapeKind::Polyline;
        if (static_cast<double>(last - first + 1) <= 2.0 * static_cast<double>(right - left + 1)) {
            Exact(first, last);
            if (breaks_.empty()) return ShapeKind::Polyline;
            SplitAtBreaks();
            return ShapeKind::LinePairs;
        }
        Binned(first, last);
        return ShapeKind::LinePairs;
    }

private:
    float Value(size_t i) const {
        const float v = t_.values[i];
        return i < t_.reference.size() ? v - t_.reference[i] : v;
    }
    double X(size_t i) const { return t_.xs.empty() ? static_cast<double>(i) : t_.xs[i]; }
    double Px(double x) const { return ClampPixel((x - m_.xLower) * m_.xScale + m_.xLeft); }
    double Py(double y) const { return ClampPixel((y - m_.yLower) * m_.yScale + m_.yBottom); }

    // A NaN value is a gap in the data: the line stops before it and starts
    // again after it, it is never drawn across.
    void Exact(size_t first, size_t last) {
        for (size_t i = first; i <= last; ++i) {
            const float v = Value(i);
            const double x = X(i);
            if (std::isnan(v) || std::isnan(x)) {
                if (!out_.empty() && (breaks_.empty() || breaks_.back() != out_.size())) breaks_.push_back(out_.size());
                continue;
            }
            const QPointF p(Px(x), Py(v));
            if (out_.empty() || out_.back() != p || (!breaks_.empty() && breaks_.back() == out_.size()))
                out_.push_back(p);
        }
    }

    // The polyline cut at the breaks, as pairs of line ends; a run of one
    // point is a zero-length line, which the square cap draws as a dot.
    void SplitAtBreaks() {
        std::vector<QPointF> polyline;
        polyline.swap(out_);
        size_t next = 0;
        for (size_t k = 0; k < polyline.size(); ++k) {
            const bool runStart = k == 0 || (next < breaks_.size() && breaks_[next] == k);
            if (runStart && k > 0) ++next;
            const bool runEnd = k + 1 == polyline.size() || (next < breaks_.size() && breaks_[next] == k + 1);
            if (runStart && runEnd) Line(polyline[k], polyline[k]);
            if (!runEnd) Line(polyline[k], polyline[k + 1]);
        }
    }

    // The pixel column a position falls in, as the painter puts a point
    // without antialiasing: the pixel whose square holds it.
    static double ColumnOf(double px) { return std::floor(px); }

    // First index past `i` that lies in another pixel column. Rounding may
    // end a column one point early; that only splits it in two.
    size_t ColumnEnd(size_t i, size_t last, double column) const {
        if (t_.xs.empty()) {
            const double next = std::ceil((column + 1.0 - m_.xLeft) / m_.xScale + m_.xLower);
            if (!(next > static_cast<double>(i))) return i + 1;
            if (next > static_cast<double>(last)) return last + 1;
            return static_cast<size_t>(next);
        }
        size_t j = i + 1;
        while (j <= last && ColumnOf(Px(t_.xs[j])) == column) ++j;
        return j;
    }

    void Binned(size_t first, size_t last) {
        bool joined = false;   // a previous column to join from
        QPointF exit;          // its last point
        size_t i = first;
        while (i <= last) {
            const double column = ColumnOf(Px(X(i)));
            const size_t end = ColumnEnd(i, last, column);
            float firstV, lastV, lo, hi;
            if (!Extremes(i, end, firstV, lastV, lo, hi)) {
                joined = false;  // a column of gap only
            } else {
                const QPointF entry(column, Py(firstV));
                // A gap before the column's first value or after its last
                // one breaks the join on that side.
                if (joined && !std::isnan(Value(i))) Line(exit, entry);
                // lo > hi in pixels (y grows downwards); a single value is a
                // zero-length line, which the square cap draws as one pixel.
                Line(QPointF(column, Py(lo)), QPointF(column, Py(hi)));
                exit = QPointF(column, Py(lastV));
                joined = !std::isnan(Value(end - 1));
            }
            i = end;
        }
    }

    void Line(QPointF a, QPointF b) {
        out_.push_back(a);
        out_.push_back(b);
    }

    // First, last, lowest and highest value of [begin, end), NaN left out;
    // false when all are NaN.
    bool Extremes(size_t begin, size_t end, float& firstV, float& lastV, float& lo, float& hi) const {
        size_t i = begin;
        while (i < end && std::isnan(Value(i))) ++i;
        if (i == end) return false;
        size_t j = end - 1;
        while (std::isnan(Value(j))) --j;
        firstV = Value(i);
        lastV = Value(j);
        lo = hi = firstV;
        // NaN compares false, so it never becomes an extreme.
        if (t_.reference.empty()) {
            for (size_t k = i + 1; k <= j; ++k) {
                const float v = t_.values[k];
                lo = v < lo ? v : lo;
                hi = v > hi ? v : hi;
            }
        } else {
            for (size_t k = i + 1; k <= j; ++k) {
                const float v = Value(k);
                lo = v < lo ? v : lo;
                hi = v > hi ? v : hi;
            }
        }
        return true;
    }

    const TracePoints& t_;
    const PixelMapping& m_;
    std::vector<QPointF>& out_;
    std::vector<size_t> breaks_;  // indices of out_ where a new run starts
};

}  // namespace

ShapeKind BuildShape(const TracePoints& trace, const PixelMapping& mapping, int left, int right,
                     std::vector<QPointF>& out) {
    out.clear();
    if (right < left) return ShapeKind::Polyline;
    return ShapeBuilder(trace, mapping, out).Build(left, right);
}

}  // namespace ui
