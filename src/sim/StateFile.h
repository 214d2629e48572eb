#pragma once

#include <QString>

namespace gripsim {

struct GripState;

// The grip's state kept as JSON in a file, so that a series of program runs
// talks to the same grip.
class StateFile
{
public:
    explicit StateFile(QString path);

    const QString& path() const { return m_path; }
    bool exists() const;

    // Reads the file into the state (members missing from it keep their
    // value); on failure the state is unchanged and the error says why.
    bool load(GripState& state, QString* error) const;
    // Writes the file as a whole (never a half-written file).
    bool save(const GripState& state, QString* error) const;

private:
    QString m_path;
};

} // namespace gripsim
