#include "CustomFieldsDialog.h"

#include "Icons.h"
#include "PlatformText.h"
#include "Theme.h"
#include "extract/CustomField.h"
#include "extract/Regex.h"
#include "model/CustomFieldCodec.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>
#include <QRegularExpression>
#include <QScrollArea>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

QString patternPlaceholder(bool isRegex)
{
    return isRegex ? QStringLiteral("e.g. PO[- ]?(\\d+)") : QStringLiteral("e.g. Purchase order");
}

// One half of the two-way "Keyword" / "Regex" choice; the chosen half is filled with the accent colour.
QToolButton *segment(const QString &text, bool left)
{
    auto *button = new QToolButton;
    button->setText(text);
    button->setCheckable(true);
    button->setToolButtonStyle(Qt::ToolButtonTextOnly);
    button->setFixedWidth(std::max(50, button->fontMetrics().horizontalAdvance(text) + 16));
    const QString corners =
        left ? QStringLiteral("border-top-left-radius: 5px; border-bottom-left-radius: 5px;")
             : QStringLiteral("border-top-right-radius: 5px; border-bottom-right-radius: 5px; "
                              "border-left: none;");
    button->setStyleSheet(
        QStringLiteral("QToolButton { border: 1px solid palette(mid); background: palette(base); "
                       "padding: 3px 4px; %1 }"
                       "QToolButton:checked { background: %2; color: white; border-color: %2; }")
            .arg(corners, Theme::accent().name()));
    return button;
}

} // namespace

void PatternEdit::setInvalid(bool invalid)
{
    if (invalid == m_invalid)
        return;
    m_invalid = invalid;
    update();
}

void PatternEdit::paintEvent(QPaintEvent *event)
{
    QLineEdit::paintEvent(event);
    if (!m_invalid)
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Theme::red(), 1.5));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.75, 0.75, -0.75, -0.75), 3, 3);
}

CustomFieldsDialog::CustomFieldsDialog(Store &store, QWidget *parent) : QDialog(parent), m_store(store)
{
    setWindowTitle(QStringLiteral("Custom fields"));
    setWindowFlag(Qt::Sheet);
    setWindowModality(Qt::WindowModal);
    setMinimumSize(680, 420);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 18, 20, 16);
    layout->setSpacing(10);

    auto *title = new QLabel(QStringLiteral("Custom fields"));
    title->setFont(Theme::title(1.35));
    layout->addWidget(title);
    auto *explanation = new QLabel(PlatformText::adapt(QStringLiteral(
        "Add your own fields. Each one looks for a keyword (the text after it is used) or a regular "
        "expression (the first capture group, or the whole match). Definitions are saved as JSON on "
        "this Mac.")));
    explanation->setWordWrap(true);
    explanation->setStyleSheet(QStringLiteral("color: %1").arg(Theme::secondaryText().name()));
    layout->addWidget(explanation);
    m_manyPatterns = new QLabel;
    m_manyPatterns->setObjectName(QStringLiteral("manyPatterns"));
    m_manyPatterns->setWordWrap(true);
    m_manyPatterns->setStyleSheet(QStringLiteral("color: %1").arg(Theme::red().name()));
    m_manyPatterns->hide();
    layout->addWidget(m_manyPatterns);

    auto *rows = new QWidget;
    m_rowsLayout = new QVBoxLayout(rows);
    m_rowsLayout->setContentsMargins(0, 4, 0, 4);
    m_rowsLayout->setSpacing(6);
    m_none = new QLabel(QStringLiteral("No custom fields yet."));
    m_none->setObjectName(QStringLiteral("noCustomFields"));
    m_none->setStyleSheet(QStringLiteral("color: %1").arg(Theme::secondaryText().name()));
    m_rowsLayout->addWidget(m_none);
    m_rowsLayout->addStretch();
    auto *scroll = new QScrollArea;
    scroll->setWidget(rows);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    layout->addWidget(scroll, 1);

    auto *bar = new QHBoxLayout;
    auto *add = new QPushButton(Icons::icon(QStringLiteral("plus")), QStringLiteral("Add field"));
    add->setObjectName(QStringLiteral("addField"));
    add->setAutoDefault(false);
    auto *import = new QPushButton(QStringLiteral("Import JSON\u2026"));
    import->setAutoDefault(false);
    auto *exportButton = new QPushButton(QStringLiteral("Export JSON\u2026"));
    exportButton->setAutoDefault(false);
    auto *doneButton = new QPushButton(QStringLiteral("Done"));
    doneButton->setObjectName(QStringLiteral("done"));
    doneButton->setDefault(true);
    bar->addWidget(add);
    bar->addStretch();
    bar->addWidget(import);
    bar->addWidget(exportButton);
    bar->addSpacing(12);
    bar->addWidget(doneButton);
    layout->addLayout(bar);

    connect(add, &QPushButton::clicked, this, &CustomFieldsDialog::addField);
    connect(import, &QPushButton::clicked, &m_store, &Store::importCustomFields);
    connect(exportButton, &QPushButton::clicked, &m_store, &Store::exportCustomFields);
    connect(doneButton, &QPushButton::clicked, this, &QDialog::accept);
    connect(&m_store, &Store::customFieldsChanged, this, [this] {
        // Changes made here are already shown; only an import (or another writer) needs new rows.
        if (m_store.customFields() != m_written)
            rebuild();
        else
            for (qsizetype i = 0; i < std::min(m_rows.size(), m_written.size()); ++i)
                showState(m_rows[i], m_written[i]);
    });
    rebuild();
}

bool CustomFieldsDialog::isBadRegex(const QString &pattern)
{
    return !Regex::tryCompile(pattern).has_value();
}

QString CustomFieldsDialog::regexProblem(const QString &pattern)
{
    const QString error = Regex::compileError(pattern);
    if (error.isEmpty())
        return {};
    // "U_REGEX_MISMATCHED_PAREN at offset 4" reads "Mismatched paren at character 5".
    const QString marker = QStringLiteral(" at offset ");
    const qsizetype at = error.indexOf(marker);
    const QString name = at < 0 ? error : error.left(at);
    QString words = name;
    words.remove(QRegularExpression(QStringLiteral("^U_(REGEX_)?"))).replace(u'_', u' ');
    words = words.toLower();
    if (!words.isEmpty())
        words[0] = words[0].toUpper();
    if (at >= 0)
        words +=
            QStringLiteral(" at character ") + QString::number(error.mid(at + marker.size()).toInt() + 1);
    return QStringLiteral("This regular expression does not compile: ") + words + QStringLiteral(" (") +
           name + QStringLiteral(").");
}

QLineEdit *CustomFieldsDialog::nameEdit(int row) const
{
    return row >= 0 && row < m_rows.size() ? m_rows[row].name : nullptr;
}

PatternEdit *CustomFieldsDialog::patternEdit(int row) const
{
    return row >= 0 && row < m_rows.size() ? m_rows[row].pattern : nullptr;
}

QToolButton *CustomFieldsDialog::keywordButton(int row) const
{
    return row >= 0 && row < m_rows.size() ? m_rows[row].keyword : nullptr;
}

QToolButton *CustomFieldsDialog::regexButton(int row) const
{
    return row >= 0 && row < m_rows.size() ? m_rows[row].regex : nullptr;
}

QToolButton *CustomFieldsDialog::removeButton(int row) const
{
    return row >= 0 && row < m_rows.size() ? m_rows[row].remove : nullptr;
}

void CustomFieldsDialog::done(int result)
{
    // However the sheet closes, the documents follow the definitions now.
    m_store.syncCustomFields();
    QDialog::done(result);
}

void CustomFieldsDialog::rebuild()
{
    for (const Row &row : std::as_const(m_rows)) {
        m_rowsLayout->removeWidget(row.box);
        row.box->hide();
        row.box->deleteLater();
    }
    m_rows.clear();
    m_written = m_store.customFields();
    m_none->setVisible(m_written.isEmpty());
    showPatternCount(m_written);

    for (qsizetype i = 0; i < m_written.size(); ++i) {
        const CustomFieldDef &def = m_written[i];
        const QUuid id = def.id;
        Row row{id,
                new QWidget,
                new QLineEdit,
                segment(QStringLiteral("Keyword"), true),
                segment(QStringLiteral("Regex"), false),
                new PatternEdit,
                new QToolButton};
        auto *h = new QHBoxLayout(row.box);
        h->setContentsMargins(0, 0, 0, 0);
        h->setSpacing(8);
        row.name->setPlaceholderText(QStringLiteral("Field name"));
        row.name->setFixedWidth(150);
        row.name->setText(def.name);
        h->addWidget(row.name);

        auto *group = new QButtonGroup(row.box);
        group->setExclusive(true);
        group->addButton(row.keyword);
        group->addButton(row.regex);
        auto *segments = new QHBoxLayout;
        segments->setSpacing(0);
        segments->addWidget(row.keyword);
        segments->addWidget(row.regex);
        h->addLayout(segments);

        row.pattern->setText(def.pattern);
        h->addWidget(row.pattern, 1);
        row.remove->setIcon(Icons::icon(QStringLiteral("minus.circle"), Theme::red()));
        row.remove->setAutoRaise(true);
        row.remove->setToolTip(QStringLiteral("Remove"));
        h->addWidget(row.remove);
        showState(row, def);

        connect(row.name, &QLineEdit::textEdited, this, [this, id, edit = row.name](const QString &text) {
            // A name another field or a built-in one has is refused: the export would keep one value.
            QList<CustomFieldDef> defs = m_store.customFields();
            for (CustomFieldDef &d : defs) {
                if (d.id == id)
                    d.name = text;
            }
            const std::optional<QString> conflict = CustomFieldCodec::nameConflict(defs);
            edit->setToolTip(conflict.value_or(QString()));
            edit->setStyleSheet(
                conflict ? QStringLiteral("QLineEdit { border: 1.5px solid %1; }").arg(Theme::red().name())
                         : QString());
            if (!conflict)
                change(id, [&](CustomFieldDef &d) { d.name = text; });
        });
        connect(row.pattern, &QLineEdit::textEdited, this, [this, id](const QString &text) {
            change(id, [&](CustomFieldDef &d) { d.pattern = text; });
        });
        connect(row.keyword, &QToolButton::clicked, this,
                [this, id] { change(id, [](CustomFieldDef &d) { d.isRegex = false; }); });
        connect(row.regex, &QToolButton::clicked, this,
                [this, id] { change(id, [](CustomFieldDef &d) { d.isRegex = true; }); });
        connect(row.remove, &QToolButton::clicked, this, [this, id] { removeField(id); });

        m_rowsLayout->insertWidget(m_rowsLayout->count() - 1, row.box);
        m_rows.append(row);
    }
}

void CustomFieldsDialog::showState(const Row &row, const CustomFieldDef &def)
{
    row.keyword->setChecked(!def.isRegex);
    row.regex->setChecked(def.isRegex);
    row.pattern->setPlaceholderText(patternPlaceholder(def.isRegex));
    // A pattern stopped at its matching bound is flagged like one that does not compile.
    const bool slow = def.isRegex && m_store.slowPatterns().contains(Extractor::customSource(def));
    const QString problem =
        def.isRegex ? (slow ? QStringLiteral("This pattern is too slow: it was stopped and left empty on "
                                             "some documents.")
                            : regexProblem(def.pattern))
                    : QString();
    row.pattern->setInvalid(!problem.isEmpty());
    row.pattern->setToolTip(problem);
}

void CustomFieldsDialog::showPatternCount(const QList<CustomFieldDef> &defs)
{
    const auto count =
        std::count_if(defs.cbegin(), defs.cend(), [](const CustomFieldDef &d) { return d.isRegex; });
    // All patterns of a document share one time budget, so past a few dozen the last ones go empty.
    m_manyPatterns->setVisible(count > Extractor::manyPatterns);
    m_manyPatterns->setText(
        QStringLiteral("%1 regular expressions: each document gives all of them together a limited time, so "
                       "with this many the later ones may be left empty. Keep at most %2.")
            .arg(count)
            .arg(Extractor::manyPatterns));
}

void CustomFieldsDialog::change(const QUuid &id, const std::function<void(CustomFieldDef &)> &edit)
{
    QList<CustomFieldDef> defs = m_store.customFields();
    for (qsizetype i = 0; i < defs.size(); ++i) {
        if (defs[i].id != id)
            continue;
        edit(defs[i]);
        for (const Row &row : std::as_const(m_rows)) {
            if (row.id == id)
                showState(row, defs[i]);
        }
        m_written = defs;
        m_store.setCustomFields(defs);
        showPatternCount(defs);
        return;
    }
}

void CustomFieldsDialog::addField()
{
    CustomFieldDef def; // a fresh id, keyword mode
    QList<CustomFieldDef> defs = m_store.customFields();
    defs.append(def);
    // "New field", else "New field 2", …: names must stay apart.
    for (int n = 1; defs.last().name.isEmpty() || CustomFieldCodec::nameConflict(defs); ++n)
        defs.last().name = n == 1 ? QStringLiteral("New field") : QStringLiteral("New field %1").arg(n);
    m_store.setCustomFields(defs); // differs from what is shown, so the rows are rebuilt
    if (!m_rows.isEmpty()) {
        m_rows.constLast().name->setFocus();
        m_rows.constLast().name->selectAll();
    }
}

void CustomFieldsDialog::removeField(const QUuid &id)
{
    QList<CustomFieldDef> defs = m_store.customFields();
    defs.removeIf([&](const CustomFieldDef &d) { return d.id == id; });
    m_store.setCustomFields(defs);
}
