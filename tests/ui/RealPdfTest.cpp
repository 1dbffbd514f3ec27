#include "UiTestSupport.h"

#include "ui/DocumentPane.h"
#include "ui/FormPane.h"
#include "ui/PageCanvas.h"
#include "ui/ReviewView.h"

#include <QLineEdit>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>

namespace {

// Two Letter pages of digital text: the invoice on the first, its total on the second.
void writeInvoicePdf(const QString &path)
{
    QPdfWriter writer(path);
    writer.setPageSize(QPageSize(QPageSize::Letter));
    writer.setResolution(72);
    QPainter painter(&writer);
    painter.setFont(QFont(QStringLiteral("DejaVu Sans"), 12));
    const QStringList first = {"Bluebird Office Supplies Ltd",
                               "Invoice No: BB-2207",
                               "Date: 2024-04-18",
                               "Description  Qty  Unit Price  Amount",
                               "Paper A4  3  4.50  13.50",
                               "Toner  1  41.20  41.20",
                               "Subtotal  54.70"};
    for (qsizetype i = 0; i < first.size(); ++i)
        painter.drawText(QPointF(60, 80 + 24 * i), first[i]);
    writer.newPage();
    painter.drawText(QPointF(60, 80), QStringLiteral("Tax  5.47"));
    painter.drawText(QPointF(60, 104), QStringLiteral("Total due  60.17"));
    painter.drawText(QPointF(60, 128), QStringLiteral("Thank you for your business."));
}

// A real PDF goes through the intake pipeline: the review shows its rendered page, and focusing the
// total, which was read on the second page, turns the pane to that page and outlines it.
TEST_F(UiTest, RealPdfIsReadAndReviewedBesideItsPages)
{
    StoreOptions options;
    options.dataFolder = dataFolder();
    store = std::make_unique<Store>(options); // the real loader
    window = std::make_unique<MainWindow>(*store);
    window->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
    const QString pdf = docsFolder() + "/bluebird.pdf";
    writeInvoicePdf(pdf);

    ASSERT_TRUE(store->handleDrop({QUrl::fromLocalFile(pdf)}));
    ASSERT_TRUE(waitUntil(
        [&] {
            return !store->docs().isEmpty() && !store->docs()[0]->status().isInProgress() &&
                   store->docs()[0]->status().kind() != DocStatus::Queued;
        },
        30000));
    const DocPtr doc = store->docs()[0];
    ASSERT_EQ(doc->status().label(), "Ready for review");
    EXPECT_EQ(doc->value("total"), "60.17");
    ASSERT_EQ(doc->pages.size(), 2);
    EXPECT_FALSE(doc->pages[0]->image.isNull());

    DocumentPane *pane = window->review()->documentPane();
    ASSERT_NE(pane, nullptr);
    EXPECT_EQ(pane->page(), 0);
    EXPECT_FALSE(pane->canvas()->outlines().isEmpty());
    window->review()->formPane()->fieldEdit("total")->setFocus();
    EXPECT_EQ(pane->page(), 1);
    const auto outlines = pane->canvas()->outlines();
    EXPECT_TRUE(std::any_of(outlines.cbegin(), outlines.cend(),
                            [](const OutlineBox &b) { return b.id == "total" && b.selected; }));
}

} // namespace
