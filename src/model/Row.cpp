#include "Row.h"

#include <algorithm>

Row::Row(int page, QList<TextLine> members) : page(page), lines(std::move(members))
{
    std::stable_sort(lines.begin(), lines.end(),
                     [](const TextLine &a, const TextLine &b) { return a.rect.left() < b.rect.left(); });
    for (const TextLine &line : lines) {
        if (offsets.isEmpty()) {
            rect = line.rect;
        } else {
            text += QStringLiteral("  ");
            rect = unitedRect(rect, line.rect);
        }
        offsets.append(text.size());
        text += line.text;
    }
}

PageBox Row::box(TextRange range) const
{
    qsizetype i = 0;
    for (qsizetype k = 0; k < offsets.size(); ++k) {
        if (offsets[k] <= range.start)
            i = k;
    }
    const QRectF r = lines[i].rect;
    const double n = double(std::max<qsizetype>(lines[i].text.size(), 1));
    const double start = std::clamp(double(range.start - offsets[i]), 0.0, n - 1);
    const double left = r.x() + r.width() * start / n;
    double width = r.width() * std::max(std::min(n - start, double(range.length)), 1.0) / n;
    width = std::min(width, r.x() + r.width() - left);
    width = std::max(width, 0.004);
    return PageBox{page, QRectF(left, r.y(), width, r.height())};
}
