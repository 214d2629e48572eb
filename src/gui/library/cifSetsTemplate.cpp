#include "gui/library/cifSetsTemplate.h"

#include "base/mConvert.h"
#include "base/mErrCodes.h"
#include "library/cSetsTemplate.h"
#include "library/mTemplateRecords.h"
#include "shell/mMain.h"

#include <QAbstractSlider>
#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QLabel>
#include <QLineEdit>
#include <QSignalBlocker>
#include <exception>
#include <functional>
#include <optional>

using Controls = cifSetsTemplate::Controls;
using Event = void (cifSetsTemplate::*)();
using mTemplateRecords::tField;

namespace {

// A whole-number field of the record: its text box, slider and display label (any may be
// absent), the control whose range a typed value must keep, the field of the grip's shared
// records an edit also goes into, and its two events.
struct LongField {
    const char* property;
    QLineEdit* Controls::*text;
    QAbstractSlider* Controls::*slider;
    QLabel* Controls::*label;
    QAbstractSlider* Controls::*range;
    qint32 (cSetsTemplate::*get)() const;
    void (cSetsTemplate::*set)(qint32);
    tField grip;
    Event textEvent;
    Event scrollEvent;
};

const QList<LongField>& longFields()
{
    static const QList<LongField> fields = {
        {"lShotTime", &Controls::txtlShotTime, &Controls::sldlShotTime, &Controls::lblShotTime, &Controls::sldlShotTime,
         &cSetsTemplate::lShotTime, &cSetsTemplate::setlShotTime, tField::lShotTime,
         &cifSetsTemplate::txtlShotTimeChange, &cifSetsTemplate::sldlShotTimeScroll},
        {"lDwellTime", &Controls::txtlDwellTime, &Controls::sldlDwellTime, &Controls::lblDwellTime, &Controls::sldlDwellTime,
         &cSetsTemplate::lDwellTime, &cSetsTemplate::setlDwellTime, tField::lDwellTime,
         &cifSetsTemplate::txtlDwellTimeChange, &cifSetsTemplate::sldlDwellTimeScroll},
        {"lCycleTimeOpen", &Controls::txtlCycleTimeOpen, &Controls::sldlCycleTimeOpen, &Controls::lblCycleTimeOpen, &Controls::sldlCycleTimeOpen,
         &cSetsTemplate::lCycleTimeOpen, &cSetsTemplate::setlCycleTimeOpen, tField::lCycleTimeOpen,
         &cifSetsTemplate::txtlCycleTimeOpenChange, &cifSetsTemplate::sldlCycleTimeOpenScroll},
        {"lLoadTime", &Controls::txtlLoadTime, &Controls::sldlLoadTime, &Controls::lblLoadTime, &Controls::sldlLoadTime,
         &cSetsTemplate::lLoadTime, &cSetsTemplate::setlLoadTime, tField::lLoadTime,
         &cifSetsTemplate::txtlLoadTimeChange, &cifSetsTemplate::sldlLoadTimeScroll},
        {"lCycleTimeClose", &Controls::txtlCycleTimeClose, &Controls::sldlCycleTimeClose, &Controls::lblCycleTimeClose, &Controls::sldlCycleTimeClose,
         &cSetsTemplate::lCycleTimeClose, &cSetsTemplate::setlCycleTimeClose, tField::lCycleTimeClose,
         &cifSetsTemplate::txtlCycleTimeCloseChange, &cifSetsTemplate::sldlCycleTimeCloseScroll},
        {"lGameTime", &Controls::txtlGameTime, nullptr, nullptr, &Controls::updlGameTime, &cSetsTemplate::lGameTime, &cSetsTemplate::setlGameTime,
         tField::lGameTime, &cifSetsTemplate::txtlGameTimeChange, nullptr},
        {"lAlertOne", &Controls::txtlAlertOne, nullptr, nullptr, nullptr, &cSetsTemplate::lAlertOne, &cSetsTemplate::setlAlertOne,
         tField::lAlertOne, &cifSetsTemplate::txtlAlertOneChange, nullptr},
        {"lAlertTwo", &Controls::txtlAlertTwo, nullptr, nullptr, nullptr, &cSetsTemplate::lAlertTwo, &cSetsTemplate::setlAlertTwo,
         tField::lAlertTwo, &cifSetsTemplate::txtlAlertTwoChange, nullptr},
    };
    return fields;
}

struct BoolField {
    const char* property;
    QCheckBox* Controls::*box;
    bool (cSetsTemplate::*get)() const;
    void (cSetsTemplate::*set)(bool);
    std::optional<tField> grip; // none: the grip's records do not carry it
    Event event;
};

const QList<BoolField>& boolFields()
{
    static const QList<BoolField> fields = {
        {"bCTCLikeCTO", &Controls::chkbCTCLikeCTO, &cSetsTemplate::bCTCLikeCTO, &cSetsTemplate::setbCTCLikeCTO, std::nullopt,
         &cifSetsTemplate::chkbCTCLikeCTOClick},
        {"bExpertMode", &Controls::chkbExpertMode, &cSetsTemplate::bExpertMode, &cSetsTemplate::setbExpertMode, std::nullopt,
         &cifSetsTemplate::chkbExpertModeClick},
        {"bAlertOne", &Controls::chkbAlertOne, &cSetsTemplate::bAlertOne, &cSetsTemplate::setbAlertOne,
         tField::bAlertOne, &cifSetsTemplate::chkbAlertOneClick},
        {"bAlertTwo", &Controls::chkbAlertTwo, &cSetsTemplate::bAlertTwo, &cSetsTemplate::setbAlertTwo,
         tField::bAlertTwo, &cifSetsTemplate::chkbAlertTwoClick},
    };
    return fields;
}

// The mode lists: the item data is the mode's code. The ramping mode edits only the record:
// the grip's ramping record keeps the mode it holds (deliberately).
struct ModeField {
    const char* property;
    QComboBox* Controls::*box;
    qint32 (cSetsTemplate::*get)() const;
    void (cSetsTemplate::*set)(qint32);
    std::optional<tField> grip;
    Event event;
};

const QList<ModeField>& modeFields()
{
    static const QList<ModeField> fields = {
        {"lFiringMode", &Controls::cbolFiringMode, &cSetsTemplate::lFiringMode, &cSetsTemplate::setlFiringMode,
         tField::lFiringMode, &cifSetsTemplate::cbolFiringModeClick},
        {"lHyperMode", &Controls::cbolHyperMode, &cSetsTemplate::lHyperMode, &cSetsTemplate::setlHyperMode, std::nullopt,
         &cifSetsTemplate::cbolHyperModeClick},
    };
    return fields;
}

// A typed value that the editor refuses is refused for good: on an error the text box shows the
// record's value again, and the record, the grip's records and the slider keep it. The classic
// program let the record keep a refused value, which then reached the library and the grip.
class RefusedTextReverts {
public:
    RefusedTextReverts(QLineEdit* text, std::function<qint32()> kept)
        : m_text(text), m_kept(std::move(kept)), m_exceptions(std::uncaught_exceptions())
    {
    }
    ~RefusedTextReverts()
    {
        if (std::uncaught_exceptions() <= m_exceptions)
            return;
        const QSignalBlocker quiet(m_text);
        m_text->setText(QString::number(m_kept()));
    }
    RefusedTextReverts(const RefusedTextReverts&) = delete;
    RefusedTextReverts& operator=(const RefusedTextReverts&) = delete;

private:
    QLineEdit* m_text;
    std::function<qint32()> m_kept;
    int m_exceptions;
};

QString controlName(const char* prefix, const char* property, const char* event)
{
    return QStringLiteral("%1%2_%3").arg(QLatin1String(prefix), QLatin1String(property), QLatin1String(event));
}

} // namespace

cifSetsTemplate::cifSetsTemplate(const Controls& controls, cGripSession* session, QObject* parent)
    : QObject(parent), m_controls(controls), m_session(session)
{
    connectControls();
}

void cifSetsTemplate::connectControls()
{
    for (const LongField& f : longFields()) {
        if (QLineEdit* text = m_controls.*(f.text)) {
            connect(text, &QLineEdit::textChanged, this, [this, &f, text](const QString& value) {
                ShowErrors(kClass, kRevision, controlName("txt", f.property, "Change"), [&] {
                    if (!m_record)
                        return;
                    const RefusedTextReverts revert(text, [&] { return (m_record.get()->*f.get)(); });
                    const qint32 number = mConvert::CLng(value);
                    // A typed value outside the range of its slider (or up-down) is refused; a
                    // value the program shows (a stored or downloaded one) is taken as it is.
                    const QAbstractSlider* range = f.range ? m_controls.*(f.range) : nullptr;
                    if (range && text->isModified() && (number < range->minimum() || number > range->maximum()))
                        RaiseRuntimeError(mErrCodes::RT_INVALID_PROPERTY);
                    (m_record.get()->*f.set)(number);
                    toGripRecord(*m_record, f.grip);
                    emit(this->*f.textEvent)();
                });
            });
        }
        if (f.slider && m_controls.*(f.slider)) {
            QAbstractSlider* slider = m_controls.*(f.slider);
            // The slider's scroll: a move by the user, not a value set by the program.
            connect(slider, &QAbstractSlider::actionTriggered, this, [this, &f, slider] {
                ShowErrors(kClass, kRevision, controlName("sld", f.property, "Scroll"), [&] {
                    if (!m_record)
                        return;
                    const qint32 position = slider->sliderPosition();
                    (m_record.get()->*f.set)(position);
                    toGripRecord(*m_record, f.grip);
                    emit(this->*f.scrollEvent)();
                });
            });
        }
    }
    for (const BoolField& f : boolFields()) {
        if (QCheckBox* box = m_controls.*(f.box)) {
            connect(box, &QCheckBox::toggled, this, [this, &f](bool checked) {
                ShowErrors(kClass, kRevision, controlName("chk", f.property, "Click"), [&] {
                    if (!m_record)
                        return;
                    (m_record.get()->*f.set)(checked);
                    if (f.grip)
                        toGripRecord(*m_record, *f.grip);
                    emit(this->*f.event)();
                });
            });
        }
    }
    for (const ModeField& f : modeFields()) {
        if (QComboBox* box = m_controls.*(f.box)) {
            // A mode chosen by the user; a selection made by the program (the owner showing the
            // setting's mode) changes nothing.
            connect(box, &QComboBox::activated, this, [this, &f, box](int index) {
                ShowErrors(kClass, kRevision, controlName("cbo", f.property, "Click"), [&] {
                    if (!m_record || index < 0)
                        return;
                    const qint32 code = box->itemData(index).toInt();
                    (m_record.get()->*f.set)(code);
                    if (f.grip)
                        toGripRecord(*m_record, *f.grip);
                    emit(this->*f.event)();
                });
            });
        }
    }
    if (QLineEdit* name = m_controls.txtsName) {
        connect(name, &QLineEdit::textChanged, this, [this](const QString& text) {
            ShowErrors(kClass, kRevision, QStringLiteral("txtsName_Change"), [&] {
                if (!m_record)
                    return;
                m_record->setsName(text);
                emit txtsNameChange();
            });
        });
    }
    if (QDateEdit* date = m_controls.dtpdtDate) {
        connect(date, &QDateEdit::dateChanged, this, [this](const QDate& day) {
            ShowErrors(kClass, kRevision, QStringLiteral("dtpdtDate_Change"), [&] {
                if (!m_record)
                    return;
                m_record->setdtDate(QDateTime(day, m_record->dtDate().time()));
                emit dtpdtDateChange();
            });
        });
    }
}

void cifSetsTemplate::setSetsTemplate(const std::shared_ptr<cSetsTemplate>& record)
{
    PassErrors(kClass, kRevision, QStringLiteral("SetsTemplate"), [&] {
        m_record = record;
        fill();
    });
}

void cifSetsTemplate::Refresh()
{
    PassErrors(kClass, kRevision, QStringLiteral("Refresh"), [&] { fill(); });
}

void cifSetsTemplate::toGripRecord(const cSetsTemplate& record, mTemplateRecords::tField field)
{
    if (m_session)
        mTemplateRecords::FieldToGripRecord(record, field, *m_session);
}

void cifSetsTemplate::fill()
{
    if (!m_record)
        return;
    cSetsTemplate& record = *m_record;
    // The session's grip records take the values of every supplied control, so that a put sends
    // what the controls show.
    for (const LongField& f : longFields()) {
        const qint32 value = (record.*f.get)();
        if (QLineEdit* text = m_controls.*(f.text)) {
            text->setText(QString::number(value));
            toGripRecord(record, f.grip);
        }
        // A stored value outside the slider's range leaves the slider at its nearest end; only a
        // typed one is refused.
        if (f.slider && m_controls.*(f.slider))
            (m_controls.*(f.slider))->setValue(value);
        if (f.label && m_controls.*(f.label))
            (m_controls.*(f.label))->setText(QString::number(value));
    }
    for (const BoolField& f : boolFields()) {
        if (QCheckBox* box = m_controls.*(f.box)) {
            box->setChecked((record.*f.get)());
            if (f.grip)
                toGripRecord(record, *f.grip);
        }
    }
    for (const ModeField& f : modeFields()) {
        if (QComboBox* box = m_controls.*(f.box)) {
            const int index = box->findData((record.*f.get)());
            if (index >= 0)
                box->setCurrentIndex(index);
            if (f.grip)
                toGripRecord(record, *f.grip);
        }
    }
    if (m_controls.dtpdtDate)
        m_controls.dtpdtDate->setDate(record.dtDate().date());
    if (m_controls.txtsName)
        m_controls.txtsName->setText(record.sName());
    if (m_controls.lblROF)
        m_controls.lblROF->setText(record.sROF());
}
