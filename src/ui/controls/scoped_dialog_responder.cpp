#include "ui/controls/scoped_dialog_responder.h"

namespace ui {
namespace {

const char* ResultName(MsgBoxResult result) {
    switch (result) {
        case MsgBoxResult::OK: return "OK";
        case MsgBoxResult::Cancel: return "Cancel";
        case MsgBoxResult::Abort: return "Abort";
        case MsgBoxResult::Retry: return "Retry";
        case MsgBoxResult::Ignore: return "Ignore";
    }
    return "?";
}

}  // namespace

ScopedDialogResponder::ScopedDialogResponder() : previous_(SetDialogResponder(this)) {}

ScopedDialogResponder::~ScopedDialogResponder() { SetDialogResponder(previous_); }

ScopedDialogResponder& ScopedDialogResponder::Answer(MsgBoxResult result) {
    answers_.emplace_back(result);
    return *this;
}

ScopedDialogResponder& ScopedDialogResponder::Input(const std::string& text) {
    answers_.emplace_back(text);
    return *this;
}

std::vector<std::string> ScopedDialogResponder::Texts() const {
    std::vector<std::string> texts;
    texts.reserve(records_.size());
    for (const DialogRecord& record : records_) texts.push_back(record.text);
    return texts;
}

bool ScopedDialogResponder::TakeAnswer(QueuedAnswer& answer, const std::string& text) {
    if (answers_.empty()) {
        problems_.push_back("no answer queued for \"" + text + "\"");
        return false;
    }
    answer = std::move(answers_.front());
    answers_.pop_front();
    return true;
}

void ScopedDialogResponder::Open(DialogRecord record) {
    records_.push_back(std::move(record));
    // A copy: the action may open further boxes, which grows records_.
    const DialogRecord shown = records_.back();
    if (whileOpen_) whileOpen_(shown);
}

MsgBoxResult ScopedDialogResponder::AnswerMessage(const MessageRequest& request) {
    DialogRecord record;
    record.kind = DialogRecord::Kind::Message;
    record.text = request.text;
    record.title = request.title;
    record.buttons = request.buttons;
    record.icon = request.icon;
    const size_t index = records_.size();
    Open(std::move(record));

    MsgBoxResult result = ClosedAnswer(request.buttons);
    QueuedAnswer answer;
    if (TakeAnswer(answer, request.text)) {
        if (const auto* chosen = std::get_if<MsgBoxResult>(&answer); chosen == nullptr) {
            problems_.push_back("an input answer was queued for the message \"" + request.text + "\"");
        } else if (!Offers(request.buttons, *chosen)) {
            problems_.push_back(std::string("the answer ") + ResultName(*chosen) +
                                " is not a button of \"" + request.text + "\"");
        } else {
            result = *chosen;
        }
    }
    records_[index].result = result;
    return result;
}

std::string ScopedDialogResponder::AnswerInput(const InputRequest& request) {
    DialogRecord record;
    record.kind = DialogRecord::Kind::Input;
    record.text = request.prompt;
    record.title = request.title;
    record.defaultText = request.defaultText;
    const size_t index = records_.size();
    Open(std::move(record));

    std::string text;
    QueuedAnswer answer;
    if (TakeAnswer(answer, request.prompt)) {
        if (auto* entered = std::get_if<std::string>(&answer); entered == nullptr)
            problems_.push_back("a button answer was queued for the input \"" + request.prompt + "\"");
        else
            text = std::move(*entered);
    }
    records_[index].input = text;
    return text;
}

}  // namespace ui
