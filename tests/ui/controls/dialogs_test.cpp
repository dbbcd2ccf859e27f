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

TEST(MsgBoxButtons, OfferTheirOwnButtonsAndCloseToCancelOrAbort) {
    struct Case { B buttons; std::vector<R> offered; R closed; };
    const Case cases[] = {
        {B::OK, {R::OK}, R::OK},
        {B::OKCancel, {R::OK, R::Cancel}, R::Cancel},
        {B::AbortRetryIgnore, {R::Abort, R::Retry, R::Ignore}, R::Abort},
        {B::RetryCancel, {R::Retry, R::Cancel}, R::Cancel},
    };
    for (const Case& c : cases) {
        for (R result : {R::OK, R::Cancel, R::Abort, R::Retry, R::Ignore}) {
            const bool offered =
                std::find(c.offered.begin(), c.offered.end(), result) != c.offered.end();
            EXPECT_EQ(Offers(c.buttons, result), offered)
                << static_cast<int>(c.buttons) << " " << static_cast<int>(result);
        }
        EXPECT_EQ(ClosedAnswer(c.buttons), c.closed) << static_cast<int>(c.buttons);
    }
    EXPECT_FALSE(Offers(static_cast<B>(3), R::OK));  // a code no box has
}

TEST(ScopedDialogResponder, RecordsEveryBoxInOrderAndAnswersFromTheQueue) {
    ScopedDialogResponder boxes;
    boxes.Answer(R::OK).Answer(R::Retry).Answer(R::Ignore).Input("0.75").CancelInput().Answer(R::Cancel);

    EXPECT_EQ(MsgBox("PROBLEMS!   Server not found"), R::OK);
    EXPECT_EQ(MsgBox("Error Reading History Data: timeout", B::AbortRetryIgnore), R::Retry);
    EXPECT_EQ(MsgBox("Error Reading History Data: timeout", B::AbortRetryIgnore), R::Ignore);
    EXPECT_EQ(InputBox("Modify displayed threshold of BPM07", "Change Threshold", "1.5"), "0.75");
    EXPECT_EQ(InputBox("Modify displayed threshold of BPM08", "Change Threshold", "2"), "");
    EXPECT_EQ(MsgBox("Vertical Zooms will be lost! Sorry!", B::OKCancel, MsgBoxIcon::None,
                     "Switching Scaling Modes"),
              R::Cancel);

    EXPECT_THAT(boxes.Texts(),
                ElementsAre("PROBLEMS!   Server not found", "Error Reading History Data: timeout",
                            "Error Reading History Data: timeout",
                            "Modify displayed threshold of BPM07",
                            "Modify displayed threshold of BPM08",
                            "Vertical Zooms will be lost! Sorry!"));
    const auto& records = boxes.Records();
    ASSERT_EQ(records.size(), 6u);
    EXPECT_EQ(records[0].title, "");
    EXPECT_EQ(records[0].buttons, B::OK);
    EXPECT_EQ(records[1].buttons, B::AbortRetryIgnore);
    EXPECT_EQ(records[2].result, R::Ignore);
    EXPECT_EQ(records[3].kind, DialogRecord::Kind::Input);
    EXPECT_EQ(records[3].title, "Change Threshold");
    EXPECT_EQ(records[3].defaultText, "1.5");
    EXPECT_EQ(records[3].input, "0.75");
    EXPECT_EQ(records[4].input, "");
    EXPECT_EQ(records[5].title, "Switching Scaling Modes");
    EXPECT_EQ(records[5].result, R::Cancel);
    EXPECT_THAT(boxes.Problems(), IsEmpty());
    EXPECT_EQ(boxes.PendingAnswers(), 0u);
}

TEST(ScopedDialogResponder, MissingOrUnfitAnswersCloseTheBoxAndAreReported) {
    struct Case {
        const char* name;
        std::function<void(ScopedDialogResponder&)> queue;
        std::function<std::string()> show;  // the answer as text
        std::string answer;
        std::string problem;
    };
    auto message = [](B buttons) {
        return [buttons] { return std::to_string(static_cast<int>(MsgBox("box", buttons))); };
    };
    const Case cases[] = {
        {"nothing queued, OK", [](auto&) {}, message(B::OK), "1", "no answer queued for \"box\""},
        {"nothing queued, OK/Cancel", [](auto&) {}, message(B::OKCancel), "2",
         "no answer queued for \"box\""},
        {"nothing queued, Abort/Retry/Ignore", [](auto&) {}, message(B::AbortRetryIgnore), "3",
         "no answer queued for \"box\""},
        {"nothing queued, Retry/Cancel", [](auto&) {}, message(B::RetryCancel), "2",
         "no answer queued for \"box\""},
        {"Retry for an OK box", [](auto& r) { r.Answer(R::Retry); }, message(B::OK), "1",
         "the answer Retry is not a button of \"box\""},
        {"Ignore for Retry/Cancel", [](auto& r) { r.Answer(R::Ignore); }, message(B::RetryCancel),
         "2", "the answer Ignore is not a button of \"box\""},
        {"text for a message box", [](auto& r) { r.Input("7"); }, message(B::OKCancel), "2",
         "an input answer was queued for the message \"box\""},
        {"nothing queued, input", [](auto&) {}, [] { return InputBox("prompt", "", "12"); }, "",
         "no answer queued for \"prompt\""},
        {"button for an input box", [](auto& r) { r.Answer(R::OK); },
         [] { return InputBox("prompt", "", "12"); }, "",
         "a button answer was queued for the input \"prompt\""},
    };
    for (const Case& c : cases) {
        ScopedDialogResponder boxes;
        c.queue(boxes);
        EXPECT_EQ(c.show(), c.answer) << c.name;
        EXPECT_THAT(boxes.Problems(), ElementsAre(c.problem)) << c.name;
        EXPECT_EQ(boxes.PendingAnswers(), 0u) << c.name;  // an unfit answer is used up
    }
}

TEST(ScopedDialogResponder, ARetryLoopEndsWhenTheAnswersRunOut) {
    ScopedDialogResponder boxes;
    boxes.Answer(R::Retry).Answer(R::Retry);
    int reads = 0;
    do ++reads;
    while (reads < 100 && MsgBox("Error Reading History Data: ", B::RetryCancel) == R::Retry);
    EXPECT_EQ(reads, 3);
    EXPECT_EQ(boxes.Records().back().result, R::Cancel);
    EXPECT_EQ(boxes.Problems().size(), 1u);
}

TEST(ScopedDialogResponder, BoxesOpenedWhileOneIsOpenCloseAndAnswerFirst) {
    ScopedDialogResponder boxes;
    boxes.Answer(R::OK).Answer(R::Abort);
    std::vector<std::string> order;
    boxes.WhileOpen([&](const DialogRecord& shown) {
        order.push_back("open " + shown.text);
        // Live data arriving under the first box raise a second one.
        if (shown.text == "outer") order.push_back("inner -> " + std::to_string(static_cast<int>(MsgBox("inner"))));
    });
    const R outer = MsgBox("outer", B::AbortRetryIgnore);
    EXPECT_EQ(outer, R::Abort);
    EXPECT_THAT(order, ElementsAre("open outer", "open inner", "inner -> 1"));
    EXPECT_THAT(boxes.Texts(), ElementsAre("outer", "inner"));
    EXPECT_EQ(boxes.Records()[0].result, R::Abort);
    EXPECT_EQ(boxes.Records()[1].result, R::OK);
    EXPECT_THAT(boxes.Problems(), IsEmpty());
}

TEST(ScopedDialogResponder, NestsAndPutsThePreviousResponderBack) {
    EXPECT_EQ(CurrentDialogResponder(), nullptr);
    {
        ScopedDialogResponder outer;
        outer.Answer(R::OK);
        {
            ScopedDialogResponder inner;
            inner.Answer(R::Cancel);
            EXPECT_EQ(MsgBox("first", B::OKCancel), R::Cancel);
            EXPECT_THAT(inner.Texts(), ElementsAre("first"));
        }
        EXPECT_EQ(CurrentDialogResponder(), &outer);
        EXPECT_EQ(MsgBox("second", B::OKCancel), R::OK);
        EXPECT_THAT(outer.Texts(), ElementsAre("second"));
    }
    EXPECT_EQ(CurrentDialogResponder(), nullptr);
}

// Runs `act` on the modal dialog once the dialog's own event loop has it open.
void WhenModalOpens(std::function<void(QWidget*)> act) {
    auto* poll = new QTimer(qApp);
    QObject::connect(poll, &QTimer::timeout, [poll, act = std::move(act)] {
        QWidget* modal = QApplication::activeModalWidget();
        if (modal == nullptr) return;
        poll->stop();
        poll->deleteLater();
        act(modal);
    });
    poll->start(0);
}

TEST(RealDialogs, MessageBoxShowsTextTitleIconAndButtonsAndReturnsTheButtonClicked) {
    struct Case {
        B buttons;
        QMessageBox::StandardButtons qtButtons;
        QMessageBox::StandardButton click;  // NoButton: press Escape
        R result;
    };
    const Case cases[] = {
        {B::OK, QMessageBox::Ok, QMessageBox::Ok, R::OK},
        {B::OK, QMessageBox::Ok, QMessageBox::NoButton, R::OK},
        {B::OKCancel, QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Ok, R::OK},
        {B::OKCancel, QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::NoButton, R::Cancel},
        {B::AbortRetryIgnore, QMessageBox::Abort | QMessageBox::Retry | QMessageBox::Ignore,
         QMessageBox::Retry, R::Retry},
        {B::AbortRetryIgnore, QMessageBox::Abort | QMessageBox::Retry | QMessageBox::Ignore,
         QMessageBox::Ignore, R::Ignore},
        {B::AbortRetryIgnore, QMessageBox::Abort | QMessageBox::Retry | QMessageBox::Ignore,
         QMessageBox::NoButton, R::Abort},
        {B::RetryCancel, QMessageBox::Retry | QMessageBox::Cancel, QMessageBox::Retry, R::Retry},
        {B::RetryCancel, QMessageBox::Retry | QMessageBox::Cancel, QMessageBox::Cancel, R::Cancel},
    };
    for (const Case& c : cases) {
        QString text, title;
        QMessageBox::StandardButtons shown;
        QMessageBox::Icon icon = QMessageBox::NoIcon;
        Qt::TextFormat format = Qt::AutoText;
        WhenModalOpens([&](QWidget* modal) {
            auto* box = qobject_cast<QMessageBox*>(modal);
            if (box == nullptr) {
                modal->close();
                return;
            }
            text = box->text();
            title = box->windowTitle();
            shown = box->standardButtons();
            icon = box->icon();
            format = box->textFormat();
            if (c.click == QMessageBox::NoButton)
                QTest::keyClick(box, Qt::Key_Escape);
            else
                box->button(c.click)->click();
        });
        const R result = MsgBox("PROBLEMS!   <b>x</b>", c.buttons, MsgBoxIcon::Exclamation);
        EXPECT_EQ(result, c.result) << static_cast<int>(c.buttons) << " " << c.click;
        EXPECT_EQ(shown, c.qtButtons);
        EXPECT_EQ(text, "PROBLEMS!   <b>x</b>");
        EXPECT_EQ(format, Qt::PlainText);  // shown as written, not as markup
        EXPECT_EQ(title, "");
        EXPECT_EQ(icon, QMessageBox::Warning);
    }
}

TEST(RealDialogs, InputBoxReturnsTheTextOrEmptyOnCancel) {
    struct Case { bool accept; QString typed; std::string result; };
    const Case cases[] = {{true, "3.25", "3.25"}, {true, "", ""}, {false, "3.25", ""}, {true, "  7 ", "  7 "}};
    for (const Case& c : cases) {
        QString label, title, shownDefault;
        WhenModalOpens([&](QWidget* modal) {
            auto* dialog = qobject_cast<QInputDialog*>(modal);
            if (dialog == nullptr) {
                modal->close();
                return;
            }
            label = dialog->labelText();
            title = dialog->windowTitle();
            shownDefault = dialog->textValue();
            dialog->setTextValue(c.typed);
            if (c.accept)
                dialog->accept();
            else
                dialog->reject();
        });
        EXPECT_EQ(InputBox("Modify displayed threshold of BPM07", "Change Threshold", "1.5"), c.result)
            << c.typed.toStdString() << " accept " << c.accept;
        EXPECT_EQ(label, "Modify displayed threshold of BPM07");
        EXPECT_EQ(title, "Change Threshold");
        EXPECT_EQ(shownDefault, "1.5");
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
