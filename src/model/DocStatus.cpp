#include "DocStatus.h"

QString DocStatus::label() const
{
    switch (m_kind) {
    case Queued:
        return QStringLiteral("Waiting");
    case Reading:
        return QStringLiteral("Reading file");
    case Recognizing:
        return QStringLiteral("Recognizing text");
    case Extracting:
        return QStringLiteral("Extracting fields");
    case Ready:
        return QStringLiteral("Ready for review");
    case Failed:
        return QStringLiteral("Failed: ") + m_message;
    }
    return {};
}
