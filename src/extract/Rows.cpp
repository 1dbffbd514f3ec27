#include "Rows.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <utility>

namespace Extractor {

QList<Row> buildRows(const QList<TextLine> &lines)
{
    std::set<int> pages;
    for (const TextLine &line : lines)
        pages.insert(line.page);

    QList<Row> rows;
    for (int page : pages) {
        QList<TextLine> onPage;
        for (const TextLine &line : lines) {
            if (line.page == page)
                onPage.append(line);
        }
        std::stable_sort(onPage.begin(), onPage.end(), topThenLeft);

        QList<TextLine> group;
        double midSum = 0;
        for (const TextLine &line : onPage) {
            if (!group.isEmpty()) {
                const double mean = midSum / double(group.size());
                const double h = std::min(line.rect.height(), group.first().rect.height());
                if (std::abs(line.rect.center().y() - mean) < 0.55 * h) {
                    group.append(line);
                    midSum += line.rect.center().y();
                    continue;
                }
                rows.append(Row(page, std::exchange(group, {})));
            }
            group.append(line);
            midSum = line.rect.center().y();
        }
        if (!group.isEmpty())
            rows.append(Row(page, std::move(group)));
    }
    return rows;
}

QString documentText(const QList<Row> &rows)
{
    QString text;
    for (qsizetype i = 0; i < rows.size(); ++i) {
        if (i > 0)
            text += u'\n';
        text += rows[i].text;
    }
    return text;
}

} // namespace Extractor
