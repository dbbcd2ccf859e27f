// The questions a retrieval asks the operator when a server does not answer.
// The window answers them with message boxes, a test with a script.
#pragma once

#include <string>

namespace history {

enum class Answer { OK, Cancel, Abort, Retry, Ignore };

class Questions {
public:
    virtual ~Questions() = default;
    virtual Answer AbortRetryIgnore(const std::string& text) = 0;
    virtual Answer RetryCancel(const std::string& text) = 0;
    virtual void Tell(const std::string& text) = 0;  // OK only
};

}  // namespace history
