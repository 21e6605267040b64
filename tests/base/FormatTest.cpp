#include "base/Format.h"

#include "support/CommaLocale.h"

#include <unicode/locid.h>
#include <unicode/timezone.h>

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <string>

namespace quorl::test {
namespace {

constexpr double minute = 60;
constexpr double hour = 60 * minute;
constexpr double day = 24 * hour;

// Relative dates in a language and a time zone that do not depend on the machine.
class FormatWhen : public testing::Test {
protected:
    FormatWhen() {
        UErrorCode status = U_ZERO_ERROR;
        icu::Locale::setDefault(icu::Locale("en_US"), status);
        icu::TimeZone::setDefault(*icu::TimeZone::getGMT());
    }
    ~FormatWhen() override {
        UErrorCode status = U_ZERO_ERROR;
        icu::Locale::setDefault(before, status);
    }

    // 15 June 2026, 12:00 UTC
    static constexpr double noon = 1781524800;

    static std::string ago(double seconds) {
        return Format::when(dateFromSeconds(noon - seconds), dateFromSeconds(noon));
    }

private:
    const icu::Locale before = icu::Locale::getDefault();
};

TEST(FormatLatency, IsInSecondsAbove999Milliseconds) {
    EXPECT_EQ(Format::latency(0), "0 ms");
    EXPECT_EQ(Format::latency(999), "999 ms");
    EXPECT_EQ(Format::latency(1000), "1.0 s");
    EXPECT_EQ(Format::latency(1449), "1.4 s");
    EXPECT_EQ(Format::latency(1451), "1.5 s");
    EXPECT_EQ(Format::latency(180'000), "180.0 s");
    EXPECT_EQ(Format::latency(-5), "-5 ms");
}

TEST(FormatCost, HasMoreDecimalsTheSmallerItIs) {
    EXPECT_EQ(Format::cost(std::nullopt), "—");
    EXPECT_EQ(Format::cost(0.0), "$0");
    EXPECT_EQ(Format::cost(-0.0), "$0");
    EXPECT_EQ(Format::cost(0.00001), "$0.0000");
    EXPECT_EQ(Format::cost(0.009), "$0.0090");
    EXPECT_EQ(Format::cost(0.01), "$0.010");
    EXPECT_EQ(Format::cost(0.5), "$0.500");
    EXPECT_EQ(Format::cost(0.9999), "$1.000");
    EXPECT_EQ(Format::cost(1.0), "$1.00");
    EXPECT_EQ(Format::cost(2.0), "$2.00");
    EXPECT_EQ(Format::cost(1234.567), "$1234.57");
}

TEST(FormatCost, TakesNumbersThatNoCallCosts) {
    EXPECT_EQ(Format::cost(-1.0), "$-1.0000");
    EXPECT_EQ(Format::cost(std::numeric_limits<double>::max()).size(), 1u + 309u + 3u);
    EXPECT_EQ(Format::cost(std::numeric_limits<double>::infinity()), "$inf");
}

TEST(FormatCompact, ShortensFromAThousandUp) {
    EXPECT_EQ(Format::compact(-1500), "-1500");
    EXPECT_EQ(Format::compact(0), "0");
    EXPECT_EQ(Format::compact(999), "999");
    EXPECT_EQ(Format::compact(1000), "1.0k");
    EXPECT_EQ(Format::compact(1200), "1.2k");
    EXPECT_EQ(Format::compact(9999), "10.0k");
    EXPECT_EQ(Format::compact(10'000), "10k");
    EXPECT_EQ(Format::compact(12'499), "12k");
    EXPECT_EQ(Format::compact(999'999), "1000k");
    EXPECT_EQ(Format::compact(1'000'000), "1.0M");
    EXPECT_EQ(Format::compact(1'540'000), "1.5M");
    EXPECT_EQ(Format::compact(INT64_MAX), "9223372036854.8M");
}

TEST(FormatTokens, MarksWhatIsEstimatedAndWhatIsMissing) {
    EXPECT_EQ(Format::tokens(1200, 35, true), "~1.2k in · ~35 out");
    EXPECT_EQ(Format::tokens(1200, 35, false), "1.2k in · 35 out");
    EXPECT_EQ(Format::tokens(std::nullopt, 35, true), "— in · ~35 out");
    EXPECT_EQ(Format::tokens(0, std::nullopt, false), "0 in · — out");
    EXPECT_EQ(Format::tokens(std::nullopt, std::nullopt, true), "— in · — out");
}

TEST(Format, KeepsTheFullStopInALocaleWithCommas) {
    const CommaLocale locale;
    ASSERT_TRUE(locale.isSet);
    ASSERT_STREQ(std::localeconv()->decimal_point, ",");

    EXPECT_EQ(Format::cost(2.5), "$2.50");
    EXPECT_EQ(Format::latency(1500), "1.5 s");
    EXPECT_EQ(Format::compact(1500), "1.5k");
}

TEST_F(FormatWhen, WithinAMinuteIsJustNow) {
    EXPECT_EQ(ago(0), "Just now");
    EXPECT_EQ(ago(59.999), "Just now");
    EXPECT_EQ(ago(-59.999), "Just now");
    EXPECT_EQ(ago(60), "1 min. ago");
    EXPECT_EQ(ago(-60), "in 1 min.");
}

TEST_F(FormatWhen, CountsTheLargestWholeUnit) {
    EXPECT_EQ(ago(119), "1 min. ago");
    EXPECT_EQ(ago(hour - 1), "59 min. ago");
    EXPECT_EQ(ago(hour), "1 hr. ago");
    EXPECT_EQ(ago(3.9 * hour), "3 hr. ago");
    EXPECT_EQ(ago(day - 1), "23 hr. ago");
    EXPECT_EQ(ago(day), "1 day ago");
    EXPECT_EQ(ago(6.9 * day), "6 days ago");
    EXPECT_EQ(ago(7 * day), "1 wk. ago");
    EXPECT_EQ(ago(29 * day), "4 wk. ago");
    EXPECT_EQ(ago(31 * day), "1 mo. ago");
    EXPECT_EQ(ago(364 * day), "11 mo. ago");
    EXPECT_EQ(ago(365 * day), "1 yr. ago");
    EXPECT_EQ(ago(800 * day), "2 yr. ago");
}

TEST_F(FormatWhen, SpeaksOfTheFuture) {
    EXPECT_EQ(ago(-119), "in 1 min.");
    EXPECT_EQ(ago(-3.9 * hour), "in 3 hr.");
    EXPECT_EQ(ago(-2 * day), "in 2 days");
    EXPECT_EQ(ago(-14 * day), "in 2 wk.");
    EXPECT_EQ(ago(-366 * day), "in 1 yr.");
}

TEST_F(FormatWhen, SpeaksTheUsersLanguage) {
    UErrorCode status = U_ZERO_ERROR;
    icu::Locale::setDefault(icu::Locale::getGermany(), status);

    EXPECT_EQ(ago(3 * hour), "vor 3 Std.");
}

TEST_F(FormatWhen, DatesOutOfAllRangeGiveSomeTextAndNoHarm) {
    EXPECT_EQ(Format::when(distantPast, dateFromSeconds(noon)), "2,025 yr. ago");
    EXPECT_NO_FATAL_FAILURE(static_cast<void>(Format::when(dateFromSeconds(1e300), dateFromSeconds(noon))));
    EXPECT_NO_FATAL_FAILURE(
        static_cast<void>(Format::when(dateFromSeconds(std::nan("")), dateFromSeconds(noon))));
    EXPECT_NO_FATAL_FAILURE(
        static_cast<void>(Format::when(dateFromSeconds(-INFINITY), dateFromSeconds(noon))));
}

} // namespace
} // namespace quorl::test
