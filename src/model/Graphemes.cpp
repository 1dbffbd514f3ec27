#include "Graphemes.h"

#include <QTextBoundaryFinder>

qsizetype graphemeCount(const QString &text)
{
    bool simple = true;
    for (QChar c : text) {
        // Below U+0300 every code unit is a character of its own (CR LF aside).
        if (c.unicode() >= 0x300 || c == u'\r') {
            simple = false;
            break;
        }
    }
    if (simple)
        return text.size();
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qsizetype count = 0;
    while (finder.toNextBoundary() != -1)
        ++count;
    return count;
}
