#pragma once

#include "Theme.h"

#include <QString>
#include <QStringList>
#include <QWidget>

/// What a confidence badge says: its text, tone and tooltip.
struct BadgeLook {
    QString text;
    Theme::Tone tone;
    QString tooltip;

    bool operator==(const BadgeLook &) const = default;
};

/// The badge beside a field: "Check" in orange while the value is in doubt (the reasons in its tooltip,
/// whoever wrote the value), "Edited" once the user changed it, "Not found" for an empty value that
/// nothing supported, otherwise the confidence in percent (rounded, halves away from zero), orange
/// below 0.7 and green from there.
class ConfidenceBadge : public QWidget {
    Q_OBJECT
public:
    explicit ConfidenceBadge(QWidget *parent = nullptr);

    static BadgeLook look(double confidence, bool edited, bool empty, const QStringList &doubts = {});

    void setState(double confidence, bool edited, bool empty, const QStringList &doubts = {});
    const BadgeLook &currentLook() const { return m_look; }
    QString text() const { return m_look.text; }

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *) override;

private:
    BadgeLook m_look;
};
