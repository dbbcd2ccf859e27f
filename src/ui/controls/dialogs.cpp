#include "ui/controls/dialogs.h"

#include <QApplication>
#include <QInputDialog>
#include <QMessageBox>

namespace ui {
namespace {

DialogResponder* installed = nullptr;

QMessageBox::StandardButtons QtButtons(MsgBoxButtons buttons) {
    switch (buttons) {
        case MsgBoxButtons::OKCancel: return QMessageBox::Ok | QMessageBox::Cancel;
        case MsgBoxButtons::AbortRetryIgnore:
            return QMessageBox::Abort | QMessageBox::Retry | QMessageBox::Ignore;
        case MsgBoxButtons::RetryCancel: return QMessageBox::Retry | QMessageBox::Cancel;
        case MsgBoxButtons::OK: break;
    }
    return QMessageBox::Ok;
}

QMessageBox::Icon QtIcon(MsgBoxIcon icon) {
    switch (icon) {
        case MsgBoxIcon::Critical: return QMessageBox::Critical;
        case MsgBoxIcon::Question: return QMessageBox::Question;
        case MsgBoxIcon::Exclamation: return QMessageBox::Warning;
        case MsgBoxIcon::Information: return QMessageBox::Information;
        case MsgBoxIcon::None: break;
    }
    return QMessageBox::NoIcon;
}

MsgBoxResult FromQt(int button, MsgBoxButtons offered) {
    switch (button) {
        case QMessageBox::Ok: return MsgBoxResult::OK;
        case QMessageBox::Cancel: return MsgBoxResult::Cancel;
        case QMessageBox::Abort: return MsgBoxResult::Abort;
        case QMessageBox::Retry: return MsgBoxResult::Retry;
        case QMessageBox::Ignore: return MsgBoxResult::Ignore;
        default: return ClosedAnswer(offered);
    }
}

MsgBoxResult ShowMessageBox(const MessageRequest& request) {
    QMessageBox box(QtIcon(request.icon), QString::fromStdString(request.title),
                    QString::fromStdString(request.text), QtButtons(request.buttons),
                    QApplication::activeWindow());
    // Texts are shown as written (blanks included), never read as markup.
    box.setTextFormat(Qt::PlainText);
    if (request.buttons == MsgBoxButtons::AbortRetryIgnore)
        box.setEscapeButton(QMessageBox::Abort);
    return FromQt(box.exec(), request.buttons);
}

std::string ShowInputBox(const InputRequest& request) {
    bool accepted = false;
    const QString text = QInputDialog::getText(
        QApplication::activeWindow(), QString::fromStdString(request.title),
        QString::fromStdString(request.prompt), QLineEdit::Normal,
        QString::fromStdString(request.defaultText), &accepted);
    return accepted ? text.toStdString() : std::string();
}

}  // namespace

bool Offers(MsgBoxButtons buttons, MsgBoxResult result) {
    switch (buttons) {
        case MsgBoxButtons::OK: return result == MsgBoxResult::OK;
        case MsgBoxButtons::OKCancel:
            return result == MsgBoxResult::OK || result == MsgBoxResult::Cancel;
        case MsgBoxButtons::AbortRetryIgnore:
            return result == MsgBoxResult::Abort || result == MsgBoxResult::Retry ||
                   result == MsgBoxResult::Ignore;
        case MsgBoxButtons::RetryCancel:
            return result == MsgBoxResult::Retry || result == MsgBoxResult::Cancel;
    }
    return false;
}

MsgBoxResult ClosedAnswer(MsgBoxButtons buttons) {
    switch (buttons) {
        case MsgBoxButtons::OKCancel:
        case MsgBoxButtons::RetryCancel: return MsgBoxResult::Cancel;
        case MsgBoxButtons::AbortRetryIgnore: return MsgBoxResult::Abort;
        case MsgBoxButtons::OK: break;
    }
    return MsgBoxResult::OK;
}

MsgBoxResult MsgBox(const std::string& text, MsgBoxButtons buttons, MsgBoxIcon icon,
                    const std::string& title) {
    const MessageRequest request{text, buttons, icon, title};
    if (installed != nullptr) return installed->AnswerMessage(request);
    return ShowMessageBox(request);
}

std::string InputBox(const std::string& prompt, const std::string& title,
                     const std::string& defaultText) {
    const InputRequest request{prompt, title, defaultText};
    if (installed != nullptr) return installed->AnswerInput(request);
    return ShowInputBox(request);
}

DialogResponder* SetDialogResponder(DialogResponder* responder) {
    DialogResponder* previous = installed;
    installed = responder;
    return previous;
}

DialogResponder* CurrentDialogResponder() { return installed; }

}  // namespace ui
