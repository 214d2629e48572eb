#pragma once
// Answers the next modal dialog a window opens with exec(): answer gets the dialog once it is
// on screen; a dialog that answer left open is cancelled, so that no test waits forever.
#include <QApplication>
#include <QDialog>
#include <QTimer>
#include <functional>

namespace guitest {

inline void answerNextModal(std::function<void(QDialog*)> answer, int tries = 0)
{
    QTimer::singleShot(tries == 0 ? 0 : 10, [answer, tries] {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (!dialog || !dialog->isVisible()) {
            if (tries < 500)
                answerNextModal(answer, tries + 1);
            return;
        }
        answer(dialog);
        if (dialog->isVisible())
            dialog->reject();
    });
}

} // namespace guitest
