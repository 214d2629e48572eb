#include "sim/Catalogue.h"

#include <array>

namespace gripsim {

namespace {

struct CommandEntry
{
    quint8 command;
    int size;
    quint8 report;
};

constexpr std::array<CommandEntry, 20> kCommands{{
    {code::BootQuery, 2, 0x41},
    {code::GunInfo, 2, 0x43},
    {code::GetTiming, 2, 0x44},
    {code::GetCounters, 2, 0x45},
    {code::GetGameTimer, 2, 0x46},
    {code::GetBattery, 2, 0x47},
    {code::GetOptions, 2, 0x48},
    {code::GetRamping, 2, 0x49},
    {code::PutTiming, 14, code::Ack},
    {code::ResetCounter, 6, code::Ack},
    {code::PutGameTimer, 9, code::Ack},
    {code::PutOptions, 6, code::Ack},
    {code::PutRamping, 5, code::Ack},
    {code::StopProgram, 2, 0x91},
    {code::WriteBlock, 0, code::Ack},
    {code::StartProgram, 2, 0x93},
    {code::ReadBlock, 4, 0x95},
    {code::Plain86, 2, code::Ack},
    {code::Plain87, 2, code::Ack},
    {code::WriteBlockOld, 0, code::Ack},
}};

struct ReportEntry
{
    quint8 report;
    int size;
};

constexpr std::array<ReportEntry, 13> kReports{{
    {0x41, 3}, {0x42, 2}, {0x43, 28}, {0x44, 14}, {0x45, 10}, {0x46, 9}, {0x47, 4},
    {0x48, 6}, {0x49, 5}, {0x50, 2}, {0x91, 2}, {0x93, 2}, {0x95, 18},
}};

const CommandEntry* findCommand(quint8 command)
{
    for (const auto& entry : kCommands) {
        if (entry.command == command)
            return &entry;
    }
    return nullptr;
}

} // namespace

int commandSize(quint8 command)
{
    const auto* entry = findCommand(command);
    return entry ? entry->size : 0;
}

bool isKnownCommand(quint8 command)
{
    return findCommand(command) != nullptr;
}

bool isBlockWrite(quint8 command)
{
    return command == code::WriteBlock || command == code::WriteBlockOld;
}

int blockWriteSize(quint8 count)
{
    return 5 + count;
}

quint8 reportCodeFor(quint8 command)
{
    const auto* entry = findCommand(command);
    return entry ? entry->report : 0;
}

int reportSize(quint8 report)
{
    for (const auto& entry : kReports) {
        if (entry.report == report)
            return entry.size;
    }
    return 0;
}

} // namespace gripsim
