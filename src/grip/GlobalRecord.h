#pragma once
// The one global object of a grip record type: created on first use and kept for the run, until
// a reset drops it (tests, and a fresh start against another grip).
#include <memory>

template <typename T>
class GlobalRecord {
public:
    static T& Get()
    {
        std::unique_ptr<T>& record = slot();
        if (!record)
            record = std::make_unique<T>();
        return *record;
    }

    static void Reset() { slot().reset(); }

private:
    static std::unique_ptr<T>& slot()
    {
        static std::unique_ptr<T> record;
        return record;
    }
};
