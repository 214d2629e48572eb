#pragma once
// The traffic window: every entry of the traffic log as the link writes it (time, direction,
// the bytes in decimal and hex, the same text as komm.log), in a read-only monospace view that
// follows the end, with Clear and Save as. Entries are collected and shown in batches, so that
// logging never holds up an exchange.
#include <QStringList>
#include <QWidget>

class QPlainTextEdit;
class QPushButton;
class QTimer;

class fCommConsole : public QWidget {
    Q_OBJECT

public:
    static inline const QString kForm = QStringLiteral("fCommConsole");
    static inline const QString kRevision = QStringLiteral("$Revision: 1 $");
    // How long entries are collected before the view shows them.
    static constexpr int kBatchMs = 100;
    // The view keeps this many lines (an hour of continuous transfers); older ones scroll away.
    static constexpr int kMaxLines = 300000;

    explicit fCommConsole(QWidget* parent = nullptr);

    // Takes one entry (lines joined with CR LF); it appears with the next batch. Cheap: the
    // link calls it for every read and write.
    void appendEntry(const QString& entry);
    // Shows what has been collected now (the batch timer calls it).
    void flush();
    // The whole log as komm.log holds it: every entry ending in CR LF.
    QString LogText() const;
    // Saving opens a modal file dialog, which would hold a running transfer until it closes:
    // it is refused while one runs.
    void setTransferRunning(bool running);

public slots:
    void cmdClear_Click();
    void cmdSaveAs_Click();

signals:
    // The user closed the window (not the program's end).
    void closedByUser();
    void visibilityChanged(bool visible);

protected:
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void scrollToEnd();

    QPlainTextEdit* txtLog = nullptr;
    QPushButton* cmdClear = nullptr;
    QPushButton* cmdSaveAs = nullptr;
    QPushButton* cmdClose = nullptr;
    QTimer* m_batch = nullptr;
    QStringList m_pending;
    bool m_following = true;
};
