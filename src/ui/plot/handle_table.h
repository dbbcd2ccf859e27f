// Objects a plot hands out by 32-bit handle: traces, texts, marks, links.
#pragma once

#include <cstdint>
#include <limits>
#include <map>
#include <utility>

namespace ui {

inline constexpr int32_t kNoHandle = -1;

// Handles count up from `first` and are not reused while the table lives, so
// a stale handle that a caller kept can never reach a newer object; -1 and
// every other unknown handle find nothing. After the largest 32-bit handle the
// count starts again at 1, skipping handles still in use.
template <typename T>
class HandleTable {
public:
    explicit HandleTable(int32_t first = 1) : next_(first < 1 ? 1 : first) {}

    int32_t Add(T item) {
        const int32_t handle = NextFree();
        items_.emplace(handle, std::move(item));
        return handle;
    }
    T* Find(int32_t handle) {
        auto it = items_.find(handle);
        return it == items_.end() ? nullptr : &it->second;
    }
    const T* Find(int32_t handle) const {
        auto it = items_.find(handle);
        return it == items_.end() ? nullptr : &it->second;
    }
    bool Remove(int32_t handle) { return items_.erase(handle) > 0; }
    void Clear() { items_.clear(); }
    size_t size() const { return items_.size(); }
    bool empty() const { return items_.empty(); }

    // In handle order, which is creation order until the count wraps.
    auto begin() { return items_.begin(); }
    auto end() { return items_.end(); }
    auto begin() const { return items_.begin(); }
    auto end() const { return items_.end(); }

private:
    int32_t NextFree() {
        for (;;) {
            const int32_t handle = next_;
            next_ = next_ == std::numeric_limits<int32_t>::max() ? 1 : next_ + 1;
            if (items_.find(handle) == items_.end()) return handle;
        }
    }

    std::map<int32_t, T> items_;
    int32_t next_;
};

}  // namespace ui
