#include "sample-endpoint/Words.h"

#include "base/Text.h"

#include <unicode/brkiter.h>
#include <unicode/ubrk.h>
#include <unicode/unistr.h>
#include <unicode/uscript.h>

#include <memory>
#include <set>

namespace quorl::sample {

namespace {

std::string utf8(const icu::UnicodeString& text) {
    std::string bytes;
    return text.toUTF8String(bytes);
}

bool isFiller(const std::string& word) {
    static const std::set<std::string> fillers{
        "a",     "about",  "after", "again",   "all",    "also",   "an",      "and",     "any",   "are",
        "as",    "at",     "be",    "because", "been",   "before", "being",   "between", "but",   "by",
        "can",   "could",  "did",   "do",      "does",   "each",   "for",     "from",    "give",  "had",
        "has",   "have",   "he",    "her",     "his",    "how",    "i",       "if",      "in",    "into",
        "is",    "it",     "its",   "just",    "like",   "make",   "me",      "more",    "most",  "my",
        "no",    "not",    "of",    "on",      "one",    "only",   "or",      "other",   "our",   "out",
        "over",  "please", "say",   "she",     "should", "so",     "some",    "than",    "that",  "the",
        "their", "them",   "then",  "there",   "these",  "they",   "this",    "those",   "to",    "too",
        "up",    "us",     "very",  "was",     "way",    "we",     "were",    "what",    "when",  "where",
        "which", "while",  "who",   "why",     "will",   "with",   "without", "would",   "write", "you",
        "your",
    };
    return fillers.contains(word);
}

// Two letters of an alphabet are grammar more often than not, and so is Japanese that is written in Hiragana
// alone.
bool carriesMeaning(const icu::UnicodeString& word, std::int32_t kind) {
    if (kind >= UBRK_WORD_LETTER && kind < UBRK_WORD_LETTER_LIMIT)
        return word.countChar32() > 2 && !isFiller(Text::lowercased(utf8(word)));
    for (std::int32_t place = 0; place < word.length(); place = word.moveIndex32(place, 1)) {
        UErrorCode status = U_ZERO_ERROR;
        if (uscript_getScript(word.char32At(place), &status) != USCRIPT_HIRAGANA)
            return true;
    }
    return false;
}

} // namespace

std::vector<Word> wordsOf(const std::string& text) {
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::BreakIterator> breaks(
        icu::BreakIterator::createWordInstance(icu::Locale::getRoot(), status));
    if (U_FAILURE(status))
        return {};
    const auto unicode = icu::UnicodeString::fromUTF8(text);
    breaks->setText(unicode);

    std::vector<Word> words;
    for (auto start = breaks->first(), end = breaks->next(); end != icu::BreakIterator::DONE;
         start = end, end = breaks->next()) {
        const auto kind = breaks->getRuleStatus();
        const auto word = unicode.tempSubStringBetween(start, end);
        if (kind >= UBRK_WORD_NONE_LIMIT) // the rest are blanks and marks
            words.push_back({utf8(word), carriesMeaning(word, kind)});
    }
    return words;
}

std::int64_t tokensIn(std::string_view text) {
    return static_cast<std::int64_t>((text.size() + 3) / 4);
}

} // namespace quorl::sample
