#pragma once

#include <QString>

namespace gripsim {

// A pseudo-terminal in raw mode. The master side is ours; the slave side is
// the device the program opens. One slave descriptor stays open here, so the
// master never sees a hang-up when the program closes its side between
// exchanges.
class PseudoTerminal
{
public:
    PseudoTerminal() = default;
    ~PseudoTerminal();
    PseudoTerminal(const PseudoTerminal&) = delete;
    PseudoTerminal& operator=(const PseudoTerminal&) = delete;

    bool open(int baud, QString* error);
    void close();

    bool isOpen() const { return m_master >= 0; }
    int masterFd() const { return m_master; }
    QString slavePath() const { return m_slavePath; }

private:
    bool openSteps(int baud, QString* why);

    int m_master = -1;
    int m_slave = -1;
    QString m_slavePath;
};

} // namespace gripsim
