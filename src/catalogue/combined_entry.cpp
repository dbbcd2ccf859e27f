#include "catalogue/combined_entry.h"

#include <array>
#include <string>

#include "catalogue/table.h"

namespace catalogue {

std::optional<int16_t> MachineNamedInFileName(std::string_view fileName) {
    // Searched in this order: a name holding two of them counts as the first.
    static constexpr std::array<std::string_view, 3> kNames{"ORKA", "VESTA", "LYRAS"};
    const std::string upper = UpperCase(fileName);
    for (std::size_t machine = 0; machine < kNames.size(); ++machine)
        if (upper.find(kNames[machine]) != std::string::npos) return static_cast<int16_t>(machine);
    return std::nullopt;
}

}  // namespace catalogue
