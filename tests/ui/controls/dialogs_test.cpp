// The dialog seam: the test responder's records and answers, the real Qt
// boxes behind it, and yielding to the event loop.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QInputDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <functional>

#include "ui/controls/dialogs.h"
#include "ui/controls/event_loop.h"
#include "ui/controls/scoped_dialog_responder.h"

namespace ui {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using B = MsgBoxButtons;
using R = MsgBoxResult;

TEST(ScopedDialogResponder, RecordsEveryBoxInOrderAndAnswersFromTheQueue) {
    ScopedDialogResponder boxes;
    boxes.Answer(R::OK).Answer(R::Retry).Input("0.75").CancelInput().Answer(R::Cancel);
    EXPECT_EQ(MsgBox("PROBLEMS!   Server not found"), R::OK);
    EXPECT_EQ(MsgBox("Error Reading History Data: timeout", B::AbortRetryIgnore), R::Retry);
    EXPECT_EQ(InputBox("Modify displayed threshold of BPM07", "Change Threshold", "1.5"), "0.75");
    EXPECT_EQ(InputBox("Modify displayed threshold of BPM08", "Change Threshold", "2"), "");
    EXPECT_EQ(MsgBox("Vertical Zooms will be lost! Sorry!", B::OKCancel, MsgBoxIcon::None, "Switching Scaling Modes"), R::Cancel);
    std::vector<std::string> seen;  // kind, text, title, buttons, default and answers of each record
    for (const DialogRecord& r : boxes.Records())
        seen.push_back(std::to_string(static_cast<int>(r.kind)) + "|" + r.text + "|" + r.title + "|" +
                       std::to_string(static_cast<int>(r.buttons)) + "|" + r.defaultText + "|" +
                       std::to_string(static_cast<int>(r.result)) + "|" + r.input);
    EXPECT_THAT(seen, ElementsAre("0|PROBLEMS!   Server not found||0||1|", "0|Error Reading History Data: timeout||2||4|",
                                  "1|Modify displayed threshold of BPM07|Change Threshold|0|1.5|1|0.75",
                                  "1|Modify displayed threshold of BPM08|Change Threshold|0|2|1|",
                                  "0|Vertical Zooms will be lost! Sorry!|Switching Scaling Modes|1||2|"));
    EXPECT_THAT(boxes.Problems(), IsEmpty());
}

TEST(ScopedDialogResponder, MissingOrUnfitAnswersCloseTheBoxAndAreReported) {
    struct Case { std::function<void(ScopedDialogResponder&)> queue; std::function<std::string()> show;
                  std::string answer, problem; };
    auto none = [](ScopedDialogResponder&) {};
    auto box = [](B buttons) { return [buttons] { return std::to_string(static_cast<int>(MsgBox("box", buttons))); }; };
    auto input = [] { return InputBox("prompt", "", "12"); };
    const Case cases[] = {
        {none, box(B::OK), "1", "no answer queued for \"box\""},
        {none, box(B::OKCancel), "2", "no answer queued for \"box\""},
        {none, box(B::AbortRetryIgnore), "3", "no answer queued for \"box\""},
        {[](auto& r) { r.Answer(R::Retry); }, box(B::OK), "1", "the answer Retry is not a button of \"box\""},
        {[](auto& r) { r.Input("7"); }, box(B::OKCancel), "2", "an input answer was queued for the message \"box\""},
        {none, input, "", "no answer queued for \"prompt\""},
        {[](auto& r) { r.Answer(R::OK); }, input, "", "a button answer was queued for the input \"prompt\""},
    };
    for (const Case& c : cases) {
        ScopedDialogResponder boxes;
        c.queue(boxes);
        EXPECT_EQ(c.show(), c.answer) << c.problem;
        EXPECT_THAT(boxes.Problems(), ElementsAre(c.problem));
        EXPECT_EQ(boxes.PendingAnswers(), 0u) << c.problem;  // an unfit answer is used up
    }
}

TEST(ScopedDialogResponder, BoxesOpenedWhileOneIsOpenAnswerFirstAndScopesNest) {
    ScopedDialogResponder outer;
    outer.Answer(R::OK).Answer(R::Abort);
    std::vector<std::string> order;
    outer.WhileOpen([&](const DialogRecord& shown) {
        order.push_back("open " + shown.text);
        // Live data arriving under the first box raise a second one.
        if (shown.text == "outer") order.push_back("inner " + std::to_string(static_cast<int>(MsgBox("inner"))));
    });
    EXPECT_EQ(MsgBox("outer", B::AbortRetryIgnore), R::Abort);
    EXPECT_THAT(order, ElementsAre("open outer", "open inner", "inner 1"));
    EXPECT_THAT(outer.Texts(), ElementsAre("outer", "inner"));
    EXPECT_EQ(outer.Records()[1].result, R::OK);
    {
        ScopedDialogResponder inner;
        inner.Answer(R::Cancel);
        EXPECT_EQ(MsgBox("nested", B::OKCancel), R::Cancel);
    }
    EXPECT_EQ(CurrentDialogResponder(), &outer);
    EXPECT_THAT(outer.Texts(), ElementsAre("outer", "inner"));
}

// Runs `act` on the modal dialog once the dialog's own event loop has it open.
void WhenModalOpens(std::function<void(QWidget*)> act) {
    auto* poll = new QTimer(qApp);
    QObject::connect(poll, &QTimer::timeout, [poll, act = std::move(act)] {
        if (QWidget* modal = QApplication::activeModalWidget()) {
            poll->stop();
            poll->deleteLater();
            act(modal);
        }
    });
    poll->start(0);
}

TEST(RealDialogs, BoxesShowTextAsWrittenAndReturnTheButtonClickedOrTheTextTyped) {
    using Q = QMessageBox;
    struct Case { B buttons; Q::StandardButtons shown; Q::StandardButton click; R result; };  // NoButton: Escape
    const Case cases[] = {
        {B::OK, Q::Ok, Q::NoButton, R::OK},
        {B::OKCancel, Q::Ok | Q::Cancel, Q::NoButton, R::Cancel},
        {B::AbortRetryIgnore, Q::Abort | Q::Retry | Q::Ignore, Q::Ignore, R::Ignore},
        {B::AbortRetryIgnore, Q::Abort | Q::Retry | Q::Ignore, Q::NoButton, R::Abort},
        {B::RetryCancel, Q::Retry | Q::Cancel, Q::Retry, R::Retry},
    };
    for (const Case& c : cases) {
        WhenModalOpens([&](QWidget* modal) {
            auto* box = qobject_cast<QMessageBox*>(modal);
            if (box == nullptr) return modal->close(), void();
            EXPECT_EQ((box->text() + "|" + box->windowTitle()).toStdString(), "PROBLEMS!   <b>x</b>|");
            EXPECT_EQ(std::tuple(box->standardButtons(), box->icon(), box->textFormat()),  // never read as markup
                      std::tuple(c.shown, Q::Warning, Qt::PlainText));
            c.click == Q::NoButton ? QTest::keyClick(box, Qt::Key_Escape) : box->button(c.click)->click();
        });
        EXPECT_EQ(MsgBox("PROBLEMS!   <b>x</b>", c.buttons, MsgBoxIcon::Exclamation), c.result) << c.click;
    }
    const std::tuple<bool, QString, std::string> inputs[] = {{true, "", ""}, {false, "3.25", ""}, {true, " 7 ", " 7 "}};
    for (const auto& [accept, typed, result] : inputs) {
        std::string seen;
        WhenModalOpens([&, accept = accept, typed = typed](QWidget* modal) {
            auto* dialog = qobject_cast<QInputDialog*>(modal);
            if (dialog == nullptr) return modal->close(), void();
            seen = (dialog->labelText() + "|" + dialog->windowTitle() + "|" + dialog->textValue()).toStdString();
            dialog->setTextValue(typed);
            accept ? dialog->accept() : dialog->reject();
        });
        EXPECT_EQ(InputBox("Modify displayed threshold of BPM07", "Change Threshold", "1.5"), result);
        EXPECT_EQ(seen, "Modify displayed threshold of BPM07|Change Threshold|1.5");
    }
}

TEST(YieldToEventLoop, RunsWaitingEventsBeforeItReturns) {
    std::vector<std::string> order;
    QMetaObject::invokeMethod(qApp, [&] { order.push_back("data received"); }, Qt::QueuedConnection);
    order.push_back("handler starts");
    YieldToEventLoop();
    order.push_back("handler goes on");
    EXPECT_THAT(order, ElementsAre("handler starts", "data received", "handler goes on"));
}

}  // namespace
}  // namespace ui
