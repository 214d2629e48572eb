#pragma once
// "Trap and show" and "trap and pass on" under the class name and revision of Owner, for the
// library's records and collections, so that every error report names the class it came from.
#include "base/mErrorReport.h"

#include <QString>
#include <utility>

template <typename Owner>
class cClassErrors {
protected:
    template <typename F>
    static bool report(const QString& procedure, F&& body)
    {
        return ShowErrors(Owner::kClass, Owner::kRevision, procedure, std::forward<F>(body));
    }
    template <typename F>
    static decltype(auto) pass(const QString& procedure, F&& body)
    {
        return PassErrors(Owner::kClass, Owner::kRevision, procedure, std::forward<F>(body));
    }
};
