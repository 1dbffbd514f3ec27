#include "UiTestSupport.h"

#include "ui/ConfidenceBadge.h"
#include "ui/LineItemGrid.h"
#include "ui/Outlines.h"
#include "ui/PageCanvas.h"
#include "ui/ValueEdit.h"

namespace {

LineItem item(const QString &amount, std::optional<PageBox> box = {})
{
    return LineItem{.description = "Thing", .quantity = {}, .unitPrice = {}, .amount = amount, .box = box};
}

/// Each outline as "id kind", with " selected" on the selected one.
QStringList described(const QList<OutlineBox> &outlines)
{
    const char *const kinds[] = {"detected", "doubtful", "item"}; // in OutlineKind's order
    QStringList result;
    for (const OutlineBox &b : outlines)
        result.append(b.id + ' ' + kinds[int(b.kind)] + (b.selected ? " selected" : ""));
    return result;
}

// A doubt wins over everything, an edit over the confidence; the percentage rounds half away from zero
// and turns green at the outline threshold.
TEST(ConfidenceBadgeTest, LookFollowsDoubtsEditsAndConfidence)
{
    using Tone = Theme::Tone;
    // clang-format off
    const struct { double confidence; bool edited, empty; QStringList doubts; QString text; Tone tone; } cases[] = {
        {0.9, true, false, {"Sum differs", "Tax"}, "Check", Tone::Orange},
        {0.62, true, false, {}, "Edited", Tone::Blue},
        {0.0, true, true, {}, "Edited", Tone::Blue},
        {0.0, false, true, {}, "Not found", Tone::Orange},
        {0.3, false, true, {}, "30%", Tone::Orange},
        {0.0, false, false, {}, "0%", Tone::Orange},
        {0.695, false, false, {}, "70%", Tone::Orange}, // shows 70% but is below the threshold
        {0.7, false, false, {}, "70%", Tone::Green},
        {0.875, false, false, {}, "88%", Tone::Green},
    };
    // clang-format on
    for (const auto &c : cases) {
        SCOPED_TRACE(c.confidence);
        const BadgeLook look = ConfidenceBadge::look(c.confidence, c.edited, c.empty, c.doubts);
        EXPECT_EQ(look.text, c.text);
        EXPECT_EQ(look.tone, c.tone);
        if (!c.doubts.isEmpty()) {
            EXPECT_EQ(look.tooltip, "Sum differs\nTax");
        }
    }
}

// Outlines: fields with a value and a box on the shown page, then line items; colours by confidence.
TEST(OutlinesTest, BuildsOutlinesForOnePage)
{
    DocItem doc(QStringLiteral("/tmp/x.pdf"));
    const PageBox p0{0, QRectF(0.1, 0.1, 0.2, 0.05)}, p1{1, QRectF(0.5, 0.5, 0.2, 0.05)};
    doc.setFields({valueField("vendor", "Acme", 0.9, p0), valueField("number", "42", 0.5, p0),
                   valueField("date", "2024-01-01", 0.4, p0, true), valueField("total", "16.50", 0.9, p1),
                   valueField("tax", "", 0.0, p0), valueField("dueDate", "2024-02-01", 0.9)});
    const LineItem li = item("10.00", p0);
    doc.setItems({li, item("5.00")});

    // An edited date counts as detected whatever its confidence.
    EXPECT_EQ(described(Outlines::forPage(doc, 0, QStringLiteral("number"))),
              QStringList({"vendor detected", "number doubtful selected", "date detected",
                           "item-" + uuidText(li.id) + " item"}));
    EXPECT_EQ(described(Outlines::forPage(doc, 1, QString())), QStringList({"total detected"}));
    EXPECT_EQ(Outlines::boxOf(doc, "total"), p1);
    EXPECT_EQ(Outlines::boxOf(doc, "dueDate"), std::nullopt);
}

// Page rectangles land on the image as displayed, centred in the pane. Outlines inside others are painted
// after them, the selected one last; a focused outline's tag avoids the text around it and stays on the page.
TEST(OutlinesTest, GeometryPaintOrderAndTags)
{
    const QRectF fitted = Outlines::fitRect(QSizeF(100, 200), QRectF(0, 0, 300, 200));
    EXPECT_EQ(fitted, QRectF(100, 0, 100, 200));
    EXPECT_EQ(Outlines::toDisplay(QRectF(0.5, 0.25, 0.5, 0.5), fitted), QRectF(150, 50, 50, 100));

    const OutlineBox total{"total", QRectF(0.5, 0.8, 0.3, 0.04), OutlineKind::Detected, false, "Total"};
    const OutlineBox currency{"currency", QRectF(0.5, 0.8, 0.02, 0.04), OutlineKind::Detected, false, ""};
    const OutlineBox vendor{"vendor", QRectF(0.1, 0.1, 0.3, 0.04), OutlineKind::Detected, true, "Vendor"};
    EXPECT_EQ(described(Outlines::inPaintOrder({vendor, currency, total})),
              QStringList({"total detected", "currency detected", "vendor detected selected"}));

    const QRectF image(0, 0, 500, 600), value(300, 300, 60, 14);
    const QSizeF tag(50, 16);
    const QList<QRectF> crowded = {QRectF(20, 280, 360, 14), QRectF(20, 300, 340, 14),
                                   QRectF(20, 320, 360, 14)};
    QRectF placed = Outlines::tagRect(value, tag, image, crowded);
    for (const QRectF &covered : crowded + QList<QRectF>{value})
        EXPECT_FALSE(placed.intersects(covered)) << "right of the value, where the line ends";
    EXPECT_TRUE(image.contains(placed));

    // At the page's top edge with nothing around: below, never off the page.
    placed = Outlines::tagRect(QRectF(10, 1, 60, 14), tag, image, {});
    EXPECT_TRUE(image.contains(placed));
    EXPECT_FALSE(placed.intersects(QRectF(10, 1, 60, 14)));
}

// A turned page carries its outlines: a quarter turn clockwise takes the page's top left to the top right.
TEST(OutlinesTest, TurnedPageCarriesOutlines)
{
    const QRectF image(10, 20, 200, 100);
    const QRectF topLeft(0, 0, 0.5, 0.25);
    EXPECT_EQ(Outlines::pageToDisplay(image, 0).mapRect(topLeft), QRectF(10, 20, 100, 25));
    EXPECT_EQ(Outlines::pageToDisplay(image, 1).mapRect(topLeft), QRectF(160, 20, 50, 50));
    EXPECT_EQ(Outlines::pageToDisplay(image, 2).mapRect(topLeft), QRectF(110, 95, 100, 25));
    EXPECT_EQ(Outlines::pageToDisplay(image, 3).mapRect(topLeft), QRectF(10, 70, 50, 50));
    EXPECT_EQ(Outlines::pageToDisplay(image, 4), Outlines::pageToDisplay(image, 0));
}

class ReviewTest : public UiTest {
protected:
    void openReady(int pages = 1)
    {
        open(pages);
        addAndWait({"invoice.pdf"});
        doc = store->docs().first();
        ASSERT_NE(window->review(), nullptr);
        form = window->review()->formPane();
        pane = window->review()->documentPane();
    }

    DocPtr doc;
    FormPane *form = nullptr;
    DocumentPane *pane = nullptr;
};

// The grid's buttons and boxes edit the document: a new line takes the focus and the highlight, a typed
// amount counts in the items total, and without items the hint replaces the table and the total.
TEST_F(ReviewTest, LineItemsAreEditedThroughTheGrid)
{
    openReady();
    doc->setItems({item("10.00"), item("5.00")});
    LineItemGrid *grid = form->lineItems();
    QTest::mouseClick(grid->addLineButton(), Qt::LeftButton);
    QApplication::processEvents();
    ASSERT_EQ(grid->rowCount(), 3);
    EXPECT_EQ(QApplication::focusWidget(), grid->itemEdit(2, LineItem::Description));
    EXPECT_EQ(store->highlightKey(), Outlines::itemKey(doc->items()[2]));
    QTest::keyClicks(grid->itemEdit(2, LineItem::Amount), "2.50");
    auto *total = form->findChild<QLabel *>(QStringLiteral("itemsTotal"));
    EXPECT_TRUE(total->text().endsWith(Money::pretty(17.5))) << total->text().toStdString();

    QTest::mouseClick(grid->removeButton(0), Qt::LeftButton);
    EXPECT_EQ(grid->rowCount(), 2);
    EXPECT_EQ(doc->items()[0].amount, "5.00");
    doc->setItems({});
    EXPECT_TRUE(form->findChild<QLabel *>(QStringLiteral("noItems"))->isVisible());
    EXPECT_FALSE(total->isVisible());
}

// Focusing a field whose value lies on another page turns the pane to it and emphasises it; "Show
// detected fields" off removes every outline but keeps the page.
TEST_F(ReviewTest, PageFollowsTheFocusedField)
{
    openReady(2);
    doc->setFields({valueField("vendor", "Acme", 0.9, PageBox{0, QRectF(0.1, 0.1, 0.3, 0.03)}),
                    valueField("total", "16.50", 0.9, PageBox{1, QRectF(0.5, 0.8, 0.2, 0.03)})});
    doc->setItems({});
    QApplication::processEvents(); // the new boxes show
    EXPECT_EQ(pane->page(), 0);
    form->fieldEdit("total")->setFocus();
    EXPECT_EQ(pane->page(), 1);
    EXPECT_EQ(described(pane->canvas()->outlines()), QStringList({"total detected selected"}));

    auto *toggle = pane->findChild<QCheckBox *>();
    toggle->click();
    EXPECT_TRUE(pane->canvas()->outlines().isEmpty());
    EXPECT_FALSE(pane->canvas()->imageRect().isEmpty());
    toggle->click();
    EXPECT_EQ(pane->canvas()->outlines().size(), 1);
    form->fieldEdit("vendor")->setFocus();
    EXPECT_EQ(pane->page(), 0);
}

// A total that does not add up is flagged on its badge, even once edited, outlined in orange and counted
// in the summary and on its currency's row. Typing into the field edits the document and highlights it;
// the right total lifts every flag.
TEST_F(ReviewTest, DoubtfulTotalIsFlaggedEverywhere)
{
    openReady();
    doc->editField("total", "15.00"); // subtotal 15.00 + tax 1.50 is 16.50
    EXPECT_EQ(form->badge("total")->currentLook().tone, Theme::Tone::Orange);
    EXPECT_TRUE(described(pane->canvas()->outlines()).contains("total doubtful"));

    auto *counts = window->sidebar()->findChild<QLabel *>(QStringLiteral("counts"));
    EXPECT_TRUE(counts->text().contains("1 to check")) << counts->text().toStdString();
    // The currency row is the document's (the locale's where the page prints none).
    const QString code = doc->value(QStringLiteral("currency"));
    const QString rowName = QStringLiteral("flagged-") + (code.isEmpty() ? QStringLiteral("\u2014") : code);
    ASSERT_NE(window->sidebar()->findChild<QLabel *>(rowName), nullptr);

    QLineEdit *total = form->fieldEdit("total");
    total->setFocus();
    total->selectAll();
    QTest::keyClicks(total, "16.50");
    QApplication::processEvents();
    EXPECT_EQ(doc->value("total"), "16.50");
    EXPECT_EQ(form->badge("total")->currentLook().tone, Theme::Tone::Blue);
    EXPECT_FALSE(counts->text().contains("check"));
    EXPECT_EQ(window->sidebar()->findChild<QLabel *>(rowName), nullptr);
}

// Long values show their start with the whole text in the tooltip; short ones need none; a quantity box
// holds four digits.
TEST_F(ReviewTest, BoxesShowTheirValues)
{
    openReady();
    window->resize(1440, 900);
    const QString longVendor =
        QStringLiteral("Acme Supplies Ltd, Industriestrasse 40-42, Building C, D-63571 Gelnhausen, Germany");
    doc->editField("vendor", longVendor);
    auto *vendor = qobject_cast<ValueEdit *>(form->fieldEdit("vendor"));
    ASSERT_NE(vendor, nullptr);
    EXPECT_EQ(vendor->cursorPosition(), 0);
    EXPECT_FALSE(vendor->fits());
    EXPECT_EQ(vendor->toolTip(), longVendor);
    doc->editField("vendor", "Acme");
    EXPECT_TRUE(vendor->toolTip().isEmpty());

    auto *quantity = qobject_cast<ValueEdit *>(form->lineItems()->itemEdit(0, LineItem::Quantity));
    ASSERT_NE(quantity, nullptr);
    quantity->setValue("1234");
    EXPECT_TRUE(quantity->fits());
}

// A failed document names its file and the reason, and "Try again" reads it afresh.
TEST_F(ReviewTest, FailedDocumentCanBeTriedAgain)
{
    open();
    addAndWait({"broken.pdf"});
    const auto text = [&](const char *name) { return window->review()->findChild<QLabel *>(name)->text(); };
    EXPECT_EQ(text("fileName"), "broken.pdf");
    EXPECT_TRUE(text("failureText").endsWith("Damaged file"));
    QTest::mouseClick(window->review()->findChild<QPushButton *>(QStringLiteral("tryAgain")), Qt::LeftButton);
    EXPECT_EQ(store->docs()[0]->status().kind(), DocStatus::Queued);
}

// The page zooms by shortcut from the form and by Ctrl + wheel, scrolls once wider than the pane, fits its
// width or the pane again, and turns a quarter with its sides swapped.
TEST_F(ReviewTest, PageZoomsAndTurns)
{
    openReady();
    window->resize(1200, 800);
    QApplication::processEvents();
    const double fitted = pane->scale();
    QTest::keyClick(form->fieldEdit("total"), Qt::Key_Plus, Qt::ControlModifier);
    EXPECT_NEAR(pane->scale(), fitted * 1.25, 1e-9);
    QWidget *viewport = pane->pageScroll()->viewport();
    QWheelEvent wheel(QPointF(50, 50), viewport->mapToGlobal(QPointF(50, 50)), {}, QPoint(0, 120),
                      Qt::NoButton, Qt::ControlModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(viewport, &wheel);
    EXPECT_NEAR(pane->scale(), fitted * 1.25 * 1.25, 1e-9);

    EXPECT_GT(pane->pageScroll()->verticalScrollBar()->maximum(), 0);

    pane->setFit(DocumentPane::Fit::Width);
    EXPECT_LE(pane->canvas()->imageRect().right(), viewport->width());
    EXPECT_GT(pane->canvas()->imageRect().width(), viewport->width() * 0.8);
    pane->setFit(DocumentPane::Fit::Page);
    EXPECT_LE(pane->canvas()->imageRect().bottom(), viewport->height());

    const QSizeF upright = pane->canvas()->turnedPageSize();
    pane->rotate();
    EXPECT_EQ(pane->canvas()->turnedPageSize(), upright.transposed());
    EXPECT_EQ(pane->canvas()->quarterTurns(), 1);
}

// A wrong amount says why under its box and on the approval bar, blocks approval (by shortcut too) and
// marks the queue row; a right one in another form says how it will be exported and takes that form when
// the box is left; a doubt's reason is written under its field, not only in the badge's tooltip.
TEST_F(ReviewTest, TypedValuesAreCheckedAndFlagsExplained)
{
    openReady();
    QLineEdit *subtotal = form->fieldEdit("subtotal");
    subtotal->setFocus();
    subtotal->selectAll();
    QTest::keyClicks(subtotal, "abc");
    QLabel *note = form->note("subtotal");
    EXPECT_TRUE(note->isVisible());
    EXPECT_TRUE(note->text().startsWith("Not an amount")) << note->text().toStdString();
    auto *block = window->review()->findChild<QLabel *>(QStringLiteral("approvalBlock"));
    EXPECT_TRUE(block->isVisible());
    EXPECT_FALSE(window->review()->findChild<QPushButton *>(QStringLiteral("approve"))->isEnabled());
    QTest::keyClick(subtotal, Qt::Key_Return, Qt::ControlModifier);
    EXPECT_FALSE(doc->approved());
    EXPECT_TRUE(window->sidebar()->queueModel()->index(0).data(QueueModel::FlaggedRole).toBool());

    subtotal->selectAll();
    QTest::keyClicks(subtotal, "1,015.00");
    EXPECT_TRUE(note->text().contains("Exported as 1015.00")) << note->text().toStdString();
    QTest::keyClick(subtotal, Qt::Key_Tab);
    EXPECT_EQ(doc->value("subtotal"), "1015.00");
    EXPECT_FALSE(block->isVisible());

    // 1015.00 + 1.50 is not the total of 16.50.
    QLabel *totalNote = form->note("total");
    EXPECT_TRUE(totalNote->isVisible());
    EXPECT_EQ(totalNote->text(), form->badge("total")->toolTip());
}

// A reopened batch shows each page once loaded; a document whose file changed since says so above its
// form and in place of its page, and its queue row is marked.
TEST_F(ReviewTest, ReopenedBatchShowsPagesOrWhyNot)
{
    const QString kept = docsFolder() + "/batch.tabrix";
    open(1, nullptr, kept);
    addAndWait({"a.pdf", "b.pdf"});
    ASSERT_TRUE(writeFile(store->docs()[1]->path(), "changed"));
    window.reset();
    store.reset();
    open(1, nullptr, kept);
    ASSERT_TRUE(waitUntil([&] { return !store->docs()[0]->pages.isEmpty(); }));
    EXPECT_FALSE(window->review()->documentPane()->pageNote()->isVisible());
    EXPECT_EQ(window->review()->documentPane()->pageCount(), 1);
    EXPECT_FALSE(window->review()->formPane()->fileNotice()->isVisible());

    store->setSelectedID(store->docs()[1]->id());
    QApplication::processEvents();
    const QString notice = store->fileNotice(store->docs()[1]);
    EXPECT_TRUE(notice.startsWith("The file has changed since it was read"));
    EXPECT_EQ(window->review()->formPane()->fileNotice()->text(), notice);
    EXPECT_TRUE(window->review()->formPane()->fileNotice()->isVisible());
    EXPECT_EQ(window->review()->documentPane()->pageNote()->text(), notice);
    EXPECT_TRUE(window->review()->documentPane()->pageNote()->isVisible());
    QueueModel *queue = window->sidebar()->queueModel();
    EXPECT_FALSE(queue->index(0).data(QueueModel::FlaggedRole).toBool());
    EXPECT_TRUE(queue->index(1).data(QueueModel::FlaggedRole).toBool());
}

// Tab from the last amount skips the remove buttons, so Space there removes no line; Delete in an empty
// box removes its line and keeps the focus in the grid, while in a filled box it edits the text.
TEST_F(ReviewTest, NoStrayKeyRemovesALine)
{
    openReady();
    doc->setItems({item("10.00"), item("5.00")});
    LineItemGrid *grid = form->lineItems();
    EXPECT_EQ(grid->removeButton(1)->focusPolicy(), Qt::NoFocus);
    QLineEdit *last = grid->itemEdit(1, LineItem::Amount);
    last->setFocus();
    QTest::keyClick(last, Qt::Key_Tab);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    ASSERT_GE(doc->items().size(), 2);
    EXPECT_EQ(doc->items()[1].amount, "5.00");

    QLineEdit *description = grid->itemEdit(0, LineItem::Description);
    description->setFocus();
    description->setCursorPosition(0);
    QTest::keyClick(description, Qt::Key_Delete);
    EXPECT_EQ(doc->items()[0].description, "hing");
    QTest::keyClick(grid->itemEdit(0, LineItem::Quantity), Qt::Key_Delete);
    QApplication::processEvents();
    EXPECT_EQ(doc->items()[0].amount, "5.00");
    EXPECT_EQ(QApplication::focusWidget(), grid->itemEdit(0, LineItem::Quantity));
}

} // namespace
