#pragma once
// What to do about an error of the link, for every front end: the help texts that go with a
// grip that did not answer, a port that could not be opened or a spoiled report. The link's last
// exchange tells which applies, since a silent grip reaches the user as the record's own
// "unknown error" number.
#include <QStringList>

class MarloError;

namespace mLinkHelp {

// The lines of help for the error just caught (empty when none applies): for a port that could
// not be opened its reason (which names the dialout group when permission was denied) and the
// port-in-use help; for a time-out and a bad checksum their help texts.
QStringList WhatToDo(const MarloError& error);

} // namespace mLinkHelp
