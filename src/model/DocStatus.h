#pragma once

#include <QString>

/// Processing state of a document. `failed` carries the message the user reads.
class DocStatus {
public:
    enum Kind { Queued, Reading, Recognizing, Extracting, Ready, Failed };

    DocStatus(Kind kind = Queued) : m_kind(kind) {}
    static DocStatus failed(const QString &message) { return DocStatus(Failed, message); }

    Kind kind() const { return m_kind; }
    const QString &message() const { return m_message; }
    /// Reading, recognizing and extracting: the statuses in which progress reports apply.
    bool isInProgress() const { return m_kind == Reading || m_kind == Recognizing || m_kind == Extracting; }
    /// The display label ("Waiting", …, "Failed: " + message).
    QString label() const;

    bool operator==(const DocStatus &o) const { return m_kind == o.m_kind && m_message == o.m_message; }

private:
    DocStatus(Kind kind, const QString &message) : m_kind(kind), m_message(message) {}
    Kind m_kind;
    QString m_message;
};
