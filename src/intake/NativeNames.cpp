#include "NativeNames.h"

namespace Pipeline {

namespace {

constexpr char16_t escapeBase = 0xDC00;

bool isEscape(QChar c, QChar before)
{
    return c.unicode() >= 0xDC80 && c.unicode() <= 0xDCFF && !before.isHighSurrogate();
}

// Length of the valid UTF-8 sequence at `i`, or 0 when the byte there does not start one.
int sequenceLength(const QByteArray &b, qsizetype i)
{
    const auto at = [&](qsizetype k) { return k < b.size() ? uchar(b[k]) : 0; };
    const uchar c = at(i);
    const auto cont = [&](qsizetype k, uchar lo = 0x80, uchar hi = 0xBF) {
        return at(k) >= lo && at(k) <= hi;
    };
    if (c < 0x80)
        return 1;
    if (c >= 0xC2 && c <= 0xDF)
        return cont(i + 1) ? 2 : 0;
    if (c >= 0xE0 && c <= 0xEF) {
        const uchar lo = c == 0xE0 ? 0xA0 : 0x80, hi = c == 0xED ? 0x9F : 0xBF;
        return cont(i + 1, lo, hi) && cont(i + 2) ? 3 : 0;
    }
    if (c >= 0xF0 && c <= 0xF4) {
        const uchar lo = c == 0xF0 ? 0x90 : 0x80, hi = c == 0xF4 ? 0x8F : 0xBF;
        return cont(i + 1, lo, hi) && cont(i + 2) && cont(i + 3) ? 4 : 0;
    }
    return 0;
}

} // namespace

QString decodeNativeName(const QByteArray &bytes)
{
    QString out;
    qsizetype i = 0;
    while (i < bytes.size()) {
        qsizetype j = i;
        while (j < bytes.size() && sequenceLength(bytes, j) > 0)
            j += sequenceLength(bytes, j);
        out += QString::fromUtf8(bytes.constData() + i, j - i);
        if (j < bytes.size())
            out += QChar(char16_t(escapeBase + uchar(bytes[j++])));
        i = j;
    }
    return out;
}

QByteArray nativeName(const QString &path)
{
    QByteArray out;
    qsizetype start = 0;
    for (qsizetype i = 0; i < path.size(); ++i) {
        if (isEscape(path[i], i > 0 ? path[i - 1] : QChar())) {
            out += QStringView(path).mid(start, i - start).toUtf8();
            out += char(path[i].unicode() - escapeBase);
            start = i + 1;
        }
    }
    return out + QStringView(path).mid(start).toUtf8();
}

bool hasUndecodableBytes(const QString &path)
{
    for (qsizetype i = 0; i < path.size(); ++i) {
        if (isEscape(path[i], i > 0 ? path[i - 1] : QChar()))
            return true;
    }
    return false;
}

QString displayName(const QString &path)
{
    QString out;
    for (qsizetype i = 0; i < path.size(); ++i) {
        const char16_t c = path[i].unicode();
        if (isEscape(path[i], i > 0 ? path[i - 1] : QChar()))
            out += QStringLiteral("\\x%1").arg(int(c - escapeBase), 2, 16, QLatin1Char('0'));
        else if (c == u'\n')
            out += QStringLiteral("\\n");
        else if (c == u'\t')
            out += QStringLiteral("\\t");
        else if (c == u'\r')
            out += QStringLiteral("\\r");
        else if (c < 0x20 || c == 0x7F)
            out += QStringLiteral("\\x%1").arg(int(c), 2, 16, QLatin1Char('0'));
        else
            out += path[i];
    }
    return out;
}

} // namespace Pipeline
