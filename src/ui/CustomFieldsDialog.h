#pragma once

#include "store/Store.h"

#include <QDialog>
#include <QLineEdit>

class QLabel;
class QToolButton;
class QVBoxLayout;

/// The pattern box of a custom field: draws a red border of 1.5 pixels while it holds a regular
/// expression that does not compile.
class PatternEdit : public QLineEdit {
    Q_OBJECT
public:
    using QLineEdit::QLineEdit;

    bool isInvalid() const { return m_invalid; }
    void setInvalid(bool invalid);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    bool m_invalid = false;
};

/// The sheet where the user defines custom fields: one row per definition (name, keyword or regular
/// expression, pattern, remove), "Add field", import and export of the definitions, and "Done". Every
/// change writes through to the store at once; closing the sheet brings the documents up to date.
class CustomFieldsDialog : public QDialog {
    Q_OBJECT
public:
    explicit CustomFieldsDialog(Store &store, QWidget *parent = nullptr);

    /// True when `pattern` read as a regular expression does not compile (with the extractor's engine).
    static bool isBadRegex(const QString &pattern);
    /// Why `pattern` does not compile, in words, with the engine's own error name; empty when it does.
    static QString regexProblem(const QString &pattern);

    int rowCount() const { return int(m_rows.size()); }
    QLineEdit *nameEdit(int row) const;
    PatternEdit *patternEdit(int row) const;
    QToolButton *keywordButton(int row) const;
    QToolButton *regexButton(int row) const;
    QToolButton *removeButton(int row) const;

    void done(int result) override;

private:
    struct Row {
        QUuid id;
        QWidget *box;
        QLineEdit *name;
        QToolButton *keyword;
        QToolButton *regex;
        PatternEdit *pattern;
        QToolButton *remove;
    };

    void rebuild();
    void showState(const Row &row, const CustomFieldDef &def);
    void showPatternCount(const QList<CustomFieldDef> &defs);
    void change(const QUuid &id, const std::function<void(CustomFieldDef &)> &edit);
    void addField();
    void removeField(const QUuid &id);

    Store &m_store;
    QVBoxLayout *m_rowsLayout;
    QLabel *m_none;
    QLabel *m_manyPatterns; // shown when the definitions hold more patterns than a document has time for
    QList<Row> m_rows;
    QList<CustomFieldDef> m_written; // what this sheet last wrote, to tell its own changes from others'
};
