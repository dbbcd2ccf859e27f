#include "tool_support/json_document.h"

#include <charconv>
#include <cmath>
#include <cwchar>

namespace tool_support {

namespace {

// Length of the valid UTF-8 sequence at text[i], or 0. The C library decides
// validity in a UTF-8 locale of its own, independent of the environment's.
std::size_t Utf8SequenceLength(std::string_view text, std::size_t i, locale_t utf8) {
    const locale_t previous = uselocale(utf8);
    std::mbstate_t state{};
    wchar_t character = 0;
    const std::size_t length = std::mbrtowc(&character, text.data() + i, text.size() - i, &state);
    uselocale(previous);
    return length == static_cast<std::size_t>(-1) || length == static_cast<std::size_t>(-2) ? 0 : length;
}

}  // namespace

std::string Utf8Text(std::string_view text) {
    static const locale_t utf8 = newlocale(LC_CTYPE_MASK, "C.UTF-8", static_cast<locale_t>(nullptr));
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto c = static_cast<unsigned char>(text[i]);
        const std::size_t length = c < 0x80 || utf8 == nullptr ? 1 : Utf8SequenceLength(text, i, utf8);
        if (c < 0x80 || length > 1) {
            out.append(text.substr(i, length));
            i += length - 1;
        } else {
            out += static_cast<char>(0xC0 | (c >> 6));
            out += static_cast<char>(0x80 | (c & 0x3F));
        }
    }
    return out;
}

// Utf8Text leaves nothing invalid; should anything slip through, it is
// replaced rather than ending the program.
std::string JsonText(const JsonDocument& document) {
    return document.dump(-1, ' ', false, nlohmann::detail::error_handler_t::replace);
}

std::string ShortestFloat(float value) {
    if (!std::isfinite(value)) return "null";
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    return std::string(buffer, result.ptr);
}

}  // namespace tool_support
