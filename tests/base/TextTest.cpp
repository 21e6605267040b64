#include "base/Text.h"

#include <unicode/locid.h>

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace quorl::test {
namespace {

using namespace std::string_literals;

const std::string astronaut = "\U0001F469\u200D\U0001F680"; // woman, joiner, rocket: one character
const std::string flag = "\U0001F1E9\U0001F1EA";

class UsersLocale {
public:
    explicit UsersLocale(const char* name) {
        UErrorCode status = U_ZERO_ERROR;
        icu::Locale::setDefault(icu::Locale(name), status);
    }
    UsersLocale(const UsersLocale&) = delete;
    UsersLocale& operator=(const UsersLocale&) = delete;
    ~UsersLocale() {
        UErrorCode status = U_ZERO_ERROR;
        icu::Locale::setDefault(before, status);
    }

private:
    const icu::Locale before = icu::Locale::getDefault();
};

std::vector<std::string> charactersOf(std::string_view text) {
    std::vector<std::string> characters;
    Text::forEachCharacter(
        text, [&](std::string_view character, Text::CharacterClass) { characters.emplace_back(character); });
    return characters;
}

Text::CharacterClass classOf(std::string_view character) {
    auto result = Text::CharacterClass::other;
    Text::forEachCharacter(character, [&](std::string_view, Text::CharacterClass kind) { result = kind; });
    return result;
}

TEST(TextUTF8, TellsUTF8FromOtherBytes) {
    EXPECT_TRUE(Text::isUTF8(""));
    EXPECT_TRUE(Text::isUTF8("plain"));
    EXPECT_TRUE(Text::isUTF8("a\0b"s));
    EXPECT_TRUE(Text::isUTF8("Größe " + astronaut + "\uFFFF\U0010FFFF"));

    EXPECT_FALSE(Text::isUTF8("\xFF"));
    EXPECT_FALSE(Text::isUTF8("a\x80"));
    EXPECT_FALSE(Text::isUTF8("\xC3"));             // cut off
    EXPECT_FALSE(Text::isUTF8("\xE2\x82"));         // cut off
    EXPECT_FALSE(Text::isUTF8("\xC0\x80"));         // longer than need be
    EXPECT_FALSE(Text::isUTF8("\xED\xA0\x80"));     // a surrogate
    EXPECT_FALSE(Text::isUTF8("\xF4\x90\x80\x80")); // past the last code point
    EXPECT_FALSE(Text::isUTF8("Gr\xF6\xDF"
                              "e")); // Latin-1
}

TEST(TextTrimmed, TakesUnicodesWhiteSpaceFromBothEnds) {
    EXPECT_EQ(Text::trimmed(" \t\r\n\v\f a b \u00A0\u2003\u2028\u2029\u3000\u0085"), "a b");
    EXPECT_EQ(Text::trimmed("none"), "none");
    EXPECT_EQ(Text::trimmed(" \n "), "");
    EXPECT_EQ(Text::trimmed(""), "");
    EXPECT_EQ(Text::trimmed(std::string_view()), "");
}

TEST(TextTrimmed, LeavesWhatIsNoWhiteSpace) {
    EXPECT_EQ(Text::trimmed("\u200Ba\uFEFF"), "\u200Ba\uFEFF");
    EXPECT_EQ(Text::trimmed("\0 "s), "\0"s);
    EXPECT_EQ(Text::trimmed(" \xFF \x80 "), "\xFF \x80");
    EXPECT_EQ(Text::trimmed(" \xE2\x80"), "\xE2\x80");
    EXPECT_EQ(Text::trimmed("\x80\x80 "), "\x80\x80");
}

TEST(TextTrimmed, IsAViewIntoItsArgument) {
    const std::string text = "  a  ";

    EXPECT_EQ(Text::trimmed(text).data(), text.data() + 2);
}

TEST(TextBlank, IsWhatTrimmingLeavesNothingOf) {
    EXPECT_TRUE(Text::isBlank(""));
    EXPECT_TRUE(Text::isBlank(" \u3000\n"));
    EXPECT_FALSE(Text::isBlank(" . "));
}

TEST(TextLowercased, FollowsUnicodeInEveryLocale) {
    const UsersLocale turkish("tr_TR");

    EXPECT_EQ(Text::lowercased("HTTP://ÄÖ İI"), "http://äö i\u0307i");
    EXPECT_EQ(Text::lowercased("ΟΔΟΣ"), "οδος");
    EXPECT_EQ(Text::lowercased("A\0B"s), "a\0b"s);
    EXPECT_EQ(Text::lowercased(""), "");
    EXPECT_EQ(Text::lowercased("A\xFF"), "a\uFFFD");
}

TEST(TextCapitalized, RaisesTheFirstLetterOfEachWordAndLowersTheRest) {
    EXPECT_EQ(Text::capitalized("risk LEVEL 2"), "Risk Level 2");
    EXPECT_EQ(Text::capitalized("élan  vital\ndon't"), "Élan  Vital\nDon't");
    EXPECT_EQ(Text::capitalized("ǆ ﬁn"), "ǅ Fin");
    EXPECT_EQ(Text::capitalized(""), "");
    EXPECT_EQ(Text::capitalized("再来"), "再来");
}

TEST(TextFirstCharacters, CountsGraphemeClusters) {
    EXPECT_EQ(Text::firstCharacters("abc", 2), "ab");
    EXPECT_EQ(Text::firstCharacters("abc", 3), "abc");
    EXPECT_EQ(Text::firstCharacters("abc", 4), "abc");
    EXPECT_EQ(Text::firstCharacters("abc", 0), "");
    EXPECT_EQ(Text::firstCharacters("", 3), "");
    EXPECT_EQ(Text::firstCharacters("e\u0301e\u0301e\u0301", 2), "e\u0301e\u0301");
    EXPECT_EQ(Text::firstCharacters(astronaut + flag + "x", 2), astronaut + flag);
    EXPECT_EQ(Text::firstCharacters("\r\n\r\nx", 1), "\r\n");
    EXPECT_EQ(Text::firstCharacters("\uD55C\u1100\u1161\u11A8!", 2), "\uD55C\u1100\u1161\u11A8");
}

TEST(TextFirstCharacters, TakesWhatIsNoText) {
    EXPECT_EQ(Text::firstCharacters("\0\0\0"s, 2), "\0\0"s);
    EXPECT_EQ(Text::firstCharacters("\xFF\xFE\xFD", 2), "\xFF\xFE");
}

TEST(TextFirstCharacters, OfAVeryLongTextIsAsFastAsOfAShortOne) {
    const std::string text(100'000'000, 'x');

    EXPECT_EQ(Text::firstCharacters(text, 300).size(), 300u);
}

TEST(TextFolded, IsTheSameForTextsThatDifferInCaseOrInWriting) {
    EXPECT_EQ(Text::folded("Support"), "support");
    EXPECT_EQ(Text::folded("STRASSE"), Text::folded("straße"));
    EXPECT_EQ(Text::folded("CAFÉ"), Text::folded("cafe\u0301"));
    EXPECT_EQ(Text::folded("ΟΔΟΣ"), Text::folded("οδος"));
    EXPECT_EQ(Text::folded(""), "");
    EXPECT_EQ(Text::folded("A\0Z[`"s), "a\0z[`"s);
}

TEST(TextFolded, FindsAPartByPlainSearch) {
    const auto text = Text::folded("Die GRÖSSE eines Cafe\u0301s");

    EXPECT_NE(text.find(Text::folded("größe")), std::string::npos);
    EXPECT_NE(text.find(Text::folded("CAFÉ")), std::string::npos);
    EXPECT_EQ(text.find(Text::folded("cafe")), std::string::npos);
}

TEST(TextEqualsIgnoringCase, ComparesWholeTexts) {
    EXPECT_TRUE(Text::equalsIgnoringCase("", ""));
    EXPECT_TRUE(Text::equalsIgnoringCase("Größe", "GRÖSSE"));
    EXPECT_TRUE(Text::equalsIgnoringCase("\xFF", "\xFF"));
    EXPECT_FALSE(Text::equalsIgnoringCase("Cafe", "Café"));
    EXPECT_FALSE(Text::equalsIgnoringCase("a", "a "));
    EXPECT_FALSE(Text::equalsIgnoringCase("a", "a\0"s));
    EXPECT_FALSE(Text::equalsIgnoringCase("a-b", "ab"));
    EXPECT_FALSE(Text::equalsIgnoringCase("", "\u200D"));
}

TEST(TextEqualsIgnoringCase, KnowsTheTurkishI) {
    EXPECT_TRUE(Text::equalsIgnoringCase("TITLE", "title"));
    EXPECT_FALSE(Text::equalsIgnoringCase("TITLE", "tıtle"));

    const UsersLocale turkish("tr_TR");
    EXPECT_FALSE(Text::equalsIgnoringCase("TITLE", "title"));
    EXPECT_TRUE(Text::equalsIgnoringCase("TITLE", "tıtle"));
    EXPECT_TRUE(Text::equalsIgnoringCase("İ", "i"));
    EXPECT_TRUE(Text::equalsIgnoringCase("I\u0307", "i"));
}

TEST(TextPrecedes, FollowsTheLocalesOrder) {
    const UsersLocale english("en_US");
    EXPECT_TRUE(Text::precedesIgnoringCase("apple", "Banana"));
    EXPECT_TRUE(Text::precedesIgnoringCase("Apple", "banana"));
    EXPECT_FALSE(Text::precedesIgnoringCase("banana", "Apple"));
    EXPECT_TRUE(Text::precedesIgnoringCase("ä", "z"));
    EXPECT_TRUE(Text::precedesIgnoringCase("cote", "coté"));
    EXPECT_TRUE(Text::precedesIgnoringCase("", "a"));

    const UsersLocale swedish("sv_SE");
    EXPECT_TRUE(Text::precedesIgnoringCase("z", "ä"));
}

TEST(TextPrecedes, IsNoOrderOfBytesWhereNoLanguageIsSet) {
    const UsersLocale none("en_US_POSIX");

    EXPECT_TRUE(Text::precedesIgnoringCase("apple", "Banana"));
    EXPECT_FALSE(Text::precedesIgnoringCase("Banana", "apple"));
}

TEST(TextPrecedes, CasePutsNeitherFirst) {
    const UsersLocale english("en_US");

    EXPECT_FALSE(Text::precedesIgnoringCase("apple", "APPLE"));
    EXPECT_FALSE(Text::precedesIgnoringCase("APPLE", "apple"));
}

TEST(TextCharacters, AreVisitedFromStartToEnd) {
    EXPECT_EQ(charactersOf("a" + astronaut + "\r\ne\u0301"),
              (std::vector<std::string>{"a", astronaut, "\r\n", "e\u0301"}));
    EXPECT_EQ(charactersOf(""), std::vector<std::string>());
    EXPECT_EQ(charactersOf(std::string_view()), std::vector<std::string>());
    EXPECT_EQ(charactersOf("\0\xFF"s), (std::vector<std::string>{"\0"s, "\xFF"}));
}

TEST(TextCharacters, ACarriageReturnAndItsLineFeedAreOne) {
    std::vector<std::string> seen;
    Text::forEachCharacter("a\r\nb\n\r", [&](std::string_view character, Text::CharacterClass) {
        seen.emplace_back(character);
    });

    EXPECT_EQ(seen, (std::vector<std::string>{"a", "\r\n", "b", "\n", "\r"}));
}

TEST(TextCharacters, AVisitMayWalkAnotherText) {
    std::vector<std::string> seen;
    Text::forEachCharacter("abcd", [&](std::string_view character, Text::CharacterClass) {
        seen.emplace_back(character);
        seen.push_back(charactersOf("xyz").back());
    });

    EXPECT_EQ(seen, (std::vector<std::string>{"a", "z", "b", "z", "c", "z", "d", "z"}));
}

TEST(TextCharacters, AreOfTheClassOfTheirFirstCodePoint) {
    using enum Text::CharacterClass;
    for (const auto& [character, kind] :
         std::vector<std::pair<std::string, Text::CharacterClass>>{{"a", letter},
                                                                   {"É", letter},
                                                                   {"e\u0301", letter},
                                                                   {"漢", letter},
                                                                   {"ª", letter},
                                                                   {"1", number},
                                                                   {"\u0663", number},
                                                                   {"²", number},
                                                                   {"½", number},
                                                                   {"\u2167", number},
                                                                   {"1\uFE0F\u20E3", number},
                                                                   {" ", whiteSpace},
                                                                   {"\r\n", whiteSpace},
                                                                   {"\u2028", whiteSpace},
                                                                   {"\u00A0", whiteSpace},
                                                                   {"_", other},
                                                                   {"-", other},
                                                                   {astronaut, other},
                                                                   {"\0"s, other},
                                                                   {"\xFF", other},
                                                                   {"\u0301", other}})
        EXPECT_EQ(classOf(character), kind) << character;
}

TEST(TextWithoutTrailing, RemovesTheWholeRun) {
    EXPECT_EQ(Text::withoutTrailing("http://a/b//", '/'), "http://a/b");
    EXPECT_EQ(Text::withoutTrailing("///", '/'), "");
    EXPECT_EQ(Text::withoutTrailing("a", '/'), "a");
    EXPECT_EQ(Text::withoutTrailing("", '/'), "");
}

} // namespace
} // namespace quorl::test
