// A DialogResponder for tests: answers the window's message and input boxes
// from a queue, in order, and records every box it was shown.
//
//     ui::ScopedDialogResponder boxes;
//     boxes.Answer(ui::MsgBoxResult::Retry).Answer(ui::MsgBoxResult::Abort);
//     ... run the handler ...
//     EXPECT_EQ(boxes.Texts(), (std::vector<std::string>{"Error ...", "Error ..."}));
//     EXPECT_THAT(boxes.Problems(), IsEmpty());
//
// Answers are taken in the order the boxes close: a box opened while another
// is open (from WhileOpen) closes, and takes its answer, first.
//
// A box that finds no queued answer, or an answer of the other kind or one
// its buttons do not offer, is answered as if the user had closed it (see
// ClosedAnswer; "" for an input box) and listed in Problems(), so that a
// retry loop under test ends instead of spinning.
#pragma once

#include <deque>
#include <functional>
#include <string>
#include <variant>
#include <vector>

#include "ui/controls/dialogs.h"

namespace ui {

struct DialogRecord {
    enum class Kind { Message, Input };
    Kind kind = Kind::Message;
    std::string text;  // the message text or the input prompt
    std::string title;
    MsgBoxButtons buttons = MsgBoxButtons::OK;  // message boxes
    MsgBoxIcon icon = MsgBoxIcon::None;         // message boxes
    std::string defaultText;                    // input boxes
    MsgBoxResult result = MsgBoxResult::OK;     // what a message box answered
    std::string input;                          // what an input box answered
};

class ScopedDialogResponder : public DialogResponder {
public:
    ScopedDialogResponder();
    ~ScopedDialogResponder() override;
    ScopedDialogResponder(const ScopedDialogResponder&) = delete;
    ScopedDialogResponder& operator=(const ScopedDialogResponder&) = delete;

    // Queue the next answers, message and input answers in one queue.
    ScopedDialogResponder& Answer(MsgBoxResult result);
    ScopedDialogResponder& Input(const std::string& text);
    ScopedDialogResponder& CancelInput() { return Input(std::string()); }

    // Runs while each box is "open" (after it is recorded, before it answers),
    // as the event loop of a real box would run other handlers.
    void WhileOpen(std::function<void(const DialogRecord&)> action) { whileOpen_ = std::move(action); }

    const std::vector<DialogRecord>& Records() const { return records_; }
    // The message texts and input prompts, in order.
    std::vector<std::string> Texts() const;
    const std::vector<std::string>& Problems() const { return problems_; }
    size_t PendingAnswers() const { return answers_.size(); }

    MsgBoxResult AnswerMessage(const MessageRequest& request) override;
    std::string AnswerInput(const InputRequest& request) override;

private:
    using QueuedAnswer = std::variant<MsgBoxResult, std::string>;
    bool TakeAnswer(QueuedAnswer& answer, const std::string& text);
    void Open(DialogRecord record);

    std::deque<QueuedAnswer> answers_;
    std::vector<DialogRecord> records_;
    std::vector<std::string> problems_;
    std::function<void(const DialogRecord&)> whileOpen_;
    DialogResponder* previous_;
};

}  // namespace ui
