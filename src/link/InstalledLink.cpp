#include "link/InstalledLink.h"

#include "link/cLink.h"
#include "link/cPreferencesLinkSettings.h"

namespace mCommBasic {
namespace {

cLink* installed = nullptr;

cLink& unconnected()
{
    static const cPreferencesLinkSettings settings;
    static cLink link(nullptr, settings);
    return link;
}

} // namespace

cLink& Link()
{
    return installed ? *installed : unconnected();
}

void SetLink(cLink* link)
{
    installed = link;
}

} // namespace mCommBasic
