#include "history/history_spectrum.h"

#include <cstring>

#include "history_fixture.h"

namespace {

using history_test::HistoryTest;

TEST_F(HistoryTest, HistorySpectraComeFromEachPartsSourceAndStopAtAFailedReadOr8000Points) {
    // parts: of 32 elements, "L" from the local history, "A" preferring the archive, "-" without a local history.
    struct Case { const char* parts; int32_t size; const char* fault; bool read; const char* sources; size_t points; std::vector<std::string> told; };
    const Case cases[] = {{"LL", 32, "", true, "History History ", 64, {}}, {"LA-", 32, "", true, "History Archiver Archiver ", 96, {}},
                          {"AL", 32, "down", false, "Archiver ", 32, {"GetArchivedTraceData : link error: server not reachable"}},
                          {"LLL", 4000, "", true, "History History History ", 8000, {"Array larger than 8000 Points"}}};
    for (const Case& c : cases) {
        catalogue::SpectrumTable list;
        for (int k = 0; c.parts[k]; ++k) {  // from index 10 on
            const std::string q = "Q" + std::to_string(k + 1);
            std::tie(list[10 + k].Tag, list[10 + k].HstServer, list[10 + k].HstProperty, list[10 + k].ArcServer, list[10 + k].ArcProperty,
                     list[10 + k].Size, list[10 + k].UseArchive) = std::make_tuple("/" + q, c.parts[k] == '-' ? "" : "/ORKA/BPMHIST",
                     "ORBIT.X." + q + ".HIST", "/ORKA/OKHISTORY", "ORBIT.X." + q, c.size, c.parts[k] == 'A');
        }
        if (*c.fault) Fault("/ORKA/BPMHIST", c.fault);
        history_test::ScriptedQuestions questions("C");  // cancels a failed read
        history::HistorySpectrum trace;
        const bool read = history::LoadHistorySpectrum(list, 10, static_cast<int16_t>(std::strlen(c.parts)), sim_test::kNowS - 60, questions, trace);
        std::string seen;
        for (const auto& s : trace.sources) seen += s + " ";
        EXPECT_EQ(seen + std::to_string(trace.values.size()) + " " + trace.labels.at(31), c.sources + std::to_string(c.points) + " /Q1#31") << c.parts;
        EXPECT_TRUE(read == c.read && trace.labels.size() == c.points && list[10].Values.size() == static_cast<size_t>(c.size)) << c.parts;
        std::erase_if(questions.texts, [](const std::string& t) { return t.starts_with("Error Reading"); });
        EXPECT_EQ(questions.texts, c.told) << c.parts;
        accelerator->ClearFault("/ORKA/BPMHIST");
    }
}

}  // namespace
