// Threshold sources: links and table files.
#include <gtest/gtest.h>

#include <stdexcept>

#include "catalogue/readers.h"
#include "test_support.h"

namespace catalogue {
namespace {

using namespace catalogue_test;
using Floats = std::vector<float>;

TEST(ReadThresholds, LinkOrFileIsDecidedByTheEndingAndTheBracket) {
    struct Case { std::string source; bool link; };
    const Case cases[] = {{"DEV[THR]", true}, {"thr.csv", false}, {"thr[1].csv", false}, {"THR[1].CSV", false},
                          {"thr[1].Csv", false}, {"plain", false}, {"x[", true}, {"[", true}};
    for (const Case& c : cases) EXPECT_EQ(IsThresholdLinkSource(c.source), c.link) << c.source;
}

TEST(ReadThresholds, ALinkFillsOnlyHighAndAFailedOneEmptiesBoth) {
    enum Hook { Answers, Throws, Missing };
    struct Case { std::string source; int16_t status; Hook hook; int16_t result; std::string call; Floats high, low; };
    const Case cases[] = {
        {"DEV[THR]", 0, Answers, kThresholdsByLink, "DEV|THR|3|800", {0.5f, 1.5f, 2.5f}, {7, 7, 7}},
        // The property runs from the first "[" to the character before the last.
        {"/A/B[C[D]]", 0, Answers, kThresholdsByLink, "/A/B|C[D]|3|800", {0.5f, 1.5f, 2.5f}, {7, 7, 7}},
        {"DEV[THR]", 45, Answers, kThresholdsFailed, "DEV|THR|3|800", {0}, {0}},
        {"DEV[THR]", 0, Throws, kThresholdsFailed, "DEV|THR|3|800", {0}, {0}},
        {"DEV[THR]", 0, Missing, kThresholdsFailed, "", {0}, {0}},
    };
    for (const Case& c : cases) {
        std::string asked;
        Catalogue cat;
        if (c.hook != Missing)
            cat.ThresholdLink = [&](const std::string& device, const std::string& property, std::span<float> values,
                                    int32_t timeoutMs) -> int16_t {
                asked = device + "|" + property + "|" + std::to_string(values.size()) + "|" + std::to_string(timeoutMs);
                for (std::size_t i = 0; i < values.size(); ++i) values[i] = static_cast<float>(i) + 0.5f;
                if (c.hook == Throws) throw std::runtime_error("broken link");
                return c.status;
            };
        RecordingWindow window;
        Floats high(3), low(3, 7.0f);
        EXPECT_EQ(ReadThresholds(cat, window, c.source, high, low), c.result) << c.source;
        EXPECT_EQ(asked, c.call);
        EXPECT_EQ(high, c.high) << c.source << " " << c.status;
        EXPECT_EQ(low, c.low) << c.source << " " << c.status;
        EXPECT_EQ(cat.LastReport.error.empty(), c.result == kThresholdsByLink) << cat.LastReport.error;
        EXPECT_TRUE(window.messages.empty());
    }
}

TEST(ReadThresholds, FileRowsUpToTheArraySizeOnlyOneCharacterCommentsAndTheErrorPath) {
    ScratchDir dir;
    Catalogue cat;
    cat.ApplicationPath = dir.Path();
    const std::vector<std::string> none, outOfBounds{"Threshold array out of bounds !"};
    struct Case { std::vector<std::string> lines; size_t lowSize; int16_t result; std::vector<std::string> messages; Floats high, low; int32_t line; };
    const Case cases[] = {
        {{"DEVICE,LOW,HIGH", "D,-0,10", "D,-1,20", "D,-2,30"}, 3, kThresholdsFromFile, none, {10, 20, 30}, {0, -1, -2}, 0},
        {{"DEVICE,LOW,HIGH", "D,-0,10"}, 3, kThresholdsFromFile, none, {10, -1, -1}, {0, -1, -1}, 0},  // the rest stays
        {{"DEVICE,LOW,HIGH", "D,0,1", "D,0,2", "D,0,3", "D,0,4"}, 3, kThresholdsFailed, outOfBounds, {0}, {0}, 0},
        // ";x" is two characters: the header, and the real header a data row.
        {{";x", "HIGH", "5"}, 3, kThresholdsFromFile, none, {-1, -1, -1}, {-1, -1, -1}, 0},
        {{";", "#", "HIGH", ";x", "5"}, 3, kThresholdsFromFile, none, {0, 5, -1}, {-1, -1, -1}, 0},
        // A shorter low array than high ends the reader through its error path.
        {{"HIGH,LOW", "1,-1", "2,-2"}, 1, kThresholdsFailed, none, {1, 2, -1}, {-1}, 3},
        {{}, 3, kThresholdsFailed, none, {-1, -1, -1}, {-1, -1, -1}, 0},  // no file: the arrays stay
    };
    for (const Case& c : cases) {
        const std::string trace = Lines(c.lines);
        if (!c.lines.empty()) dir.Write("thr.csv", trace);
        RecordingWindow window;
        Floats high(3, -1.0f), low(c.lowSize, -1.0f);
        EXPECT_EQ(ReadThresholds(cat, window, c.lines.empty() ? "none.csv" : "thr.csv", high, low), c.result) << trace;
        EXPECT_EQ(window.messages, c.messages) << trace;
        EXPECT_EQ(high, c.high) << trace;
        EXPECT_EQ(low, c.low) << trace;
        EXPECT_EQ(cat.LastReport.line, c.line) << trace;
    }
}

TEST(ReadChannelThresholds, SizesTheChannelsArraysByItsElementsUpToASpectrum) {
    ScratchDir dir;
    dir.Write("thr.csv", Lines({"HIGH,LOW", "10,-1", "20,-2", "30,-3"}));
    const std::vector<std::string> none, outOfBounds{"Threshold array out of bounds !"};
    struct Case { std::string source; int32_t size; int16_t result; Floats high; std::vector<std::string> messages; };
    const Case cases[] = {
        {"thr.csv", 3, kThresholdsFromFile, {10, 20, 30}, none}, {"thr.csv", 5, kThresholdsFromFile, {10, 20, 30, 0, 0}, none},
        {"thr.csv", 2, kThresholdsFailed, {0}, outOfBounds}, {"thr.csv", 0, kThresholdsFailed, {0}, outOfBounds},
        // No source, or more elements than a spectrum holds: nothing is read or sized.
        {"", 3, kThresholdsFailed, {7}, none}, {"thr.csv", 8001, kThresholdsFailed, {7}, none},
        {"thr.csv", 2147483647, kThresholdsFailed, {7}, none},
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
}

}  // namespace
}  // namespace catalogue
