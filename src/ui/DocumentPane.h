#pragma once

#include "store/Store.h"

#include <QHash>
#include <QWidget>

class PageCanvas;
class QCheckBox;
class QLabel;
class QScrollArea;
class QToolButton;

/// The left half of the review screen: one page of the document with an outline over every value that
/// was read from it, page buttons for documents of several pages, the "Show detected fields" toggle and
/// the legend of outline colours. Focusing a value that lies on another page turns to that page. The page
/// zooms (Ctrl + and Ctrl −, Ctrl + wheel, fit width, fit page) and turns by quarter turns, per page;
/// outlines follow both.
class DocumentPane : public QWidget {
    Q_OBJECT
public:
    DocumentPane(Store &store, const DocPtr &doc, QWidget *parent = nullptr);

    /// Zero-based index of the page shown.
    int page() const { return m_page; }
    void setPage(int page);
    int pageCount() const;

    bool showOutlines() const { return m_showOutlines; }
    void setShowOutlines(bool show);

    PageCanvas *canvas() const { return m_canvas; }
    QScrollArea *pageScroll() const { return m_scroll; }
    /// Says why a read document shows no page (loading, or its file moved or changed); hidden otherwise.
    QLabel *pageNote() const { return m_pageNote; }

    /// How the page is sized: to fit the whole page, to fit its width, or at a scale the user chose.
    enum class Fit { Page, Width, Free };
    Fit fit() const { return m_fit; }
    void setFit(Fit fit);
    /// Widget pixels per image pixel now, whatever the fit.
    double scale() const;
    /// Zooms by `steps` steps of 25 % (negative: out), keeping the middle of the view in place.
    void zoom(int steps);
    /// Turns the shown page a quarter turn clockwise; each page keeps its own turn.
    void rotate();
    int quarterTurns() const;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void refresh();
    void followHighlight();
    void applyFit();
    void setScale(double scale);

    Store &m_store;
    DocPtr m_doc;
    int m_page = 0;
    bool m_showOutlines = true;
    Fit m_fit = Fit::Page;
    double m_freeScale = 1.0;
    QHash<int, int> m_turns; // page → clockwise quarter turns

    QWidget *m_pageNav;
    QToolButton *m_previous;
    QToolButton *m_next;
    QLabel *m_pageText;
    QCheckBox *m_toggle;
    QLabel *m_zoomText;
    QLabel *m_pageNote; // why no page is shown

    QScrollArea *m_scroll;
    PageCanvas *m_canvas;
};
