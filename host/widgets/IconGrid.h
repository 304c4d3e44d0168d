#pragma once
// Where the icons of a menu page are, in the view's coordinates, and how one looks. The pictures come from
// the image cache. User-interface thread.
#include "host/look/look.h"
#include <QRect>
#include <QString>

class QPainter;

class IconGrid
{
public:
    enum State { Normal, Selected, Pressed };

    // At least one column and one row.
    void SetMatrix(int columns, int rows);
    void SetArea(const QRect& area) { m_area = area; }
    int Columns() const { return m_nColumns; }
    int IconsOnPage() const { return m_nColumns * m_nRows; }
    // The cell of the icon at a place (0 is top left, then along the row).
    QRect Cell(int place) const;
    // The place under a point, -1 outside of all cells.
    int PlaceAt(const QPoint& point) const;

    void PaintIcon(QPainter& painter, int place, const QString& picture, const QString& caption,
                   State state) const;
    void PaintPageDots(QPainter& painter, int pages, int page) const;

private:
    QRect TileRect(int place) const;
    void PaintTile(QPainter& painter, const QRect& tile, const QString& picture, State state) const;
    void PaintCaption(QPainter& painter, int place, const QString& caption) const;

    QRect m_area;
    int m_nColumns = 4;
    int m_nRows = 2;
};

// The caption as it fits below an icon: smaller or in two lines, and only a text that is too long even then
// ends in "...".
look::FittedText fitCaption(const QString& caption, int width);
