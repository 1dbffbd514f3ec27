#include "store/Processing.h"

#include <gtest/gtest.h>

namespace {

PagePtr page(int index, const QStringList &texts)
{
    auto p = std::make_shared<PageData>();
    for (qsizetype i = 0; i < texts.size(); ++i)
        p->lines.append(TextLine{texts[i], QRectF(0.1, 0.1 + 0.05 * i, 0.4, 0.03), index});
    return p;
}

// Lines of all pages reach the extractor in page order; extraction is reported after loading, and the
// custom field snapshot is applied.
TEST(Processing, ExtractsAllPagesInOrderAfterLoading)
{
    QList<std::pair<DocStatus::Kind, double>> reports;
    const Processing::Loader loader = [](const QString &, const Pipeline::Report &report) {
        report(DocStatus::Reading, 0.02);
        return Expected<QList<PagePtr>>(QList<PagePtr>{page(0, {"First page"}), page(1, {"Second page"})});
    };
    const CustomFieldDef def{QUuid::createUuid(), "Ref", "Ref", false};
    const auto result = Processing::run(
        "/x/a.pdf", {def},
        [&](DocStatus::Kind s, double p) {
            reports.append({s, p});
        },
        loader);

    const auto *loaded = std::get_if<Processing::Loaded>(&result);
    ASSERT_NE(loaded, nullptr);
    ASSERT_EQ(loaded->pages.size(), 2);
    ASSERT_EQ(loaded->extraction.rows.size(), 2);
    EXPECT_EQ(loaded->extraction.rows[0].text, "First page");
    EXPECT_EQ(loaded->extraction.rows[1].page, 1);
    ASSERT_EQ(loaded->extraction.fields.size(), 9);
    EXPECT_EQ(loaded->extraction.fields[8].key, uuidText(def.id));
    EXPECT_EQ(reports, (QList<std::pair<DocStatus::Kind, double>>{{DocStatus::Reading, 0.02},
                                                                  {DocStatus::Extracting, 0.92}}));
}

// A loading failure is returned as is, and extraction is never reported.
TEST(Processing, LoaderErrorPassesThrough)
{
    int reports = 0;
    const Processing::Loader loader = [](const QString &path, const Pipeline::Report &) {
        return Expected<QList<PagePtr>>(TabrixError{"Cannot open " + path});
    };
    const auto result = Processing::run(
        "/x/a.pdf", {}, [&](DocStatus::Kind, double) { ++reports; }, loader);
    ASSERT_TRUE(std::holds_alternative<TabrixError>(result));
    EXPECT_EQ(std::get<TabrixError>(result).message, "Cannot open /x/a.pdf");
    EXPECT_EQ(reports, 0);
}

} // namespace
