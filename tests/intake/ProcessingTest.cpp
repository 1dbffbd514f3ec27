#include "intake/Processing.h"

#include <gtest/gtest.h>

namespace {

using Reports = QList<std::pair<DocStatus::Kind, double>>;

// Lines of all pages reach the extractor in page order with the custom field snapshot, extraction is
// reported after loading, and a loading failure comes back unchanged without that report.
TEST(Processing, LoadsThenExtracts)
{
    Reports reports;
    const auto report = [&](DocStatus::Kind s, double p) { reports.append({s, p}); };
    const Processing::Loader twoPages = [](const QString &, const Pipeline::Report &r) {
        r(DocStatus::Reading, 0.02);
        QList<PagePtr> pages;
        for (int i : {0, 1})
            pages.append(std::make_shared<PageData>(
                PageData{{}, {TextLine{QStringLiteral("Page %1").arg(i), QRectF(0.1, 0.1, 0.4, 0.03), i}}}));
        return Expected<QList<PagePtr>>(pages);
    };
    const CustomFieldDef def{QUuid::createUuid(), "Ref", "Ref", false};
    const auto loaded = std::get<Processing::Loaded>(Processing::run("/x/a.pdf", {def}, report, twoPages));
    ASSERT_EQ(loaded.extraction.rows.size(), 2);
    EXPECT_EQ(loaded.extraction.rows[0].text, "Page 0");
    EXPECT_EQ(loaded.extraction.rows[1].page, 1);
    EXPECT_EQ(loaded.extraction.fields.last().key, uuidText(def.id));
    EXPECT_EQ(reports, (Reports{{DocStatus::Reading, 0.02}, {DocStatus::Extracting, 0.92}}));

    reports.clear();
    const Processing::Loader failing = [](const QString &path, const Pipeline::Report &) {
        return Expected<QList<PagePtr>>(TabrixError{"Cannot open " + path});
    };
    const auto failed = Processing::run("/x/a.pdf", {}, report, failing);
    EXPECT_EQ(std::get<TabrixError>(failed).message, "Cannot open /x/a.pdf");
    EXPECT_TRUE(reports.isEmpty());
}

} // namespace
