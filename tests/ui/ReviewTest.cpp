#include "UiTestSupport.h"

#include "model/Money.h"
#include "ui/ConfidenceBadge.h"
#include "ui/DocumentPane.h"
#include "ui/FormPane.h"
#include "ui/LineItemGrid.h"
#include "ui/Outlines.h"
#include "ui/PageCanvas.h"
#include "ui/ReviewView.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>

namespace {

Field field(const QString &key, const QString &value, double confidence, std::optional<PageBox> box = {},
            bool edited = false)
{
    Field f = emptyField(key, key);
    f.value = value;
    f.confidence = confidence;
    f.box = box;
    f.edited = edited;
    return f;
}

LineItem item(const QString &amount, std::optional<PageBox> box = {})
{
    LineItem li;
    li.description = QStringLiteral("Thing");
    li.amount = amount;
    li.box = box;
    return li;
}

// Badge texts, tones and tooltips, with percentages rounded half away from zero.
TEST(ConfidenceBadgeTest, LookFollowsEditedEmptyAndConfidence)
{
    struct Case {
        double confidence;
        bool edited, empty;
        BadgeLook look;
    };
    const QString conf = QStringLiteral("Extraction confidence");
    const Case cases[] = {
        {0.62, true, false, {"Edited", Theme::Tone::Blue, "Edited by you"}},
        {0.0, true, true, {"Edited", Theme::Tone::Blue, "Edited by you"}},
        {0.0, false, true, {"Not found", Theme::Tone::Orange, conf}},
        {0.3, false, true, {"30%", Theme::Tone::Orange, conf}},
        {0.0, false, false, {"0%", Theme::Tone::Orange, conf}},
        {0.62, false, false, {"62%", Theme::Tone::Orange, conf}},
        {0.695, false, false, {"70%", Theme::Tone::Orange, conf}}, // shows 70% but is below the threshold
        {0.7, false, false, {"70%", Theme::Tone::Green, conf}},
        {0.875, false, false, {"88%", Theme::Tone::Green, conf}},
        {1.0, false, false, {"100%", Theme::Tone::Green, conf}},
    };
    for (const Case &c : cases)
        EXPECT_EQ(ConfidenceBadge::look(c.confidence, c.edited, c.empty), c.look) << c.confidence;
}

// Outlines: fields with a value and a box on the shown page, then line items; colours by confidence.
TEST(OutlinesTest, BuildsOutlinesForOnePage)
{
    DocItem doc(QStringLiteral("/tmp/x.pdf"));
    const PageBox p0{0, QRectF(0.1, 0.1, 0.2, 0.05)}, p1{1, QRectF(0.5, 0.5, 0.2, 0.05)};
    doc.setFields({field("vendor", "Acme", 0.9, p0), field("number", "42", 0.5, p0),
                   field("date", "2024-01-01", 0.4, p0, true), field("total", "16.50", 0.9, p1),
                   field("tax", "", 0.0, p0), field("dueDate", "2024-02-01", 0.9)});
    const LineItem li = item("10.00", p0);
    doc.setItems({li, item("5.00")});

    const QList<OutlineBox> page0 = Outlines::forPage(doc, 0, QStringLiteral("number"));
    ASSERT_EQ(page0.size(), 4);
    EXPECT_EQ(page0[0].id, "vendor");
    EXPECT_EQ(page0[0].kind, OutlineKind::Detected);
    EXPECT_EQ(page0[1].kind, OutlineKind::LowConfidence);
    EXPECT_TRUE(page0[1].selected);
    EXPECT_FALSE(page0[0].selected);
    EXPECT_EQ(page0[2].kind, OutlineKind::Detected); // edited counts as detected whatever its confidence
    EXPECT_EQ(page0[3].id, "item-" + uuidText(li.id));
    EXPECT_EQ(page0[3].kind, OutlineKind::LineItem);

    const QList<OutlineBox> page1 = Outlines::forPage(doc, 1, QString());
    ASSERT_EQ(page1.size(), 1);
    EXPECT_EQ(page1[0].id, "total");
    EXPECT_EQ(Outlines::boxOf(doc, "total"), p1);
    EXPECT_EQ(Outlines::boxOf(doc, "dueDate"), std::nullopt);
}

// Page rectangles land on the image as displayed, centred in the pane.
TEST(OutlinesTest, MapsNormalisedRectsOntoTheFittedImage)
{
    const QRectF image = Outlines::fitRect(QSizeF(100, 200), QRectF(0, 0, 300, 200));
    EXPECT_EQ(image, QRectF(100, 0, 100, 200));
    EXPECT_EQ(Outlines::toDisplay(QRectF(0.5, 0.25, 0.5, 0.5), image), QRectF(150, 50, 50, 100));
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
        ASSERT_NE(form, nullptr);
    }

    DocPtr doc;
    FormPane *form = nullptr;
    DocumentPane *pane = nullptr;
};

// Typing into a field changes the document at once and turns its badge into "Edited".
TEST_F(ReviewTest, EditingAFieldMarksItEdited)
{
    openReady();
    QList<Field> fields = doc->fields();
    fields[0] = field(fields[0].key, "Acme", 0.62);
    doc->setFields(fields);
    const QString key = fields[0].key;
    EXPECT_EQ(form->badge(key)->text(), "62%");

    QLineEdit *edit = form->fieldEdit(key);
    edit->setFocus();
    edit->end(false);
    QTest::keyClicks(edit, " Ltd");
    EXPECT_EQ(doc->fields()[0].value, "Acme Ltd");
    EXPECT_TRUE(doc->fields()[0].edited);
    EXPECT_EQ(form->badge(key)->currentLook().text, "Edited");
    EXPECT_EQ(form->badge(key)->currentLook().tone, Theme::Tone::Blue);
    EXPECT_EQ(store->highlightKey(), key); // the focused field is the highlighted one
}

// "Add line" appends an edited item with quantity 1; editing and removing rows change the document.
TEST_F(ReviewTest, AddEditAndRemoveLineItems)
{
    openReady();
    doc->setItems({item("10.00"), item("5.00")});
    QApplication::processEvents();
    ASSERT_EQ(form->lineItems()->rowCount(), 2);
    const QUuid first = doc->items()[0].id;

    QTest::mouseClick(form->lineItems()->addLineButton(), Qt::LeftButton);
    QApplication::processEvents();
    ASSERT_EQ(doc->items().size(), 3);
    const LineItem added = doc->items()[2];
    EXPECT_EQ(added.quantity, "1");
    EXPECT_TRUE(added.edited);
    EXPECT_EQ(added.confidence, 0.0);
    EXPECT_TRUE(added.description.isEmpty() && added.amount.isEmpty() && !added.box);
    EXPECT_EQ(form->lineItems()->itemEdit(2, LineItem::Description)->placeholderText(), "Description");
    EXPECT_EQ(form->lineItems()->itemEdit(2, LineItem::UnitPrice)->placeholderText(), "Price");

    QTest::keyClicks(form->lineItems()->itemEdit(2, LineItem::Amount), "2.50");
    EXPECT_EQ(doc->items()[2].amount, "2.50");
    auto *total = form->findChild<QLabel *>(QStringLiteral("itemsTotal"));
    EXPECT_EQ(total->text(), QStringLiteral("Items total ") + Money::pretty(17.5));

    EXPECT_EQ(form->lineItems()->removeButton(0)->toolTip(), "Remove this line");
    QTest::mouseClick(form->lineItems()->removeButton(0), Qt::LeftButton);
    QApplication::processEvents();
    ASSERT_EQ(doc->items().size(), 2);
    EXPECT_NE(doc->items()[0].id, first);
    EXPECT_EQ(form->lineItems()->rowCount(), 2);
}

// Without items the table gives way to the hint and no total is shown.
TEST_F(ReviewTest, NoItemsShowsHint)
{
    openReady();
    doc->setItems({});
    QApplication::processEvents();
    auto *hint = form->findChild<QLabel *>(QStringLiteral("noItems"));
    EXPECT_TRUE(hint->isVisible());
    EXPECT_EQ(hint->text(), "No line items detected. Use \u201CAdd line\u201D to enter them by hand.");
    EXPECT_FALSE(form->findChild<QLabel *>(QStringLiteral("itemsTotal"))->isVisible());
}

// "Show detected fields" off removes every outline but keeps the page.
TEST_F(ReviewTest, TogglingOutlinesOff)
{
    openReady();
    doc->setFields({field("total", "16.50", 0.9, PageBox{0, QRectF(0.5, 0.8, 0.2, 0.03)})});
    doc->setItems({});
    ASSERT_EQ(pane->canvas()->outlines().size(), 1);
    auto *toggle = pane->findChild<QCheckBox *>();
    EXPECT_EQ(toggle->text(), "Show detected fields");
    toggle->click();
    EXPECT_TRUE(pane->canvas()->outlines().isEmpty());
    EXPECT_FALSE(pane->canvas()->imageRect().isEmpty());
    toggle->click();
    EXPECT_EQ(pane->canvas()->outlines().size(), 1);
}

// Focusing a field whose value lies on the second page turns the pane to it and emphasises it.
TEST_F(ReviewTest, FocusTurnsToTheFieldsPage)
{
    openReady(2);
    doc->setFields({field("vendor", "Acme", 0.9, PageBox{0, QRectF(0.1, 0.1, 0.3, 0.03)}),
                    field("total", "16.50", 0.9, PageBox{1, QRectF(0.5, 0.8, 0.2, 0.03)})});
    QApplication::processEvents();
    EXPECT_EQ(pane->page(), 0);
    EXPECT_EQ(pane->findChild<QLabel *>(QStringLiteral("pageText"))->text(), "Page 1 of 2");

    form->fieldEdit("total")->setFocus();
    EXPECT_EQ(pane->page(), 1);
    ASSERT_EQ(pane->canvas()->outlines().size(), 1);
    EXPECT_TRUE(pane->canvas()->outlines()[0].selected);
    form->fieldEdit("vendor")->setFocus();
    EXPECT_EQ(pane->page(), 0);
}

// A failed document shows its message and "Try again" reads it afresh.
TEST_F(ReviewTest, FailedDocumentCanBeTriedAgain)
{
    open();
    addAndWait({"broken.pdf"});
    auto *text = window->review()->findChild<QLabel *>(QStringLiteral("failureText"));
    EXPECT_EQ(text->text(), "Failed: Damaged file");
    QTest::mouseClick(window->review()->findChild<QPushButton *>(QStringLiteral("tryAgain")), Qt::LeftButton);
    EXPECT_EQ(store->docs()[0]->status().kind(), DocStatus::Queued);
}

} // namespace
