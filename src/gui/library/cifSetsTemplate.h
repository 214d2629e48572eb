#pragma once
// The binder between a settings record and whichever controls its owner supplies: it fills the
// controls from the record, writes every edit into the record (and into the timing, game-timer
// and ramping records of the grip session it was given) as it happens, and then raises an event, through which the
// main window's timing editor and the property editor follow each change.
#include "library/mTemplateRecords.h"

#include <QObject>
#include <memory>

class cGripSession;
class cSetsTemplate;
class QAbstractSlider;
class QCheckBox;
class QComboBox;
class QDateEdit;
class QLabel;
class QLineEdit;

class cifSetsTemplate : public QObject {
    Q_OBJECT
public:
    static inline const QString kClass = QStringLiteral("cifSetsTemplate");
    static inline const QString kRevision = QStringLiteral("$Revision: 1 $");

    // The controls an owner may supply; each is named after the record property it edits.
    struct Controls {
        QCheckBox* chkbCTCLikeCTO = nullptr;
        QCheckBox* chkbExpertMode = nullptr;
        QCheckBox* chkbAlertOne = nullptr;
        QCheckBox* chkbAlertTwo = nullptr;
        QDateEdit* dtpdtDate = nullptr;
        QLineEdit* txtlShotTime = nullptr;
        QLineEdit* txtlDwellTime = nullptr;
        QLineEdit* txtlCycleTimeOpen = nullptr;
        QLineEdit* txtlLoadTime = nullptr;
        QLineEdit* txtlCycleTimeClose = nullptr;
        QLineEdit* txtlGameTime = nullptr;
        QLineEdit* txtsName = nullptr;
        QLineEdit* txtlAlertOne = nullptr;
        QLineEdit* txtlAlertTwo = nullptr;
        QAbstractSlider* sldlShotTime = nullptr;
        QAbstractSlider* sldlDwellTime = nullptr;
        QAbstractSlider* sldlCycleTimeOpen = nullptr;
        QAbstractSlider* sldlLoadTime = nullptr;
        QAbstractSlider* sldlCycleTimeClose = nullptr;
        // The range a typed game time must keep (the timings keep their sliders' ranges).
        QAbstractSlider* updlGameTime = nullptr;
        QComboBox* cbolFiringMode = nullptr;
        QComboBox* cbolHyperMode = nullptr;
        // Display labels: the rate of fire and the five times.
        QLabel* lblROF = nullptr;
        QLabel* lblShotTime = nullptr;
        QLabel* lblDwellTime = nullptr;
        QLabel* lblCycleTimeOpen = nullptr;
        QLabel* lblLoadTime = nullptr;
        QLabel* lblCycleTimeClose = nullptr;
    };

    // The session's records follow the grip fields of the controls; an owner whose controls
    // carry no grip field gives none.
    cifSetsTemplate(const Controls& controls, cGripSession* session, QObject* parent = nullptr);

    const std::shared_ptr<cSetsTemplate>& SetsTemplate() const { return m_record; }
    // Binds a record (or none) and fills every supplied control from it.
    void setSetsTemplate(const std::shared_ptr<cSetsTemplate>& record);
    // Fills the controls again from the bound record.
    void Refresh();

    const Controls& controls() const { return m_controls; }

signals:
    void chkbCTCLikeCTOClick();
    void chkbExpertModeClick();
    void chkbAlertOneClick();
    void chkbAlertTwoClick();
    void dtpdtDateChange();
    void txtlShotTimeChange();
    void txtlDwellTimeChange();
    void txtlCycleTimeOpenChange();
    void txtlLoadTimeChange();
    void txtlCycleTimeCloseChange();
    void txtlGameTimeChange();
    void txtsNameChange();
    void txtlAlertOneChange();
    void txtlAlertTwoChange();
    void sldlShotTimeScroll();
    void sldlDwellTimeScroll();
    void sldlCycleTimeOpenScroll();
    void sldlLoadTimeScroll();
    void sldlCycleTimeCloseScroll();
    void cbolFiringModeClick();
    void cbolHyperModeClick();

private:
    void connectControls();
    void fill();
    // One field of the setting into the session's record that carries it, when there is a session.
    void toGripRecord(const cSetsTemplate& record, mTemplateRecords::tField field);

    Controls m_controls;
    cGripSession* m_session;
    std::shared_ptr<cSetsTemplate> m_record;
};
