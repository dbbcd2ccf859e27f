#include "unattended_dialogs.h"

#include <cstdio>

namespace lumiscope_app {

UnattendedDialogs::UnattendedDialogs() : previous_(ui::SetDialogResponder(this)) {}

UnattendedDialogs::~UnattendedDialogs() { ui::SetDialogResponder(previous_); }

ui::MsgBoxResult UnattendedDialogs::AnswerMessage(const ui::MessageRequest& request) {
    ++shown_;
    std::fprintf(stderr, "lumiscope: message%s%s: %s\n", request.title.empty() ? "" : " ",
                 request.title.c_str(), request.text.c_str());
    return ui::ClosedAnswer(request.buttons);
}

std::string UnattendedDialogs::AnswerInput(const ui::InputRequest& request) {
    ++shown_;
    std::fprintf(stderr, "lumiscope: input box (cancelled): %s\n", request.prompt.c_str());
    return std::string();
}

}  // namespace lumiscope_app
