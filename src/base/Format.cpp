#include "base/Format.h"

#include <unicode/calendar.h>
#include <unicode/reldatefmt.h>
#include <unicode/unistr.h>

#include <charconv>
#include <cmath>
#include <memory>
#include <utility>

namespace quorl::Format {

namespace {

// Not printf, whose decimal mark is the locale's.
std::string fixed(double value, int decimals) {
    char digits[512]; // the longest double has 309 digits before the mark
    const auto end =
        std::to_chars(std::begin(digits), std::end(digits), value, std::chars_format::fixed, decimals);
    return {digits, end.ptr};
}

struct Unit {
    UCalendarDateFields field;
    URelativeDateTimeUnit name;
};

constexpr Unit unitsFromLargest[] = {
    {UCAL_YEAR, UDAT_REL_UNIT_YEAR},         {UCAL_MONTH, UDAT_REL_UNIT_MONTH},
    {UCAL_WEEK_OF_YEAR, UDAT_REL_UNIT_WEEK}, {UCAL_DAY_OF_MONTH, UDAT_REL_UNIT_DAY},
    {UCAL_HOUR_OF_DAY, UDAT_REL_UNIT_HOUR},  {UCAL_MINUTE, UDAT_REL_UNIT_MINUTE},
};

// ICU's parts for the user's locale. Making them reads its data; lists ask for a date in every row.
struct RelativeDates {
    icu::Locale locale = icu::Locale::getDefault();
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::Calendar> calendar{icu::Calendar::createInstance(locale, status)};
    icu::RelativeDateTimeFormatter formatter{locale, nullptr, UDAT_STYLE_SHORT, UDISPCTX_CAPITALIZATION_NONE,
                                             status};
};

RelativeDates& relativeDates() {
    thread_local auto dates = std::make_unique<RelativeDates>();
    if (dates->locale != icu::Locale::getDefault())
        dates = std::make_unique<RelativeDates>();
    return *dates;
}

double millisecondsSince1970(Date date) {
    return secondsSince1970(date) * 1000.0;
}

} // namespace

std::string latency(std::int64_t milliseconds) {
    if (milliseconds > 999)
        return fixed(static_cast<double>(milliseconds) / 1000.0, 1) + " s";
    return std::to_string(milliseconds) + " ms";
}

std::string cost(std::optional<double> dollars) {
    if (!dollars)
        return "—";
    if (*dollars == 0)
        return "$0";
    if (*dollars < 0.01)
        return "$" + fixed(*dollars, 4);
    return "$" + fixed(*dollars, *dollars < 1.0 ? 3 : 2);
}

std::string compact(std::int64_t count) {
    const auto number = static_cast<double>(count);
    if (count >= 1'000'000)
        return fixed(number / 1e6, 1) + "M";
    if (count >= 1'000)
        return fixed(number / 1000.0, count >= 10'000 ? 0 : 1) + "k";
    return std::to_string(count);
}

std::string tokens(std::optional<std::int64_t> input, std::optional<std::int64_t> output, bool estimated) {
    const auto part = [&](std::optional<std::int64_t> count) {
        return count ? (estimated ? "~" : "") + compact(*count) : "—";
    };
    return part(input) + " in · " + part(output) + " out";
}

std::string when(Date date, Date now) {
    if (std::abs((date - now).count()) < 60)
        return "Just now";
    auto& [locale, status, calendar, formatter] = relativeDates();
    if (U_FAILURE(status))
        return "";
    UErrorCode problem = U_ZERO_ERROR;
    calendar->setTime(millisecondsSince1970(now), problem);
    for (const auto& [field, name] : unitsFromLargest) {
        // Moves the calendar on by what it counts, so a smaller unit would count the rest.
        const auto count = calendar->fieldDifference(millisecondsSince1970(date), field, problem);
        if (count == 0 && U_SUCCESS(problem))
            continue;
        icu::UnicodeString words;
        std::string text;
        formatter.formatNumeric(count, name, words, problem);
        return U_SUCCESS(problem) ? words.toUTF8String(text) : "";
    }
    return "";
}

} // namespace quorl::Format
