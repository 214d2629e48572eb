#pragma once
// The splash screen shown while the program starts: its name, version and what it is for.
#include <QSplashScreen>

class fSplash : public QSplashScreen {
    Q_OBJECT
public:
    explicit fSplash(const QString& version);

    static QPixmap Picture(const QString& version, qreal devicePixelRatio);
};
