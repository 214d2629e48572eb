#pragma once
// A file's bytes, and writing a file whole, for the tests that lay out or look at files.
#include <QFile>
#include <QtTest>

// The file's bytes; empty when it cannot be read.
inline QByteArray fileBytes(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Replaces the file's bytes; fails the test when it cannot.
inline void writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    QVERIFY2(file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(bytes) == bytes.size(), qPrintable(path));
}
