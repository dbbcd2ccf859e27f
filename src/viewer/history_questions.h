// The history retrieval's questions, asked with the window's message boxes
// (and so answered by a test's dialog responder where one is installed).
#pragma once

#include "history/questions.h"

namespace viewer {

class MessageBoxQuestions : public history::Questions {
public:
    history::Answer AbortRetryIgnore(const std::string& text) override;
    history::Answer RetryCancel(const std::string& text) override;
    void Tell(const std::string& text) override;
};

}  // namespace viewer
