#include "gui/library/fSetsTemplate.h"

#include "gui/library/ucSetsTemplateBasic.h"
#include "gui/library/ucUserVariables.h"
#include "library/cSetsTemplate.h"
#include "shell/mMain.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QPushButton>
#include <QTabBar>
#include <QVBoxLayout>

namespace {

// The tabs: key and caption.
struct Tab {
    const char* key;
    const char* caption;
};

const Tab kTabs[] = {
    {"Basic", QT_TRANSLATE_NOOP("fSetsTemplate", "Basic information")},
    {"User", QT_TRANSLATE_NOOP("fSetsTemplate", "User variables")},
};

} // namespace

fSetsTemplate::fSetsTemplate(QWidget* parent) : QDialog(parent)
{
    setObjectName(kForm);
    setWindowTitle(tr("Settings #"));

    tbsSettings = new QTabBar(this);
    tbsSettings->setObjectName(QStringLiteral("tbsSettings"));
    tbsSettings->setAccessibleName(tr("Pages"));
    tbsSettings->setExpanding(false);
    for (const Tab& tab : kTabs) {
        const int index = tbsSettings->addTab(tr(tab.caption));
        tbsSettings->setTabData(index, QLatin1String(tab.key));
    }
    m_pageArea = new QFrame(this);
    m_pageArea->setObjectName(QStringLiteral("picPage"));
    m_pageArea->setFrameShape(QFrame::StyledPanel);
    m_pageLayout = new QVBoxLayout(m_pageArea);

    cmdOK = new QPushButton(tr("OK"), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setDefault(true);
    cmdCancel = new QPushButton(tr("&Cancel"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);

    auto* layout = new QVBoxLayout(this);
    layout->setSpacing(0);
    layout->addWidget(tbsSettings);
    layout->addWidget(m_pageArea, 1);
    layout->addSpacing(8);
    layout->addLayout(buttons);

    connect(tbsSettings, &QTabBar::currentChanged, this, &fSetsTemplate::tbsSettings_Click);
    connect(cmdOK, &QPushButton::clicked, this, &fSetsTemplate::cmdOK_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &fSetsTemplate::cmdCancel_Click);
    resize(440, 340);
}

void fSetsTemplate::Open(const std::shared_ptr<cSetsTemplate>& record, const QString& number)
{
    PassErrors(kForm, kRevision, QStringLiteral("Open"), [&] {
        m_record = record;
        setWindowTitle(tr("Settings #%1").arg(number));
        if (tbsSettings->currentIndex() != 0)
            tbsSettings->setCurrentIndex(0); // shows the page
        else
            ShowPage();
    });
}

void fSetsTemplate::tbsSettings_Click()
{
    ShowErrors(kForm, kRevision, QStringLiteral("tbsSettings_Click"), [&] { ShowPage(); });
}

void fSetsTemplate::ShowPage()
{
    PassErrors(kForm, kRevision, QStringLiteral("ShowPage"), [&] {
        if (m_page) {
            m_pageLayout->removeWidget(m_page);
            delete m_page;
            m_page = nullptr;
        }
        const QString key = tbsSettings->tabData(tbsSettings->currentIndex()).toString();
        if (key == QLatin1String("User")) {
            auto* page = new ucUserVariables(m_pageArea);
            page->setSetting(m_record);
            m_page = page;
        } else {
            auto* page = new ucSetsTemplateBasic(m_pageArea);
            page->setSetting(m_record);
            m_page = page;
        }
        m_pageLayout->addWidget(m_page);
        m_page->raise();
        m_page->setVisible(true);
        setTabOrder(tbsSettings, m_page);
    });
}

// Both buttons only close: every edit is already in the record, so Cancel keeps it too. That is
// how the editor has always worked; the library save decides what stays.
void fSetsTemplate::cmdOK_Click()
{
    ShowErrors(kForm, kRevision, QStringLiteral("cmdOK_Click"), [&] { accept(); });
}

void fSetsTemplate::cmdCancel_Click()
{
    ShowErrors(kForm, kRevision, QStringLiteral("cmdCancel_Click"), [&] { reject(); });
}
