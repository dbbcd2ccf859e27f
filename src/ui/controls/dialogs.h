// Message boxes and input boxes of the window logic, through one seam: the
// real Qt dialogs, or, while a test has installed a DialogResponder, the
// responder's answers.
#pragma once

#include <string>

namespace ui {

// The values are the button and icon codes the window logic passes around.
enum class MsgBoxButtons { OK = 0, OKCancel = 1, AbortRetryIgnore = 2, RetryCancel = 5 };
enum class MsgBoxIcon { None = 0, Critical = 16, Question = 32, Exclamation = 48, Information = 64 };
enum class MsgBoxResult { OK = 1, Cancel = 2, Abort = 3, Retry = 4, Ignore = 5 };

struct MessageRequest {
    std::string text;
    MsgBoxButtons buttons = MsgBoxButtons::OK;
    MsgBoxIcon icon = MsgBoxIcon::None;
    std::string title;  // empty: the box shows no title
};

struct InputRequest {
    std::string prompt;
    std::string title;
    std::string defaultText;
};

// Whether `result` is one of the buttons a box with `buttons` offers.
bool Offers(MsgBoxButtons buttons, MsgBoxResult result);
// The answer of a box closed without choosing (the window's close button or
// Escape): Cancel where there is one, Abort for Abort/Retry/Ignore, else OK.
MsgBoxResult ClosedAnswer(MsgBoxButtons buttons);

// Shows a modal message box and returns the button chosen. The box's event
// loop runs while it is open, so other handlers (live data) may run meanwhile.
MsgBoxResult MsgBox(const std::string& text, MsgBoxButtons buttons = MsgBoxButtons::OK,
                    MsgBoxIcon icon = MsgBoxIcon::None, const std::string& title = std::string());

// Shows a modal input box; returns the text entered, or "" on Cancel.
std::string InputBox(const std::string& prompt, const std::string& title = std::string(),
                     const std::string& defaultText = std::string());

// Answers the dialogs instead of the user. Installed with SetDialogResponder
// (or ScopedDialogResponder); the caller keeps ownership.
class DialogResponder {
public:
    virtual ~DialogResponder() = default;
    virtual MsgBoxResult AnswerMessage(const MessageRequest& request) = 0;
    virtual std::string AnswerInput(const InputRequest& request) = 0;
};

// Installs a responder (nullptr: real dialogs again); returns the one before.
DialogResponder* SetDialogResponder(DialogResponder* responder);
DialogResponder* CurrentDialogResponder();

}  // namespace ui
