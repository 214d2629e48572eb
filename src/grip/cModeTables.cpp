#include "grip/cModeTables.h"

#include "base/mErrorReport.h"

namespace {

using tCaptionCode = QPair<QString, qint32>;

// A table in list order, each entry made by the table's own procedure.
QList<mModes::tModeEntry> makeTable(const QList<tCaptionCode>& modes,
                                    void (*create)(mModes::tModeEntry&, const QString&, qint32, const cSupports&),
                                    const cSupports& supports)
{
    QList<mModes::tModeEntry> table(modes.size());
    for (qsizetype i = 0; i < modes.size(); ++i)
        create(table[i], modes[i].first, modes[i].second, supports);
    return table;
}

} // namespace

void cModeTables::FiringModesGlobalArraySet()
{
    PassErrors(mModes::kModule, mModes::kRevision, QStringLiteral("FiringModesGlobalArraySet"), [&] {
        // The list order is not the code order; the list starts with SemiAuto on purpose.
        static const QList<tCaptionCode> modes = {
            {QStringLiteral(QT_TRANSLATE_NOOP("mModes", "SemiAuto")), 1},  {QStringLiteral(QT_TRANSLATE_NOOP("mModes", "Classic")), 0},
            {QStringLiteral(QT_TRANSLATE_NOOP("mModes", "Sniper")), 6},    {QStringLiteral(QT_TRANSLATE_NOOP("mModes", "Turbo")), 3},
            {QStringLiteral(QT_TRANSLATE_NOOP("mModes", "Burst")), 2},     {QStringLiteral(QT_TRANSLATE_NOOP("mModes", "NXL Full Auto")), 4},
            {QStringLiteral(QT_TRANSLATE_NOOP("mModes", "Open Bolt")), 5}, {QStringLiteral(QT_TRANSLATE_NOOP("mModes", "Burst 3")), 8},
            {QStringLiteral(QT_TRANSLATE_NOOP("mModes", "Ramping")), 16},
        };
        m_firingModes = makeTable(modes, mModes::CreateFiringModeConst, m_supports);
    });
}

void cModeTables::HyperModesGlobalArraySet()
{
    PassErrors(mModes::kModule, mModes::kRevision, QStringLiteral("HyperModesGlobalArraySet"), [&] {
        static const QList<tCaptionCode> modes = {
            {QStringLiteral(QT_TRANSLATE_NOOP("mModes", "Unlimited Ramping")), 1}, {QStringLiteral(QT_TRANSLATE_NOOP("mModes", "100% Ramping")), 2},
            {QStringLiteral(QT_TRANSLATE_NOOP("mModes", "75% Ramping")), 4},       {QStringLiteral(QT_TRANSLATE_NOOP("mModes", "50% Ramping")), 8},
            {QStringLiteral(QT_TRANSLATE_NOOP("mModes", "33% Ramping")), 16},
        };
        m_hyperModes = makeTable(modes, mModes::CreateHyperModeConst, m_supports);
    });
}
