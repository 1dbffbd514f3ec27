#include "FormPane.h"

#include "ConfidenceBadge.h"
#include "Flags.h"
#include "FocusHighlight.h"
#include "LineItemGrid.h"
#include "SymbolLabel.h"
#include "Theme.h"
#include "ValueEdit.h"
#include "model/Money.h"
#include "model/TypedValue.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

FormPane::FormPane(Store &store, const DocPtr &doc, QWidget *parent)
    : QWidget(parent), m_store(store), m_doc(doc), m_focus(new FocusHighlight(store, this))
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(16, 14, 16, 16);
    layout->setSpacing(10);

    auto *hint = new QLabel(QStringLiteral("Review and correct the fields, then approve."));
    hint->setStyleSheet(QStringLiteral("color: %1").arg(Theme::secondaryText().name()));
    layout->addWidget(hint);

    m_duplicate = new QFrame;
    m_duplicate->setObjectName(QStringLiteral("duplicateWarning"));
    m_duplicate->setStyleSheet(QStringLiteral("#duplicateWarning { background: %1; border-radius: 6px; }")
                                   .arg(Theme::faded(Theme::orange(), 0.12).name(QColor::HexArgb)));
    auto *dupLayout = new QHBoxLayout(m_duplicate);
    dupLayout->setContentsMargins(10, 7, 10, 7);
    dupLayout->addWidget(
        new SymbolLabel(QStringLiteral("exclamationmark.triangle.fill"), 16, Theme::orange()));
    auto *dupText = new QLabel(
        QStringLiteral("Likely duplicate: another document has the same vendor, number and total."));
    dupText->setWordWrap(true);
    dupLayout->addWidget(dupText, 1);
    layout->addWidget(m_duplicate);

    m_fileNotice = new QLabel;
    m_fileNotice->setObjectName(QStringLiteral("fileNotice"));
    m_fileNotice->setWordWrap(true);
    m_fileNotice->setStyleSheet(QStringLiteral("color: %1").arg(Theme::orange().name()));
    layout->addWidget(m_fileNotice);

    m_fieldsGrid = new QGridLayout;
    m_fieldsGrid->setHorizontalSpacing(10);
    m_fieldsGrid->setVerticalSpacing(6);
    m_fieldsGrid->setColumnStretch(1, 1);
    layout->addLayout(m_fieldsGrid);

    layout->addSpacing(6);
    m_lineItems = new LineItemGrid(m_doc, *m_focus);
    layout->addWidget(m_lineItems);
    layout->addStretch();

    connect(m_doc.get(), &DocItem::changed, this, &FormPane::refresh);
    // Duplicates depend on the other documents too.
    connect(&m_store, &Store::docChanged, this, [this](DocItem *other) {
        if (other != m_doc.get())
            showDuplicate();
        else
            showFileNotice(); // may come without a change to the document (its file was found changed)
    });
    refresh();
}

QLineEdit *FormPane::fieldEdit(const QString &key) const
{
    for (const FieldRow &row : m_fieldRows) {
        if (row.key == key)
            return row.edit;
    }
    return nullptr;
}

QLabel *FormPane::note(const QString &key) const
{
    for (const FieldRow &row : m_fieldRows) {
        if (row.key == key)
            return row.note;
    }
    return nullptr;
}

ConfidenceBadge *FormPane::badge(const QString &key) const
{
    for (const FieldRow &row : m_fieldRows) {
        if (row.key == key)
            return row.badge;
    }
    return nullptr;
}

void FormPane::showDuplicate()
{
    const bool duplicate = m_store.duplicateIDs().contains(m_doc->id());
    if (duplicate) {
        // Once shown, the warning keeps its place: fixing the duplicate must not pull the form up
        // under the pointer.
        QSizePolicy policy = m_duplicate->sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        m_duplicate->setSizePolicy(policy);
    }
    m_duplicate->setVisible(duplicate);
}

void FormPane::showFileNotice()
{
    const QString notice = m_store.fileNotice(m_doc);
    m_fileNotice->setText(notice);
    m_fileNotice->setVisible(!notice.isEmpty());
}

void FormPane::refresh()
{
    showDuplicate();
    showFileNotice();

    const QList<Field> &fields = m_doc->fields();
    bool sameFields = fields.size() == m_fieldRows.size();
    for (qsizetype i = 0; sameFields && i < fields.size(); ++i)
        sameFields = fields[i].key == m_fieldRows[i].key;
    if (!sameFields)
        rebuildFields();
    const QList<Flags::Flag> flags = Flags::of(*m_doc, m_store.slowPatterns());
    const QLocale locale = Money::userLocale();
    for (qsizetype i = 0; i < fields.size(); ++i) {
        const Field &f = fields[i];
        FieldRow &row = m_fieldRows[i];
        row.label->setText(f.label);
        if (row.edit->text() != f.value)
            row.edit->setValue(f.value);
        const QStringList reasons = Flags::reasonsFor(flags, f.key);
        row.badge->setState(f.confidence, f.edited, f.value.isEmpty(), reasons);
        // Reasons in the form itself, not only in the badge's tooltip; an invalid typed value in red.
        const bool invalid = std::any_of(flags.cbegin(), flags.cend(), [&](const Flags::Flag &flag) {
            return flag.key == f.key && flag.invalid;
        });
        QStringList lines = reasons;
        if (f.edited && !f.isCustom) {
            // A typed amount or date in another form than the export's says how it will be written.
            const std::optional<QString> exported =
                TypedValue::exported(f.value, TypedValue::ofField(f.key), locale);
            if (exported && *exported != f.value)
                lines.append(QStringLiteral("Exported as ") + *exported);
        }
        const QString note = lines.join(QLatin1Char('\n'));
        const QColor color = invalid             ? Theme::red()
                             : reasons.isEmpty() ? Theme::secondaryText()
                                                 : Theme::orange();
        row.note->setText(note);
        row.note->setStyleSheet(QStringLiteral("color: %1").arg(color.name()));
        row.note->setVisible(!note.isEmpty());
    }
    m_lineItems->refresh();
}

void FormPane::rebuildFields()
{
    // A widget of the old rows may be the sender of the signal that caused the rebuild: delete them later.
    for (const FieldRow &row : std::as_const(m_fieldRows)) {
        for (QWidget *widget : std::initializer_list<QWidget *>{row.label, row.edit, row.badge, row.note}) {
            m_fieldsGrid->removeWidget(widget);
            widget->hide();
            widget->deleteLater();
        }
    }
    m_fieldRows.clear();
    const QList<Field> &fields = m_doc->fields();
    for (qsizetype i = 0; i < fields.size(); ++i) {
        const QString key = fields[i].key;
        FieldRow row{key, new QLabel, new ValueEdit, new ConfidenceBadge, new QLabel};
        row.edit->setObjectName(QStringLiteral("field-") + key);
        row.edit->setClearButtonEnabled(false);
        row.label->setBuddy(row.edit);
        row.label->setMinimumWidth(84);
        row.note->setObjectName(QStringLiteral("note-") + key);
        row.note->setWordWrap(true);
        row.note->setFont(Theme::caption());
        row.note->hide();
        // Each field takes two grid rows: its box, then the note under it.
        m_fieldsGrid->addWidget(row.label, int(2 * i), 0);
        m_fieldsGrid->addWidget(row.edit, int(2 * i), 1);
        m_fieldsGrid->addWidget(row.badge, int(2 * i), 2, Qt::AlignVCenter);
        m_fieldsGrid->addWidget(row.note, int(2 * i + 1), 1, 1, 2);
        connect(row.edit, &QLineEdit::textEdited, this,
                [this, key](const QString &text) { m_doc->editField(key, text); });
        connect(row.edit, &QLineEdit::editingFinished, this, [this, key] { commitTyped(key); });
        m_focus->watch(row.edit, key);
        m_fieldRows.append(row);
    }
}

void FormPane::commitTyped(const QString &key)
{
    for (const Field &f : m_doc->fields()) {
        if (f.key != key)
            continue;
        // Only what the user typed: an extracted value stays as it was read.
        if (!f.edited || f.isCustom)
            return;
        const std::optional<QString> exported =
            TypedValue::exported(f.value, TypedValue::ofField(key), Money::userLocale());
        if (exported && *exported != f.value)
            m_doc->editField(key, *exported);
        return;
    }
}
