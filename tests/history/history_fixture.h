// The sample configuration's simulated accelerator behind a transport that
// records every call, and an operator who answers from a script.
#pragma once

#include <sstream>

#include "fake_live_transport.h"
#include "history/questions.h"
#include "sim_fixture.h"

namespace history_test {

class HistoryTest : public sim_test::SimTest {
protected:
    void SetUp() override {
        SimTest::SetUp();
        recorder->call = [this](const std::string& d, const std::string& p, vire::DataObject& out, const vire::DataObject& in, int16_t a, int32_t ms) {
            outBytes.push_back(out.buffer.size());
            return accelerator->Call(d, p, out, in, a, ms);
        };
        vire::SetTransport(recorder);
    }
    void Fault(const std::string& target, const std::string& text) {
        sim::Fault fault;
        ASSERT_TRUE(sim::ParseFault(text, fault)) << text;
        accelerator->SetFault(target, fault);
    }
    // Word n of every recorded call, blank-separated (0 device, 1 property, 2 count asked, 5 time-out).
    std::string Words(int n) const {
        std::string words, word;
        for (const auto& call : recorder->calls) {
            std::istringstream in(call);
            for (int i = 0; i <= n; ++i) in >> word;
            words += (words.empty() ? "" : " ") + word;
        }
        return words;
    }
    std::vector<size_t> outBytes;  // buffer size of each call's output
    std::shared_ptr<test_support::FakeLiveTransport> recorder = std::make_shared<test_support::FakeLiveTransport>();
};

// Answers "A"bort, "R"etry, "I"gnore, "C"ancel in the script's order and keeps the texts asked.
struct ScriptedQuestions : history::Questions {
    explicit ScriptedQuestions(std::string answers) : script(std::move(answers)) {}
    history::Answer AbortRetryIgnore(const std::string& text) override { return RetryCancel(text); }
    void Tell(const std::string& text) override { texts.push_back(text); }
    history::Answer RetryCancel(const std::string& text) override {
        texts.push_back(text);
        EXPECT_LE(texts.size(), script.size()) << "unexpected question: " << text;
        const char c = texts.size() <= script.size() ? script[texts.size() - 1] : 'A';
        return c == 'R' ? history::Answer::Retry : c == 'I' ? history::Answer::Ignore : c == 'C' ? history::Answer::Cancel : history::Answer::Abort;
    }
    std::string script;
    std::vector<std::string> texts;
};

}  // namespace history_test
