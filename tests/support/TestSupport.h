#pragma once

// What every test program shares: readable QStrings in failures, waiting on the event loop, small files.

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QTest>
#include <ostream>

/// Readable QStrings in assertion failures.
inline void PrintTo(const QString &text, std::ostream *os)
{
    *os << '"' << text.toStdString() << '"';
}

/// Runs the event loop until `done()` holds or `ms` milliseconds pass; returns whether it held.
template <class Pred> bool waitUntil(Pred done, int ms = 5000)
{
    return QTest::qWaitFor(done, ms);
}

/// The file's bytes, or an empty array when it cannot be read.
inline QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Replaces the file's content; returns false when it cannot be written.
inline bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(bytes) == bytes.size();
}

/// The bundled sample documents (a digital and a scanned invoice, a photographed receipt, …).
inline QString sampleFile(const QString &name)
{
    return QStringLiteral(TABRIX_SOURCE_DIR "/samples/documents/") + name;
}

/// An expected output kept under tests/data.
inline QByteArray goldenFile(const QString &name)
{
    return readFile(QStringLiteral(TABRIX_TEST_DATA "/") + name);
}
