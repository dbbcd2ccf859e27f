// The sample configuration's simulated accelerator behind a transport that
// records every call, and an operator who answers from a script.
#pragma once

#include <deque>
#include <sstream>

#include "fake_live_transport.h"
#include "history/questions.h"
#include "sim_fixture.h"

namespace history_test {

class HistoryTest : public sim_test::SimTest {
protected:
    void SetUp() override {
        SimTest::SetUp();
        recorder->call = [this](const std::string& d, const std::string& p, vire::DataObject& out,
                                const vire::DataObject& in, int16_t access, int32_t timeoutMs) {
            outBytes.push_back(out.buffer.size());
            return accelerator->Call(d, p, out, in, access, timeoutMs);
        };
        vire::SetTransport(recorder);
    }
    void Fault(const std::string& target, const std::string& text) {
        sim::Fault fault;
        ASSERT_TRUE(sim::ParseFault(text, fault)) << text;
        accelerator->SetFault(target, fault);
    }
    std::vector<size_t> outBytes;  // buffer size of each call's output
    std::shared_ptr<test_support::FakeLiveTransport> recorder = std::make_shared<test_support::FakeLiveTransport>();
};

// Word n (from 0) of a recorded call: 0 device, 1 property, 2 count asked,
// 3 format, 4 access, 5 time-out, 6 input bytes.
inline std::string Word(const std::string& call, int n) {
    std::istringstream words(call);
    std::string word;
    for (int i = 0; i <= n; ++i) words >> word;
    return word;
}

class ScriptedQuestions : public history::Questions {
public:
    explicit ScriptedQuestions(const std::string& script) {
        for (char c : script)
            answers.push_back(c == 'A' ? history::Answer::Abort : c == 'R' ? history::Answer::Retry : history::Answer::Ignore);
    }
    history::Answer AbortRetryIgnore(const std::string& text) override { return Next(text); }
    history::Answer RetryCancel(const std::string& text) override { return Next(text); }
    void Tell(const std::string& text) override { texts.push_back(text); }
    std::deque<history::Answer> answers;
    std::vector<std::string> texts;

private:
    history::Answer Next(const std::string& text) {
        texts.push_back(text);
        if (answers.empty()) ADD_FAILURE() << "unexpected question: " << text;
        if (answers.empty()) return history::Answer::Abort;
        const history::Answer answer = answers.front();
        answers.pop_front();
        return answer;
    }
};

}  // namespace history_test
