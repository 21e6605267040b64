#include "transports/LoginBuffer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <latch>
#include <thread>
#include <vector>

namespace quorl::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Links = LoginBuffer::Links;

struct LoginBufferTest : testing::Test {
    std::vector<std::string> opened;
    LoginBuffer buffer{[this](const std::string& url) { opened.push_back(url); }};
};

std::string redacted(const std::string& text) {
    LoginBuffer buffer([](const std::string&) {});
    buffer.append(text, Links::open);
    return buffer.redacted();
}

TEST_F(LoginBufferTest, OnlyTheFirstURLIsOpened) {
    buffer.append("Go to https://one.example/a?b=c#d or https://two.example\n", Links::open);
    buffer.append("https://three.example\n", Links::open);

    EXPECT_THAT(opened, ElementsAre("https://one.example/a?b=c#d"));
}

TEST_F(LoginBufferTest, AURLEndsAtWhiteSpaceOrAQuote) {
    const auto openedOf = [](const std::string& text) {
        std::string url;
        LoginBuffer fresh([&](const std::string& given) { url = given; });
        fresh.append(text, Links::open);
        return url;
    };
    EXPECT_EQ(openedOf("\"https://a.example/x\" y"), "https://a.example/x");
    EXPECT_EQ(openedOf("https://a.example/x\ty"), "https://a.example/x");
    EXPECT_EQ(openedOf("https://a.example/x\r\ny"), "https://a.example/x");
    EXPECT_EQ(openedOf("https://a.example/x\u00A0y"), "https://a.example/x");
    EXPECT_EQ(openedOf("https://a.example/x\u2028y"), "https://a.example/x");
    EXPECT_EQ(openedOf("https://a.example/x"), "https://a.example/x");
    EXPECT_EQ(openedOf("see:https://a.example/x'y"), "https://a.example/x'y");
}

TEST_F(LoginBufferTest, AURLIsOpenedAsFarAsItHasArrived) {
    buffer.append("https://one.exam", Links::open);
    buffer.append("ple/path\n", Links::open);

    EXPECT_THAT(opened, ElementsAre("https://one.exam"));
}

TEST_F(LoginBufferTest, AURLThatArrivesInPiecesIsFound) {
    buffer.append("Go to htt", Links::open);
    buffer.append("ps://one.example\n", Links::open);

    EXPECT_THAT(opened, ElementsAre("https://one.example"));
}

TEST_F(LoginBufferTest, WhatDoesNotParseIsNotOpened) {
    buffer.append("http://one.example ", Links::open);
    buffer.append("https://", Links::open);
    EXPECT_THAT(opened, IsEmpty());

    // Nothing was opened, so the rest completes it.
    buffer.append("two.example ", Links::open);
    EXPECT_THAT(opened, ElementsAre("https://two.example"));
}

TEST_F(LoginBufferTest, LinksThatAreToBeLeftAreLeft) {
    buffer.append("https://one.example ", Links::leave);
    EXPECT_THAT(opened, IsEmpty());

    buffer.append("more", Links::open);
    EXPECT_THAT(opened, ElementsAre("https://one.example"));
}

TEST_F(LoginBufferTest, AChunkThatIsEmptyOrNotUTF8IsIgnored) {
    buffer.append("", Links::open);
    buffer.append("a\xff https://one.example ", Links::open);
    EXPECT_EQ(buffer.redacted(), "");
    EXPECT_THAT(opened, IsEmpty());

    buffer.append("fine", Links::open);
    EXPECT_EQ(buffer.redacted(), "fine");
}

TEST_F(LoginBufferTest, RacingStreamsOpenOneURL) {
    // So long that every stream is at its end before the first has found that.
    const std::string url = "https://one.example/" + std::string(20'000, 'x');
    for (int round = 0; round < 10; ++round) {
        std::atomic<int> count = 0;
        LoginBuffer shared([&](const std::string&) { ++count; });
        std::latch start(4);
        std::vector<std::thread> streams;
        for (int stream = 0; stream < 4; ++stream) {
            streams.emplace_back([&] {
                start.arrive_and_wait();
                shared.append(url + '\n', Links::open);
            });
        }
        for (std::thread& stream : streams)
            stream.join();
        EXPECT_EQ(count, 1);
    }
}

TEST(LoginBufferRedacted, RemovesEveryURLUpToWhiteSpaceOrAQuote) {
    EXPECT_EQ(redacted(" Visit https://a.example/secret?x=1 or \"https://b.example\" now.\n"),
              "Visit  or \"\" now.");
    EXPECT_EQ(redacted("https://a.example"), "");
    EXPECT_EQ(redacted("https://"), "");
    EXPECT_EQ(redacted("x https://a.example\u00A0y https://b.example\u2029z"), "x \u00A0y \u2029z");
    EXPECT_EQ(redacted("https://a.examplehttps://b.example c"), "c");
    EXPECT_EQ(redacted("http://plain.example stays"), "http://plain.example stays");
}

TEST(LoginBufferRedacted, AURLBehindACombiningCharacterIsRemovedToo) {
    EXPECT_EQ(redacted("a \u0600https://secret.example b"), "a \u0600 b");
}

TEST(LoginBufferRedacted, KeepsThreeHundredCharacters) {
    EXPECT_EQ(redacted(std::string(301, 'x')), std::string(300, 'x'));
    EXPECT_EQ(redacted(std::string(300, 'x')), std::string(300, 'x'));

    std::string accented;
    for (int count = 0; count < 300; ++count)
        accented += "e\u0301";
    EXPECT_EQ(redacted(" https://a.example " + accented + "yz"), accented);
}

} // namespace
} // namespace quorl::test
