// An array with fixed lower and upper bounds whose every access is checked.
//
// The tables of the program have bounds that are part of their behaviour
// (catalogue 0..100, machines 0..15, items 0..10): a row beyond them is an
// error the readers report, never a write past the end.
#pragma once

#include <array>
#include <cstddef>

#include "catalogue/runtime_error.h"

namespace catalogue {

template <typename T, int Lower, int Upper>
class FixedArray {
    static_assert(Upper >= Lower);

public:
    static constexpr int kLower = Lower;
    static constexpr int kUpper = Upper;
    static constexpr std::size_t kSize = static_cast<std::size_t>(Upper - Lower + 1);

    T& operator[](long index) { return items_[Slot(index)]; }
    const T& operator[](long index) const { return items_[Slot(index)]; }

    static constexpr bool Contains(long index) { return index >= Lower && index <= Upper; }

    auto begin() { return items_.begin(); }
    auto end() { return items_.end(); }
    auto begin() const { return items_.begin(); }
    auto end() const { return items_.end(); }

private:
    static std::size_t Slot(long index) {
        if (!Contains(index)) ThrowOutOfBounds("table", index, Lower, Upper);
        return static_cast<std::size_t>(index - Lower);
    }
    std::array<T, kSize> items_{};
};

}  // namespace catalogue
