// marlo: the desktop program.
#include "gui/shell/DesktopCommandLine.h"
#include "gui/shell/Main.h"
#include "gui/shell/QtUserInterface.h"
#include "link/cSerialPort.h"
#include "shell/mLanguage.h"
#include "shell/mMain.h"
#include "sim/SimDevice.h"

#include <QApplication>

int main(int argc, char* argv[])
{
    if (const auto status = DesktopCommandLine::AnswerWithoutWindow(argc, argv))
        return *status;
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Marlo"));
    QApplication::setOrganizationName(QStringLiteral("Marlo"));
    QApplication::setApplicationVersion(mMain::kProgramVersion);
    mLanguage::Install();

    QtUserInterface ui;
    mMain::SetUserInterface(&ui);
    cSerialPort::SetDeviceResolver(SimDevice::Resolve);

    const int status = mMain::Main();

    SimDevice::Stop();
    mMain::SetUserInterface(nullptr);
    return status;
}
