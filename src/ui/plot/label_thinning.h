// Which element labels an axis can show without them running into each other.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace ui {

// The step between labelled elements when elements [from, to] share
// `axisPixels` pixels and each label needs `pitchPixels` along the axis: the
// smallest of 1, 2, 5, 10, 20, 50, ... that keeps the labels `pitchPixels`
// apart. Degenerate inputs (no room, no span, non-finite) give a step that
// labels at most one element.
int64_t LabelStep(double from, double to, double axisPixels, double pitchPixels);

// The labelled elements within [from, to] and within 0 .. count - 1, in
// ascending order: first the `anchors` (ascending), each at least `step` from
// the anchor kept before it; then the multiples of `step` that lie at least
// `step` from every kept anchor.
std::vector<int64_t> LabelledElements(double from, double to, int64_t step, int64_t count,
                                      std::span<const int64_t> anchors = {});

}  // namespace ui
