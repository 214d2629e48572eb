#include "grip/mModes.h"

#include "base/mErrorReport.h"
#include "grip/cSupports.h"

namespace mModes {

namespace {

using tCaptionCode = QPair<QString, qint32>;

// A table in list order, each entry made by the table's own procedure.
QList<tModeEntry> makeTable(const QList<tCaptionCode>& modes,
                            void (*create)(tModeEntry&, const QString&, qint32, const cSupports&), const cSupports& supports)
{
    QList<tModeEntry> table(modes.size());
    for (qsizetype i = 0; i < modes.size(); ++i)
        create(table[i], modes[i].first, modes[i].second, supports);
    return table;
}

} // namespace

QList<tModeEntry>& FiringModes()
{
    static QList<tModeEntry> table;
    return table;
}

QList<tModeEntry>& HyperModes()
{
    static QList<tModeEntry> table;
    return table;
}

void FiringModesGlobalArraySet(const cSupports& supports)
{
    PassErrors(kModule, kRevision, QStringLiteral("FiringModesGlobalArraySet"), [&] {
        // The list order is not the code order; the list starts with SemiAuto on purpose.
        static const QList<tCaptionCode> modes = {
            {QStringLiteral(QT_TRANSLATE_NOOP("mModes", "SemiAuto")), 1},
            {QStringLiteral(QT_TRANSLATE_NOOP("mModes", "Classic")), 0},
            {QStringLiteral(QT_TRANSLATE_NOOP("mModes", "Sniper")), 6},
            {QStringLiteral(QT_TRANSLATE_NOOP("mModes", "Turbo")), 3},
            {QStringLiteral(QT_TRANSLATE_NOOP("mModes", "Burst")), 2},
            {QStringLiteral(QT_TRANSLATE_NOOP("mModes", "NXL Full Auto")), 4},
            {QStringLiteral(QT_TRANSLATE_NOOP("mModes", "Open Bolt")), 5},
            {QStringLiteral(QT_TRANSLATE_NOOP("mModes", "Burst 3")), 8},
            {QStringLiteral(QT_TRANSLATE_NOOP("mModes", "Ramping")), 16},
        };
        FiringModes() = makeTable(modes, CreateFiringModeConst, supports);
    });
}

void HyperModesGlobalArraySet(const cSupports& supports)
{
    PassErrors(kModule, kRevision, QStringLiteral("HyperModesGlobalArraySet"), [&] {
        static const QList<tCaptionCode> modes = {
            {QStringLiteral(QT_TRANSLATE_NOOP("mModes", "Unlimited Ramping")), 1},
            {QStringLiteral(QT_TRANSLATE_NOOP("mModes", "100% Ramping")), 2},
            {QStringLiteral(QT_TRANSLATE_NOOP("mModes", "75% Ramping")), 4},
            {QStringLiteral(QT_TRANSLATE_NOOP("mModes", "50% Ramping")), 8},
            {QStringLiteral(QT_TRANSLATE_NOOP("mModes", "33% Ramping")), 16},
        };
        HyperModes() = makeTable(modes, CreateHyperModeConst, supports);
    });
}

void CreateFiringModeConst(tModeEntry& entry, const QString& caption, qint32 code, const cSupports& supports)
{
    PassErrors(kModule, kRevision, QStringLiteral("CreateFiringModeConst"), [&] {
        entry.caption = caption;
        entry.code = code;
        entry.visible = FiringModeVisible(code, supports);
    });
}

void CreateHyperModeConst(tModeEntry& entry, const QString& caption, qint32 code, const cSupports& supports)
{
    PassErrors(kModule, kRevision, QStringLiteral("CreateHyperModeConst"), [&] {
        entry.caption = caption;
        entry.code = code;
        entry.visible = HyperModeVisible(code, supports);
    });
}

bool FiringModeVisible(qint32 code, const cSupports& supports)
{
    return PassErrors(kModule, kRevision, QStringLiteral("FiringModeVisible"), [&] {
        switch (code) {
        case 0: return supports.fmodeClassic();
        case 1: return supports.fmodeSemiAuto();
        case 2: return supports.fmodeBurst();
        case 3: return supports.fmodeTurbo();
        case 4: return supports.fmodeFullAuto();
        case 5: return supports.fmodeOpenBolt();
        case 6: return supports.fmodeSniper();
        case 8: return supports.fmodeBurst3();
        case 16: return supports.fmodeHyper();
        default: return false;
        }
    });
}

bool HyperModeVisible(qint32 code, const cSupports& supports)
{
    return PassErrors(kModule, kRevision, QStringLiteral("HyperModeVisible"), [&] {
        switch (code) {
        case 1: return supports.hmodeUnlimited();
        case 2: return supports.hmodeHundredPercent();
        case 4: return supports.hmodeSeventyfivePercent();
        case 8: return supports.hmodeFiftyPercent();
        case 16: return supports.hmodeThirtythreePercent();
        default: return false;
        }
    });
}

} // namespace mModes
