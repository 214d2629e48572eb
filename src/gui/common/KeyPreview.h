#pragma once
// A window's first look at every key press, whichever of its controls has the focus, before the
// control itself gets the key. The handler answers true when it handled the key; the control
// then never sees it.
#include <QObject>
#include <QPointer>
#include <functional>

class QKeyEvent;
class QWidget;

class KeyPreview : public QObject {
public:
    using Handler = std::function<bool(QKeyEvent& key)>;

    // Watches the key presses of window (made its child) for as long as it lives.
    KeyPreview(QWidget* window, Handler handler);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QPointer<QWidget> m_window;
    Handler m_handler;
};
