#include "viewer/history_questions.h"

#include "ui/controls/dialogs.h"

namespace viewer {

namespace {

history::Answer Translated(ui::MsgBoxResult result) {
    switch (result) {
        case ui::MsgBoxResult::OK: return history::Answer::OK;
        case ui::MsgBoxResult::Cancel: return history::Answer::Cancel;
        case ui::MsgBoxResult::Abort: return history::Answer::Abort;
        case ui::MsgBoxResult::Retry: return history::Answer::Retry;
        case ui::MsgBoxResult::Ignore: return history::Answer::Ignore;
    }
    return history::Answer::Cancel;
}

}  // namespace

history::Answer MessageBoxQuestions::AbortRetryIgnore(const std::string& text) {
    return Translated(ui::MsgBox(text, ui::MsgBoxButtons::AbortRetryIgnore));
}

history::Answer MessageBoxQuestions::RetryCancel(const std::string& text) {
    return Translated(ui::MsgBox(text, ui::MsgBoxButtons::RetryCancel));
}

void MessageBoxQuestions::Tell(const std::string& text) { ui::MsgBox(text); }

}  // namespace viewer
