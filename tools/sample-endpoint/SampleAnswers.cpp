#include "sample-endpoint/SampleAnswers.h"

#include "base/Text.h"
#include "sample-endpoint/Words.h"

#include <algorithm>
#include <span>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace quorl::sample::SampleAnswers {

namespace {

using std::chrono::milliseconds;

constexpr std::size_t quotedCharacters = 280;
constexpr std::size_t termCount = 5;

// A word of the question that says what it is about.
struct Term {
    std::string word; // as it stood the first time
    std::size_t uses = 0;
    std::size_t place = 0; // among the words
};

// How a question of this sort is best gone about.
enum class Approach { cause, method, choice, text, fact };

// What can be said of a text without understanding it.
struct Reading {
    std::size_t words = 0;
    std::size_t sentences = 0;
    std::size_t lines = 0;
    std::vector<std::string> terms; // in quotation marks, in the order in which they come up
    Approach approach = Approach::fact;
};

// The few that come up most, the earlier ones first among equals; in the order in which the text brings them
// up.
std::vector<std::string> keyTerms(std::span<const Word> words) {
    std::unordered_map<std::string, Term> found;
    for (std::size_t place = 0; place < words.size(); ++place) {
        if (!words[place].carriesMeaning)
            continue;
        const auto& word = words[place].text;
        auto& term = found.try_emplace(Text::lowercased(word), Term{word, 0, place}).first->second;
        ++term.uses;
    }

    std::vector<Term> terms;
    for (auto& [folded, term] : found)
        terms.push_back(std::move(term));
    std::ranges::sort(terms, [](const Term& left, const Term& right) {
        return std::pair(right.uses, left.place) < std::pair(left.uses, right.place);
    });
    terms.resize(std::min(terms.size(), termCount));
    std::ranges::sort(terms, {}, &Term::place);

    std::vector<std::string> result;
    for (auto& term : terms)
        result.push_back("“" + term.word + "”");
    return result;
}

Approach approachTo(std::span<const Word> words) {
    for (const auto& word : words) {
        const auto folded = Text::lowercased(word.text);
        if (folded == "why" || folded == "cause")
            return Approach::cause;
        if (folded == "how")
            return Approach::method;
        if (folded == "which" || folded == "should" || folded == "or" || folded == "compare" ||
            folded == "versus")
            return Approach::choice;
        if (folded == "write" || folded == "draft" || folded == "rewrite" || folded == "summarize" ||
            folded == "translate")
            return Approach::text;
    }
    return Approach::fact;
}

// Unicode's own sentences (UAX #29) end at each new line as well; here a question over two lines is one.
std::size_t countSentences(std::string_view text) {
    constexpr std::array<std::string_view, 8> marks{".", "?", "!", "。", "？", "！", "؟", "।"};
    std::size_t sentences = 0;
    bool open = false; // something has been said since the last end
    while (!text.empty()) {
        const auto mark = std::ranges::find_if(marks, [&](auto each) { return text.starts_with(each); });
        if (mark != marks.end())
            sentences += std::exchange(open, false) ? 1 : 0;
        else if (text.front() != ' ' && text.front() != '\n')
            open = true;
        text.remove_prefix(mark == marks.end() ? 1 : mark->size());
    }
    return sentences + (open ? 1 : 0);
}

Reading readThrough(const std::string& text) {
    const auto words = wordsOf(text);
    return {
        .words = words.size(),
        .sentences = countSentences(text),
        .lines = static_cast<std::size_t>(std::ranges::count(text, '\n')) + 1,
        .terms = keyTerms(words),
        .approach = approachTo(words),
    };
}

std::string counted(std::size_t count, std::string_view one, std::string_view many) {
    return std::to_string(count) + ' ' + std::string(count == 1 ? one : many);
}

std::string joined(std::span<const std::string> terms, std::string_view last) {
    std::string text;
    for (std::size_t place = 0; place < terms.size(); ++place) {
        if (place > 0)
            text += place + 1 == terms.size() ? std::string(last) : std::string(", ");
        text += terms[place];
    }
    return text;
}

std::string shortened(std::string_view text) {
    const auto first = Text::firstCharacters(text, quotedCharacters);
    return std::string(first) + (first.size() < text.size() ? "…" : "");
}

std::string onOneLine(std::string_view text) {
    auto line = shortened(text);
    std::ranges::replace(line, '\n', ' ');
    return line;
}

// Line by line, so that the shape of a longer question can be seen.
std::string quoted(std::string_view text) {
    std::string block = "> ";
    for (const char character : shortened(text)) {
        block += character;
        if (character == '\n')
            block += "> ";
    }
    return block;
}

std::string termOr(const Reading& reading, std::size_t place, std::string_view otherwise) {
    return place < reading.terms.size() ? reading.terms[place] : std::string(otherwise);
}

std::string briefly(const Question& question, const Reading& reading) {
    auto text = "Sample answer, no model behind it. You asked, in " +
                counted(reading.words, "word", "words") + ": “" + onOneLine(Text::trimmed(question.prompt)) +
                "”";
    if (!reading.terms.empty())
        text += " An answer would turn on " + joined(reading.terms, " and ") + ".";
    return text;
}

std::vector<std::string> outline(const Reading& reading) {
    const auto first = termOr(reading, 0, "the subject");
    const auto second = termOr(reading, 1, "its surroundings");
    switch (reading.approach) {
    case Approach::cause:
        return {"What is observed about " + first + ", and when.",
                "The causes that could explain it, the likeliest first.",
                "How " + second + " tells one cause from another.", "What follows once the cause is known."};
    case Approach::method:
        return {"What has to be true about " + first + " before one starts.",
                "The steps, each with what it needs.",
                "Where " + second + " can go wrong, and how that shows.",
                "How one knows that it has worked."};
    case Approach::choice:
        return {"The options, told apart by " + first + ".",
                "What matters most in the choice, " + second + " included.", "Each option held against that.",
                "One recommendation, and what would change it."};
    case Approach::text:
        return {"Who reads it, and what they know about " + first + ".", "The one thing that it has to say.",
                "A first version, with " + second + " where it belongs.",
                "A second reading, to leave out what is not needed."};
    case Approach::fact:
        break;
    }
    return {"What is meant by " + first + ".", "What is known about it, and from where.",
            "How " + second + " bears on it.", "The short answer, with its limits."};
}

std::string thoroughly(const Question& question, const Reading& reading) {
    auto text =
        "This is a sample answer. There is no model behind it; it is composed from the question itself.\n\n"
        "The question\n" +
        quoted(Text::trimmed(question.prompt)) + "\n\nWhat it holds\n- " +
        counted(reading.words, "word", "words") + " in " +
        counted(reading.sentences, "sentence", "sentences") + " on " +
        counted(reading.lines, "line", "lines") + '\n';
    if (!reading.terms.empty())
        text += "- Key terms: " + joined(reading.terms, ", ") + '\n';
    if (!Text::isBlank(question.systemPrompt))
        text += "- Asked for beside it: “" + onOneLine(Text::trimmed(question.systemPrompt)) + "”\n";
    text += "\nHow an answer would go\n";
    for (const auto& point : outline(reading))
        text += "- " + point + '\n';
    text += "\nConnect a provider of your own under Models to read a real one.";
    return text;
}

std::string inSteps(const Question&, const Reading& reading) {
    std::string text = "Sample answer, no model behind it: the steps in which one would work on this.\n\n";
    std::size_t number = 0;
    const auto add = [&](const std::string& step) { text += std::to_string(++number) + ". " + step + '\n'; };
    add("Read the question (" + counted(reading.words, "word", "words") + ", " +
        counted(reading.sentences, "sentence", "sentences") + ") and say back what is wanted.");
    for (const auto& term : reading.terms)
        add("Settle what " + term + " means here.");
    for (const auto& point : outline(reading))
        add(point);
    add("Check the result against the question once more.");
    text.pop_back();
    return text;
}

std::string sceptically(const Question&, const Reading& reading) {
    std::string text = "Sample answer, no model behind it. Before I answer, some questions back:\n\n";
    for (const auto& term : reading.terms)
        text += "- What exactly counts as " + term + ", and what does not?\n";
    switch (reading.approach) {
    case Approach::cause:
        text += "- Is it certain that there is one cause and not several?\n";
        break;
    case Approach::method:
        text += "- What has been tried already, and what came of it?\n";
        break;
    case Approach::choice:
        text += "- Is there a choice that is not among those named?\n";
        break;
    case Approach::text:
        text += "- Who will read it, and what should they do then?\n";
        break;
    case Approach::fact:
        text += "- Which source would you believe?\n";
        break;
    }
    text += reading.words < 12 ? "- The question is short. What do you know already that it leaves out?"
                               : "- If only one part could be answered, which one should it be?";
    return text;
}

// The format around the messages takes a few tokens of its own.
constexpr std::int64_t tokensAroundMessages = 7;

// How a model of the demo speaks.
struct Voice {
    std::string_view model;
    std::string (*compose)(const Question&, const Reading&);
    milliseconds beforeFirstWord;
    milliseconds perToken;
};

constexpr std::array voices{
    Voice{brief, briefly, milliseconds(400), milliseconds(6)},
    Voice{thorough, thoroughly, milliseconds(1200), milliseconds(6)},
    Voice{steps, inSteps, milliseconds(800), milliseconds(6)},
    Voice{skeptic, sceptically, milliseconds(600), milliseconds(8)},
};

constexpr milliseconds longestWait{3000};

} // namespace

std::optional<Completion> answer(const Question& question) {
    if (question.modelIdentifier == unavailable)
        return std::nullopt;

    const auto voice = std::ranges::find(voices, question.modelIdentifier, &Voice::model);
    const auto compose = voice == voices.end() ? briefly : voice->compose;
    Completion completion{.text = compose(question, readThrough(question.prompt))};
    completion.inputTokens =
        tokensIn(question.systemPrompt) + tokensIn(question.prompt) + tokensAroundMessages;
    completion.outputTokens = tokensIn(completion.text);
    if (voice != voices.end())
        completion.delay =
            std::min(longestWait, voice->beforeFirstWord + voice->perToken * *completion.outputTokens);
    return completion;
}

} // namespace quorl::sample::SampleAnswers
