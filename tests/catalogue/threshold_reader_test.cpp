// Threshold sources: links and table files.
#include <gtest/gtest.h>

#include "catalogue/readers.h"
#include "test_support.h"

namespace catalogue {
namespace {

using catalogue_test::Lines;
using catalogue_test::RecordingWindow;
using catalogue_test::ScratchDir;

struct LinkCall {
    std::string device, property;
    std::size_t count = 0;
    int32_t timeoutMs = 0;
};

TEST(ReadThresholds, LinkOrFileIsDecidedByTheEndingAndTheBracket) {
    struct Case { std::string source; bool link; };
    const Case cases[] = {
        {"DEV[THR]", true}, {"/ORKA/BLM/L[THRESHOLD]", true}, {"thr.csv", false}, {"thr[1].csv", false},
        {"THR[1].CSV", false}, {"thr[1].Csv", false}, {"plain", false}, {"x[", true}, {"[", true},
    };
    for (const Case& c : cases) EXPECT_EQ(IsThresholdLinkSource(c.source), c.link) << c.source;
}

TEST(ReadThresholds, LinkSourceReadsDeviceAndPropertyIntoHigh) {
    Catalogue cat;
    std::vector<LinkCall> calls;
    cat.ThresholdLink = [&](const std::string& device, const std::string& property, std::span<float> values,
                            int32_t timeoutMs) {
        calls.push_back({device, property, values.size(), timeoutMs});
        for (std::size_t i = 0; i < values.size(); ++i) values[i] = static_cast<float>(i) + 0.5f;
        return int16_t{0};
    };
    RecordingWindow window;
    std::vector<float> high(4), low(4, 7.0f);
    EXPECT_EQ(ReadThresholds(cat, window, "DEV[THR]", high, low), kThresholdsByLink);
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].device, "DEV");
    EXPECT_EQ(calls[0].property, "THR");
    EXPECT_EQ(calls[0].count, 4u);
    EXPECT_EQ(calls[0].timeoutMs, 800);
    EXPECT_EQ(high, (std::vector<float>{0.5f, 1.5f, 2.5f, 3.5f}));
    EXPECT_EQ(low, (std::vector<float>(4, 7.0f))) << "a link fills only the upper thresholds";

    // The property runs from the first "[" to the character before the last.
    calls.clear();
    ReadThresholds(cat, window, "/A/B[C[D]]", high, low);
    EXPECT_EQ(calls.at(0).device, "/A/B");
    EXPECT_EQ(calls.at(0).property, "C[D]");
}

TEST(ReadThresholds, FailedLinkEmptiesBothArrays) {
    Catalogue cat;
    cat.ThresholdLink = [](const std::string&, const std::string&, std::span<float>, int32_t) {
        return int16_t{45};
    };
    RecordingWindow window;
    std::vector<float> high(4, 1.0f), low(4, 1.0f);
    EXPECT_EQ(ReadThresholds(cat, window, "DEV[THR]", high, low), kThresholdsFailed);
    EXPECT_EQ(high.size(), 1u);
    EXPECT_EQ(low.size(), 1u);
    EXPECT_TRUE(window.messages.empty());

    Catalogue noMiddleware;
    std::vector<float> h(2, 1.0f), l(2, 1.0f);
    EXPECT_EQ(ReadThresholds(noMiddleware, window, "DEV[THR]", h, l), kThresholdsFailed);
    EXPECT_EQ(h.size(), 1u);
}

TEST(ReadThresholds, FileRowsUpToTheArraySizeAndNotOneMore) {
    ScratchDir dir;
    Catalogue cat;
    cat.ApplicationPath = dir.Path();
    struct Case { int rows; int16_t result; std::vector<std::string> messages; std::size_t sizeAfter; };
    const Case cases[] = {
        {3, kThresholdsFromFile, {}, 3},
        {4, kThresholdsFailed, {"Threshold array out of bounds !"}, 1},
        {1, kThresholdsFromFile, {}, 3},
    };
    for (const Case& c : cases) {
        std::vector<std::string> lines{"DEVICE,LOW,HIGH"};
        for (int i = 0; i < c.rows; ++i)
            lines.push_back("D" + std::to_string(i) + ",-" + std::to_string(i) + "," + std::to_string(10 * (i + 1)));
        dir.Write("thr.csv", Lines(lines));
        RecordingWindow window;
        std::vector<float> high(3, -1.0f), low(3, -1.0f);
        EXPECT_EQ(ReadThresholds(cat, window, "thr.csv", high, low), c.result) << c.rows;
        EXPECT_EQ(window.messages, c.messages) << c.rows;
        EXPECT_EQ(high.size(), c.sizeAfter);
        if (c.result == kThresholdsFromFile) {
            EXPECT_EQ(high[0], 10.0f);
            EXPECT_EQ(low[0], 0.0f);
            EXPECT_EQ(high[2], c.rows == 3 ? 30.0f : -1.0f) << "rows not in the file keep their values";
        }
    }
}

TEST(ReadThresholds, OnlyOneCharacterCommentLinesAreSkipped) {
    ScratchDir dir;
    Catalogue cat;
    cat.ApplicationPath = dir.Path();
    // ";x" is two characters: it is not a comment, so it becomes the header and
    // the real header becomes a data row (read as 0).
    dir.Write("thr.csv", Lines({";x", "HIGH", "5"}));
    RecordingWindow window;
    std::vector<float> high(3, -1.0f), low(3, -1.0f);
    ASSERT_EQ(ReadThresholds(cat, window, "thr.csv", high, low), kThresholdsFromFile);
    EXPECT_EQ(high, (std::vector<float>{-1.0f, -1.0f, -1.0f})) << "no HIGH column in the ';x' header";

    dir.Write("thr.csv", Lines({";", "#", "HIGH", ";x", "5"}));
    ASSERT_EQ(ReadThresholds(cat, window, "thr.csv", high, low), kThresholdsFromFile);
    EXPECT_EQ(high, (std::vector<float>{0.0f, 5.0f, -1.0f})) << "';x' is a data row reading 0";
}

TEST(ReadThresholds, MissingFileKeepsTheArrays) {
    ScratchDir dir;
    Catalogue cat;
    cat.ApplicationPath = dir.Path();
    RecordingWindow window;
    std::vector<float> high(3, 2.0f), low(3, 2.0f);
    EXPECT_EQ(ReadThresholds(cat, window, "none.csv", high, low), kThresholdsFailed);
    EXPECT_EQ(high, (std::vector<float>(3, 2.0f)));
    EXPECT_EQ(low, (std::vector<float>(3, 2.0f)));
    EXPECT_TRUE(window.messages.empty());
}

TEST(ReadThresholds, ShorterLowArrayEndsThroughTheErrorPath) {
    ScratchDir dir;
    Catalogue cat;
    cat.ApplicationPath = dir.Path();
    dir.Write("thr.csv", Lines({"HIGH,LOW", "1,-1", "2,-2"}));
    RecordingWindow window;
    std::vector<float> high(2, 0.0f), low(1, 0.0f);
    EXPECT_EQ(ReadThresholds(cat, window, "thr.csv", high, low), kThresholdsFailed);
    EXPECT_EQ(high[0], 1.0f) << "what was read stays";
    EXPECT_EQ(cat.LastReport.line, 3);
}

TEST(ReadChannelThresholds, SizesTheChannelsArraysByItsElements) {
    ScratchDir dir;
    dir.Write("thr.csv", Lines({"HIGH,LOW", "10,-1", "20,-2", "30,-3"}));
    struct Case { std::string source; int32_t size; int16_t result; std::vector<float> high; std::vector<std::string> messages; };
    const Case cases[] = {
        {"thr.csv", 3, kThresholdsFromFile, {10, 20, 30}, {}},
        {"thr.csv", 5, kThresholdsFromFile, {10, 20, 30, 0, 0}, {}},
        // Fewer elements than rows: the message, and both arrays emptied.
        {"thr.csv", 2, kThresholdsFailed, {0}, {"Threshold array out of bounds !"}},
        {"thr.csv", 0, kThresholdsFailed, {0}, {"Threshold array out of bounds !"}},
        // No source: nothing is read and the arrays stay as the catalogue left them.
        {"", 3, kThresholdsFailed, {7}, {}},
    };
    for (const Case& c : cases) {
        Catalogue cat;
        cat.ApplicationPath = dir.Path();
        SpectrumRecord& channel = cat.SpectrumList[4];
        channel.ThresholdSource = c.source;
        channel.Size = c.size;
        channel.HighThresholds.assign(1, 7.0f);
        RecordingWindow window;
        EXPECT_EQ(ReadChannelThresholds(cat, window, 4), c.result) << c.source << " " << c.size;
        EXPECT_EQ(channel.HighThresholds, c.high) << c.source << " " << c.size;
        EXPECT_EQ(channel.LowThresholds.size(), c.high.size()) << c.source << " " << c.size;
        EXPECT_EQ(window.messages, c.messages) << c.source << " " << c.size;
    }
    Catalogue cat;
    RecordingWindow window;
    EXPECT_THROW(ReadChannelThresholds(cat, window, 101), RuntimeError);
}

}  // namespace
}  // namespace catalogue
