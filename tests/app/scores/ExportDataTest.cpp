#include "app/ExportData.h"

#include "support/Builders.h"
#include "support/CommaLocale.h"
#include "support/TempFolder.h"
#include "tools/Process.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

using namespace quorl;
using namespace quorl::test;

namespace {

const std::string header = "model,category,answers,correct_percent,average_rating,average_latency_ms,"
                           "average_cost_usd,input_tokens,output_tokens";

ScoreRow makeRow(std::string modelName = "Zun Large", std::string categoryName = "Support / Refunds") {
    ScoreRow row;
    row.modelName = std::move(modelName);
    row.categoryName = std::move(categoryName);
    row.answers = 3;
    return row;
}

std::string csvOf(const ScoreRow& row) {
    const std::string csv = ExportData::scoresCSV(std::vector{row});
    EXPECT_EQ(csv.substr(0, header.size() + 1), header + "\n");
    return csv.substr(header.size() + 1);
}

std::string jsonlOf(const std::vector<DatasetExample>& examples) {
    std::vector<const DatasetExample*> pointers;
    for (const auto& example : examples)
        pointers.push_back(&example);
    const auto lines = ExportData::fineTuneJSONL(pointers);
    return lines ? lines.value() : "failed: " + lines.message();
}

std::string hex(std::string_view bytes) {
    static constexpr char digits[] = "0123456789abcdef";
    std::string text;
    for (const char byte : bytes) {
        text += digits[static_cast<unsigned char>(byte) >> 4];
        text += digits[static_cast<unsigned char>(byte) & 15];
    }
    return text;
}

// What a script for Python's interpreter prints about a file with these bytes, in lines of words. It is a
// reader that shares nothing with the writer.
std::vector<std::vector<std::string>> readByPython(const std::string& script, const std::string& bytes) {
    const TempFolder folder;
    const auto path = folder.path() / "export";
    std::ofstream(path, std::ios::binary) << bytes;
    Process python({"/usr/bin/python3", "-c", script, path.string()});
    std::vector<std::vector<std::string>> lines;
    for (std::string line = python.readLine(); !line.empty(); line = python.readLine()) {
        std::istringstream words(line);
        lines.push_back({std::istream_iterator<std::string>(words), {}});
    }
    return lines;
}

std::vector<std::string> readCSVByPython(const std::string& bytes) {
    // The fields of the second row, in hexadecimal; a field without text as "-".
    const auto rows = readByPython("import csv, sys\n"
                                   "for row in csv.reader(open(sys.argv[1], encoding='utf-8', newline='')):\n"
                                   "    print(*[field.encode().hex() or '-' for field in row])\n",
                                   bytes);
    EXPECT_EQ(rows.size(), 2u);
    return rows.size() == 2 ? rows[1] : std::vector<std::string>();
}

std::vector<std::vector<std::string>> readJSONLByPython(const std::string& bytes) {
    return readByPython("import json, sys\n"
                        "for line in open(sys.argv[1], 'rb').read().split(b'\\n'):\n"
                        "    record = json.loads(line.decode('utf-8'))\n"
                        "    assert list(record) == ['messages']\n"
                        "    for message in record['messages']:\n"
                        "        assert sorted(message) == ['content', 'role']\n"
                        "    print(*[word for message in record['messages'] for word in\n"
                        "            (message['role'], message['content'].encode().hex() or '-')])\n",
                        bytes);
}

const std::vector<std::string> awkwardTexts{
    "plain",
    "comma, and \"quotes\"",
    "two\nlines, \r\nand a carriage return",
    "\"",
    "👩‍👩‍👧 and 🇩🇪, with a comma",
    "עברית, مرحبا \xE2\x80\x8F(right to left)",
    " blanks at both ends ",
    "back\\slash/slash\ttab",
    "line separator \xE2\x80\xA8 and paragraph separator \xE2\x80\xA9",
};

TEST(ExportData, NoRowsGiveTheHeaderAlone) {
    EXPECT_EQ(ExportData::scoresCSV({}), header);
}

TEST(ExportData, ARowIsWrittenFieldByField) {
    ScoreRow row = makeRow();
    row.binaryJudged = 3;
    row.binaryCorrect = 2;
    row.ratingSum = 15;
    row.ratingCount = 2;
    row.latencySum = 201;
    row.latencyCount = 2;
    row.costSum = 0.5;
    row.costCount = 3;
    row.inputTokens = 1234567;
    row.outputTokens = 89;

    EXPECT_EQ(csvOf(row), "Zun Large,Support / Refunds,3,67,7.50,100,0.166667,1234567,89");
}

TEST(ExportData, WhatIsNotKnownIsAnEmptyField) {
    EXPECT_EQ(csvOf(makeRow()), "Zun Large,Support / Refunds,3,,,,,0,0");
}

TEST(ExportData, RowsStandInTheirOrderWithNoLineEndAfterTheLast) {
    const std::vector rows{makeRow("B", "x"), makeRow("A", "x")};

    EXPECT_EQ(ExportData::scoresCSV(rows), header + "\nB,x,3,,,,,0,0\nA,x,3,,,,,0,0");
}

TEST(ExportData, CommasQuotesAndLineFeedsAreQuoted) {
    EXPECT_EQ(csvOf(makeRow("Zun, Large", "x")), "\"Zun, Large\",x,3,,,,,0,0");
    EXPECT_EQ(csvOf(makeRow("Zun \"Large\"", "x")), "\"Zun \"\"Large\"\"\",x,3,,,,,0,0");
    EXPECT_EQ(csvOf(makeRow("Zun", "x\ny")), "Zun,\"x\ny\",3,,,,,0,0");
    EXPECT_EQ(csvOf(makeRow("Zun", "\"")), "Zun,\"\"\"\",3,,,,,0,0");
}

TEST(ExportData, ACarriageReturnAloneIsNotQuoted) {
    EXPECT_EQ(csvOf(makeRow("Zun\rLarge", "x; y")), "Zun\rLarge,x; y,3,,,,,0,0");
}

// An average is rounded as the digits of its binary value stand: 0.125 lies in the middle, 2.675 below it.
TEST(ExportData, AveragesAreRoundedAsCDoes) {
    ScoreRow row = makeRow("Z", "x");
    row.ratingSum = 1;
    row.ratingCount = 8;
    EXPECT_EQ(csvOf(row), "Z,x,3,,0.12,,,0,0");
    row.ratingSum = 107;
    row.ratingCount = 40;
    EXPECT_EQ(csvOf(row), "Z,x,3,,2.67,,,0,0");
    row.ratingSum = 20;
    row.ratingCount = 2;
    row.costSum = 0.0000004;
    row.costCount = 1;
    EXPECT_EQ(csvOf(row), "Z,x,3,,10.00,,0.000000,0,0");
    row.costSum = 1e300;
    EXPECT_EQ(csvOf(row).size(), std::string("Z,x,3,,10.00,,.000000,0,0").size() + 301);
}

TEST(ExportData, TheDecimalMarkIsAFullStopWhateverTheLocale) {
    const CommaLocale locale;
    ASSERT_TRUE(locale.isSet);
    ScoreRow row = makeRow("Z", "x");
    row.ratingSum = 15;
    row.ratingCount = 2;
    row.answers = 1234567;

    EXPECT_EQ(csvOf(row), "Z,x,1234567,,7.50,,,0,0");
}

TEST(ExportData, AnotherReaderFindsTheSameFieldsInTheCSV) {
    for (const std::string& text : awkwardTexts) {
        const auto fields = readCSVByPython(ExportData::scoresCSV(std::vector{makeRow(text, "in " + text)}));

        ASSERT_EQ(fields.size(), 9u) << text;
        EXPECT_EQ(fields[0], hex(text));
        EXPECT_EQ(fields[1], hex("in " + text));
        EXPECT_EQ(fields[2], hex("3"));
    }
}

TEST(ExportData, AnExampleIsAConversation) {
    DatasetExample example = makeExample();
    example.systemPrompt = "Answer directly.";
    example.prompt = "Up/down?";
    example.completion = "Up.";

    EXPECT_EQ(jsonlOf({example}), R"({"messages":[{"content":"Answer directly.","role":"system"},)"
                                  R"({"content":"Up/down?","role":"user"},)"
                                  R"({"content":"Up.","role":"assistant"}]})");
}

TEST(ExportData, BlanksAreNoSystemInstructionsAndThoseAroundAreKept) {
    DatasetExample example = makeExample();
    example.prompt = "Q";
    example.completion = "A";
    for (const char* blank : {"", "  ", " \n\t\xE2\x80\xA8"}) {
        example.systemPrompt = blank;
        EXPECT_EQ(jsonlOf({example}), R"({"messages":[{"content":"Q","role":"user"},)"
                                      R"({"content":"A","role":"assistant"}]})");
    }

    example.systemPrompt = "  Be brief. \n";
    EXPECT_EQ(jsonlOf({example}), R"({"messages":[{"content":"  Be brief. \n","role":"system"},)"
                                  R"({"content":"Q","role":"user"},{"content":"A","role":"assistant"}]})");
}

TEST(ExportData, NothingButTheTextsOfAnExampleReachesTheFile) {
    DatasetExample plain = makeExample();
    DatasetExample other = plain;
    other.id = UUID::random();
    other.answerID = UUID::random();
    other.kind = QuorlKind::decision;
    other.modelName = "Another model";
    other.rating = 9;
    other.accepted = true;
    other.categoryID = UUID::random();

    EXPECT_EQ(jsonlOf({plain}), jsonlOf({other}));
}

TEST(ExportData, ExamplesStandInTheirOrderWithNoLineEndAfterTheLast) {
    DatasetExample first = makeExample();
    first.prompt = "first";
    DatasetExample second = makeExample();
    second.prompt = "second";

    EXPECT_EQ(jsonlOf({first, second}), jsonlOf({first}) + "\n" + jsonlOf({second}));
}

TEST(ExportData, NoExamplesGiveNoBytes) {
    EXPECT_EQ(jsonlOf({}), "");
}

TEST(ExportData, AnotherReaderFindsTheSameTextsInTheJSON) {
    std::vector<DatasetExample> examples;
    std::vector<std::vector<std::string>> expected;
    for (const std::string& text : awkwardTexts) {
        DatasetExample example = makeExample();
        example.systemPrompt = "system " + text;
        example.prompt = text;
        example.completion = text + std::string("\0\x01\x7F", 3);
        examples.push_back(example);
        expected.push_back({"system", hex(example.systemPrompt), "user", hex(example.prompt), "assistant",
                            hex(example.completion)});
    }

    EXPECT_EQ(readJSONLByPython(jsonlOf(examples)), expected);
}

TEST(ExportData, ATextThatIsNotUTF8FailsTheWholeExport) {
    DatasetExample good = makeExample();
    for (auto text : {&DatasetExample::systemPrompt, &DatasetExample::prompt, &DatasetExample::completion}) {
        DatasetExample bad = makeExample();
        bad.*text = "cut off \xF0\x9F\x91";

        EXPECT_EQ(jsonlOf({good, bad, good}), "failed: Couldn't write the dataset as JSON.");
    }
}

} // namespace
