#pragma once
// The about box: the program's name, version and what it does, and a button that copies the
// program's and the system's versions for a support request.
#include <QDialog>

class fAbout : public QDialog {
    Q_OBJECT
public:
    explicit fAbout(QWidget* parent = nullptr);

    // What the copy button puts on the clipboard.
    static QString SystemInformation();
};
