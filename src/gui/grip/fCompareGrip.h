#pragma once
// "Compare with grip": every value the grip holds beside the value a put would send it, one row
// each, the rows that differ marked in words and in bold, and a one-line summary above. The
// comparison is made before the window opens; the window only shows it and keeps its size.
#include "grip/mGripComparison.h"

#include <QDialog>

class cRegistrySettings;

class QLabel;
class QTreeWidget;

class fCompareGrip : public QDialog {
    Q_OBJECT

public:
    static inline const QString kForm = QStringLiteral("fCompareGrip");
    static inline const QString kRevision = QStringLiteral("$Revision: 1 $");

    enum Column { ColRecord, ColValue, ColGrip, ColPut, ColDiffers, ColumnCount };

    // The window remembers its place in the given preferences.
    fCompareGrip(const mGripComparison::tComparison& comparison, cRegistrySettings& preferences, QWidget* parent = nullptr);

    void done(int result) override;

private:
    void Form_Load(const mGripComparison::tComparison& comparison);
    void Form_Unload();
    void addRow(const mGripComparison::tValue& value);

    QLabel* lblSummary = nullptr;
    QTreeWidget* lvwCompare = nullptr;
    QLabel* lblNotCompared = nullptr;
    cRegistrySettings& m_preferences;
    bool m_unloaded = false;
};
