#pragma once

#include <QLineEdit>

/// A text box of the form. A value set from the document shows its beginning (a vendor's name, not
/// the end of its address), and while the value is wider than the box its full text is the tooltip.
class ValueEdit : public QLineEdit {
    Q_OBJECT
public:
    explicit ValueEdit(QWidget *parent = nullptr);

    /// Shows `value` from its first character.
    void setValue(const QString &value);
    /// True when the whole text is visible in the box.
    bool fits() const;
    /// Why the text is not what the box takes: a red frame, and the reason as the tooltip; empty clears it.
    void setProblem(const QString &problem);
    const QString &problem() const { return m_problem; }

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void updateToolTip();

    QString m_problem;
};
