#include "UiTestSupport.h"

#include "ui/BatchSummaryView.h"
#include "ui/ConfidenceBadge.h"
#include "ui/CustomFieldsDialog.h"
#include "ui/DocumentPane.h"
#include "ui/FormPane.h"
#include "ui/LineItemGrid.h"
#include "ui/Outlines.h"
#include "ui/PageCanvas.h"
#include "ui/PlatformText.h"
#include "ui/ReviewView.h"
#include "ui/SidebarView.h"
#include "ui/ValueEdit.h"

#include <QLabel>
#include <QLineEdit>

namespace {

// Outlines inside others are painted after them, the selected one last; a focused outline's tag avoids
// the text around it, and with text on every side covers as little as it can.
TEST(OutlinesTest, PaintOrderAndTagPlacement)
{
    const OutlineBox total{"total", QRectF(0.5, 0.8, 0.3, 0.04), OutlineKind::Detected, false, "Total"};
    const OutlineBox currency{"currency", QRectF(0.5, 0.8, 0.02, 0.04), OutlineKind::Detected, false, ""};
    const OutlineBox vendor{"vendor", QRectF(0.1, 0.1, 0.3, 0.04), OutlineKind::Detected, true, "Vendor"};
    QStringList order;
    for (const OutlineBox &b : Outlines::inPaintOrder({vendor, currency, total}))
        order.append(b.id);
    EXPECT_EQ(order, QStringList({"total", "currency", "vendor"}));

    const QRectF image(0, 0, 500, 600);
    const QRectF value(300, 300, 60, 14);
    const QSizeF tag(50, 16);
    const QRectF lineAbove(20, 280, 360, 14), ownLine(20, 300, 340, 14), lineBelow(20, 320, 360, 14);
    const auto covers = [](const QRectF &r, const QList<QRectF> &text) {
        return std::any_of(text.cbegin(), text.cend(), [&](const QRectF &t) { return r.intersects(t); });
    };
    const QList<QRectF> crowded = {lineAbove, ownLine, lineBelow};
    QRectF placed = Outlines::tagRect(value, tag, image, crowded);
    EXPECT_FALSE(covers(placed, crowded)) << "right of the value, where the line ends";
    EXPECT_FALSE(placed.intersects(value));
    EXPECT_TRUE(image.contains(placed));

    // At the page's top edge with nothing around: below, never off the page.
    placed = Outlines::tagRect(QRectF(10, 1, 60, 14), tag, image, {});
    EXPECT_TRUE(image.contains(placed));
    EXPECT_FALSE(placed.intersects(QRectF(10, 1, 60, 14)));
}

class ValuesTest : public UiTest {
protected:
    static void setValue(const DocPtr &d, const QString &key, const QString &value)
    {
        QList<Field> fields = d->fields();
        for (Field &f : fields) {
            if (f.key == key) {
                f.value = value;
                f.confidence = 0.95;
            }
        }
        d->setFields(fields);
        QApplication::processEvents();
    }
    void openReady()
    {
        open();
        addAndWait({"invoice.pdf"});
        doc = store->docs().first();
        form = window->review()->formPane();
    }
    DocPtr doc;
    FormPane *form = nullptr;
};

// A total that does not add up is flagged on its badge (never green), outlined in orange, counted in the
// summary and on its currency's row, while the currency's sum still includes it.
TEST_F(ValuesTest, DoubtfulTotalIsFlaggedEverywhere)
{
    openReady();
    setValue(doc, "total", "15.00"); // subtotal 15.00 + tax 1.50 is 16.50
    const BadgeLook look = form->badge("total")->currentLook();
    EXPECT_EQ(look.tone, Theme::Tone::Orange);
    EXPECT_TRUE(look.tooltip.contains("not the total")) << look.tooltip.toStdString();
    const QList<OutlineBox> outlines = window->review()->documentPane()->canvas()->outlines();
    const auto totalOutline =
        std::find_if(outlines.cbegin(), outlines.cend(), [](const OutlineBox &b) { return b.id == "total"; });
    ASSERT_NE(totalOutline, outlines.cend());
    EXPECT_EQ(totalOutline->kind, OutlineKind::LowConfidence);

    auto *counts = window->sidebar()->findChild<QLabel *>(QStringLiteral("counts"));
    EXPECT_TRUE(counts->text().endsWith(QStringLiteral("\u00B7 1 to check"))) << counts->text().toStdString();
    // The currency row is the document's (the locale's where the page prints none).
    const QString code = doc->value(QStringLiteral("currency"));
    const QString rowName = QStringLiteral("flagged-") + (code.isEmpty() ? QStringLiteral("\u2014") : code);
    auto *row = window->sidebar()->findChild<QLabel *>(rowName);
    ASSERT_NE(row, nullptr);
    EXPECT_EQ(row->text(), "1 to check");
    ASSERT_EQ(store->currencyTotals().size(), 1);
    EXPECT_DOUBLE_EQ(store->currencyTotals()[0].total, 15.0);

    // Typing the right total lifts every flag; an edited value in doubt stays flagged, not blue.
    QLineEdit *total = form->fieldEdit("total");
    total->selectAll();
    QTest::keyClicks(total, "16.50");
    QApplication::processEvents();
    EXPECT_EQ(form->badge("total")->currentLook().tone, Theme::Tone::Blue);
    EXPECT_FALSE(counts->text().contains("check"));
    EXPECT_EQ(window->sidebar()->findChild<QLabel *>(rowName), nullptr);
    QTest::keyClick(total, Qt::Key_Backspace);
    QTest::keyClick(total, Qt::Key_Backspace); // "16."
    EXPECT_EQ(form->badge("total")->currentLook().tone, Theme::Tone::Orange);
}

// Long values show their start with the whole text in the tooltip; short ones need none; a quantity box
// holds four digits; the duplicate warning leaves its space when it goes, so the form stays put.
TEST_F(ValuesTest, FormShowsValuesWithoutMoving)
{
    openReady();
    window->resize(1440, 900);
    const QString longVendor =
        QStringLiteral("Acme Supplies Ltd, Industriestrasse 40-42, Building C, D-63571 Gelnhausen, Germany");
    const QString shortVendor = doc->value("vendor"); // "Acme Supplies Ltd"
    setValue(doc, "vendor", longVendor);
    auto *vendor = qobject_cast<ValueEdit *>(form->fieldEdit("vendor"));
    ASSERT_NE(vendor, nullptr);
    EXPECT_EQ(vendor->cursorPosition(), 0);
    EXPECT_FALSE(vendor->fits());
    EXPECT_EQ(vendor->toolTip(), longVendor);
    setValue(doc, "vendor", shortVendor);
    EXPECT_TRUE(vendor->toolTip().isEmpty());

    auto *quantity = qobject_cast<ValueEdit *>(form->lineItems()->itemEdit(0, LineItem::Quantity));
    ASSERT_NE(quantity, nullptr);
    quantity->setValue("1234");
    EXPECT_TRUE(quantity->fits());

    // A second document with the same vendor, number and total: the warning shows, then goes.
    addAndWait({"copy.pdf"});
    QApplication::processEvents();
    auto *warning = form->findChild<QWidget *>(QStringLiteral("duplicateWarning"));
    ASSERT_TRUE(warning->isVisible());
    const int shownAt = vendor->mapTo(form, QPoint()).y();
    setValue(store->docs()[1], "number", "INV-2002");
    EXPECT_FALSE(warning->isVisible());
    EXPECT_EQ(vendor->mapTo(form, QPoint()).y(), shownAt);
}

// The failed and progress screens name their file; an empty file and a damaged one fail with different
// messages (read by the real intake).
TEST_F(ValuesTest, FailuresSayWhichFileAndWhy)
{
    open(0);
    const QStringList paths = makeFiles({"empty.pdf", "damaged.pdf"});
    QFile damaged(paths[1]);
    ASSERT_TRUE(damaged.open(QIODevice::WriteOnly));
    damaged.write("%PDF-1.4\nthis is not really a PDF\n");
    damaged.close();
    store->add(paths);
    ASSERT_TRUE(waitUntil([&] {
        return std::all_of(store->docs().cbegin(), store->docs().cend(),
                           [](const DocPtr &d) { return d->status().kind() == DocStatus::Failed; });
    }));
    QApplication::processEvents();
    const QString emptyMessage = store->docs()[0]->status().message();
    const QString damagedMessage = store->docs()[1]->status().message();
    EXPECT_EQ(emptyMessage, "The file is empty");
    EXPECT_NE(damagedMessage, emptyMessage);
    EXPECT_FALSE(damagedMessage.isEmpty());

    const auto shownName = [&] {
        for (QLabel *label : window->review()->findChildren<QLabel *>(QStringLiteral("fileName"))) {
            if (label->isVisible())
                return label->text();
        }
        return QString();
    };
    EXPECT_EQ(shownName(), "empty.pdf");
    store->move(+1);
    QApplication::processEvents();
    EXPECT_EQ(shownName(), "damaged.pdf");
    store->reprocess(store->docs()[1]); // queued: the progress screen
    QApplication::processEvents();
    EXPECT_EQ(shownName(), "damaged.pdf");
}

// An invalid regular expression says why in the pattern box's tooltip, with the engine's own words.
TEST(CustomFieldsDialogTest, RegexProblemGivesTheEnginesReason)
{
    EXPECT_TRUE(CustomFieldsDialog::regexProblem("PO[- ]?(\\d+)").isEmpty());
    EXPECT_TRUE(CustomFieldsDialog::regexProblem("PO(").contains("U_REGEX_MISMATCHED_PAREN"));
    EXPECT_TRUE(CustomFieldsDialog::regexProblem("a{2,1}").contains("U_REGEX_MAX_LT_MIN"));
}

// Texts written for macOS name this computer and Ctrl elsewhere, and stay as written on macOS.
TEST(PlatformTextTest, NamesTheRunningPlatform)
{
    const QString text = QStringLiteral("Runs offline on this Mac. Next document (\u2318])");
    EXPECT_EQ(PlatformText::adapt(text, true), text);
    EXPECT_EQ(PlatformText::adapt(text, false), "Runs offline on this computer. Next document (Ctrl+])");
}

} // namespace
