#pragma once

#include <QString>

#include <cstddef>
#include <string>
#include <string_view>

// Between our UTF-8 and Qt's UTF-16. Thread: any.
namespace quorl {

/// Bytes that are not UTF-8 become U+FFFD.
[[nodiscard]] inline QString toQString(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

/// `text` as a text editor holds it. A document has one kind of line end and no separate no-break space, so
/// that what an editor gives back can differ from what it was given although nobody has typed.
[[nodiscard]] QString asEdited(QString text);

/// The start of `text`, as far as that many characters go, for a place that shows no more of it: without
/// white space at its ends, and with each run of it inside as one blank.
[[nodiscard]] QString startOf(std::string_view text, std::size_t characters);

} // namespace quorl
