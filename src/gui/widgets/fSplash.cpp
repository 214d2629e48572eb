#include "gui/widgets/fSplash.h"

#include <QGuiApplication>
#include <QLinearGradient>
#include <QPainter>
#include <QScreen>

QPixmap fSplash::Picture(const QString& version, qreal devicePixelRatio)
{
    const QSize size(420, 220);
    QPixmap pixmap(size * devicePixelRatio);
    pixmap.setDevicePixelRatio(devicePixelRatio);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient sky(0, 0, 0, size.height());
    sky.setColorAt(0, QColor(0x1d, 0x3b, 0x5c));
    sky.setColorAt(1, QColor(0x0c, 0x1a, 0x2a));
    painter.fillRect(QRect(QPoint(0, 0), size), sky);

    painter.setPen(Qt::white);
    QFont title = QGuiApplication::font();
    title.setPointSizeF(title.pointSizeF() * 3.0);
    title.setBold(true);
    painter.setFont(title);
    painter.drawText(QRect(28, 40, 370, 70), Qt::AlignLeft | Qt::AlignVCenter, QStringLiteral("Marlo"));

    QFont text = QGuiApplication::font();
    text.setPointSizeF(text.pointSizeF() * 1.1);
    painter.setFont(text);
    painter.setPen(QColor(0xd8, 0xe4, 0xf0));
    painter.drawText(QRect(30, 110, 370, 24), Qt::AlignLeft | Qt::AlignVCenter,
                     tr("Tolvane Interface Programme"));
    painter.drawText(QRect(30, 136, 370, 24), Qt::AlignLeft | Qt::AlignVCenter,
                     tr("Version %1").arg(version));
    painter.setPen(QColor(0x8f, 0xa8, 0xc0));
    painter.drawText(QRect(30, 180, 370, 24), Qt::AlignLeft | Qt::AlignVCenter,
                     tr("Settings, counters and firmware of your grip"));
    return pixmap;
}

fSplash::fSplash(const QString& version)
    : QSplashScreen(Picture(version, QGuiApplication::primaryScreen() ? QGuiApplication::primaryScreen()->devicePixelRatio() : 1.0))
{
    setObjectName(QStringLiteral("fSplash"));
    setAccessibleName(tr("Marlo %1 is starting").arg(version));
}
