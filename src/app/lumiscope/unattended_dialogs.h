// Message and input boxes of a run without anyone at the screen (a snapshot
// or a timed run): each is written to standard error and answered as if the
// operator had closed it, so the run never waits.
#pragma once

#include "ui/controls/dialogs.h"

namespace lumiscope_app {

class UnattendedDialogs : public ui::DialogResponder {
public:
    UnattendedDialogs();
    ~UnattendedDialogs() override;
    UnattendedDialogs(const UnattendedDialogs&) = delete;
    UnattendedDialogs& operator=(const UnattendedDialogs&) = delete;

    ui::MsgBoxResult AnswerMessage(const ui::MessageRequest& request) override;
    std::string AnswerInput(const ui::InputRequest& request) override;
    int Shown() const { return shown_; }

private:
    ui::DialogResponder* previous_;
    int shown_ = 0;
};

}  // namespace lumiscope_app
