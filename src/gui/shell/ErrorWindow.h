#pragma once
// The error reporter's window: what went wrong (the error's description), its number, what to
// do about it when the link can tell, and the details a support request needs (source, the trail
// of module, procedure and revision, the program version), all of which can be copied.
#include <QDialog>
#include <QStringList>

class MarloError;
class QPlainTextEdit;
class QPushButton;

class ErrorWindow : public QDialog {
    Q_OBJECT
public:
    ErrorWindow(const MarloError& error, const QStringList& whatToDo, const QString& version,
                const QString& title, QWidget* parent = nullptr);

    // Everything the window says, as plain text (what Copy puts on the clipboard).
    QString fullText() const { return m_fullText; }

    static QString DetailsText(const MarloError& error, const QString& version, const QString& title);

private:
    void copyToClipboard();

    QPlainTextEdit* m_details = nullptr;
    QPushButton* m_detailsButton = nullptr;
    QString m_fullText;
};
