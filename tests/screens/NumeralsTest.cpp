#include "screens/Numerals.h"

#include <gtest/gtest.h>

#include <QLocale>

#include <cmath>

namespace quorl::test {
namespace {

class NumeralsTest : public testing::Test {
protected:
    NumeralsTest() { QLocale::setDefault(QLocale(QLocale::English)); }
    ~NumeralsTest() override { QLocale::setDefault(before); }

private:
    QLocale before;
};

TEST_F(NumeralsTest, WriteAsManyDecimalsAsItTakesAndNoSeparators) {
    EXPECT_EQ(Numerals::text(3), QStringLiteral("3"));
    EXPECT_EQ(Numerals::text(0.15), QStringLiteral("0.15"));
    EXPECT_EQ(Numerals::text(1234567.25), QStringLiteral("1234567.25"));
    EXPECT_EQ(Numerals::text(0.0000001), QStringLiteral("0.0000001"));
}

TEST_F(NumeralsTest, AreReadAndWrittenAsTheUserDoes) {
    QLocale::setDefault(QLocale(QLocale::German));

    EXPECT_EQ(Numerals::text(3.5), QStringLiteral("3,5"));
    EXPECT_EQ(Numerals::number(QStringLiteral(" 3,5 "), false), 3.5);
    EXPECT_EQ(Numerals::number(QStringLiteral("1.024"), true), 1024);
}

TEST_F(NumeralsTest, AreNoneInWhatIsNoNumber) {
    for (const char* text : {"", " ", "x", "1x", "nan", "inf", "1e999"})
        EXPECT_TRUE(std::isnan(Numerals::number(QString::fromUtf8(text), false))) << text;
    EXPECT_TRUE(std::isnan(Numerals::number(QStringLiteral("1.5"), true)));
    EXPECT_TRUE(std::isnan(Numerals::number(QStringLiteral("99999999999999999999"), true)));
}

TEST_F(NumeralsTest, AreDrawnInOneWidthAndTheRestAsItIs) {
    const QString drawn = Numerals::tabular(QStringLiteral("19 ms"));

    EXPECT_EQ(drawn.size(), 5);
    EXPECT_EQ(drawn.mid(2), QStringLiteral(" ms"));
    if (drawn != QStringLiteral("19 ms")) { // where the font has them
        EXPECT_EQ(drawn.at(0), QChar(0xE072));
        EXPECT_EQ(drawn.at(1), QChar(0xE07A));
    }
}

} // namespace
} // namespace quorl::test
