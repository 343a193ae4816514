// The images of grids, dialog buttons and toolbar commands, drawn in code.
#include "ui/ImageSet.h"

#include "dialog/ButtonIcons.h"
#include "grid/GridImages.h"

#include <QApplication>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <QStyle>

#include <functional>
#include <map>

namespace {

using Painter = std::function<void(QPainter&, int size)>;

QIcon Draw(int size, const Painter& paint) {
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    paint(p, size);
    return QIcon(pixmap);
}

void Disc(QPainter& p, int s, const QColor& colour) {
    p.setPen(colour.darker(140));
    p.setBrush(colour);
    p.drawEllipse(QRectF(1.5, 1.5, s - 3.0, s - 3.0));
}

void Glyph(QPainter& p, int s, const QString& text, const QColor& colour, bool bold = true) {
    QFont font = p.font();
    font.setPixelSize(s * 2 / 3);
    font.setBold(bold);
    p.setFont(font);
    p.setPen(colour);
    p.drawText(QRect(0, 0, s, s), Qt::AlignCenter, text);
}

/// A small table: the header row and column shaded.
void Table(QPainter& p, int s) {
    p.setPen(QColor(90, 90, 90));
    p.setBrush(Qt::white);
    p.drawRect(QRectF(1.5, 2.5, s - 3.0, s - 5.0));
    p.fillRect(QRectF(2, 3, s - 4.0, 3), QColor(170, 190, 220));
    p.fillRect(QRectF(2, 3, 4, s - 6.0), QColor(170, 190, 220));
    for (int y = 7; y < s - 3; y += 3)
        p.drawLine(QPointF(2, y + 0.5), QPointF(s - 2, y + 0.5));
}

void Arrow(QPainter& p, int s, bool right, const QColor& colour) {
    QPainterPath path;
    const double m = s / 2.0;
    if (right) {
        path.moveTo(3, m - 3);
        path.lineTo(m, m - 3);
        path.lineTo(m, 2);
        path.lineTo(s - 2, m);
        path.lineTo(m, s - 2);
        path.lineTo(m, m + 3);
        path.lineTo(3, m + 3);
    } else {
        path.moveTo(s - 3, m - 3);
        path.lineTo(m, m - 3);
        path.lineTo(m, 2);
        path.lineTo(2, m);
        path.lineTo(m, s - 2);
        path.lineTo(m, m + 3);
        path.lineTo(s - 3, m + 3);
    }
    path.closeSubpath();
    p.setPen(colour.darker(150));
    p.setBrush(colour);
    p.drawPath(path);
}

const std::map<int, Painter>& GridPainters() {
    static const std::map<int, Painter> painters = {
        {GridImage::Uvek,
         [](QPainter& p, int s) {
             Disc(p, s, QColor(60, 160, 70));
             Glyph(p, s, QStringLiteral("+"), Qt::white);
         }},
        {GridImage::Nikad,
         [](QPainter& p, int s) {
             Disc(p, s, QColor(200, 50, 45));
             Glyph(p, s, QStringLiteral("\u00d7"), Qt::white);
         }},
        {GridImage::Zaglavlje, [](QPainter& p, int s) { Table(p, s); }},
        {GridImage::Tekuci, [](QPainter& p, int s) { Arrow(p, s, true, QColor(240, 170, 40)); }},
        {GridImage::Fiksno,
         [](QPainter& p, int s) {
             p.setPen(QColor(70, 70, 70));
             p.setBrush(QColor(150, 150, 160));
             p.drawRect(QRectF(3.5, s / 2.0 - 0.5, s - 7.0, s / 2.0 - 2.0));
             p.setBrush(Qt::NoBrush);
             p.drawArc(QRectF(5.5, 2.5, s - 11.0, s - 6.0), 0, 180 * 16);
         }},
        {GridImage::Pravila,
         [](QPainter& p, int s) {
             p.setPen(QColor(60, 60, 60));
             p.setBrush(QColor(250, 240, 200));
             p.drawRect(QRectF(2.5, 1.5, s - 5.0, s - 3.0));
             for (int y = 5; y < s - 3; y += 3)
                 p.drawLine(QPointF(5, y + 0.5), QPointF(s - 5, y + 0.5));
         }},
        {GridImage::Izabrani, [](QPainter& p, int s) { Arrow(p, s, true, QColor(40, 110, 210)); }},
        {GridImage::Seizmicki,
         [](QPainter& p, int s) {
             QPainterPath path;
             path.moveTo(1, s / 2.0);
             const double step = (s - 2) / 6.0;
             for (int i = 1; i <= 6; ++i)
                 path.lineTo(1 + i * step, s / 2.0 + ((i % 2 != 0) ? -1 : 1) * (s / 2.0 - 3));
             p.setPen(QPen(QColor(170, 60, 30), 1.6));
             p.drawPath(path);
         }},
    };
    return painters;
}

} // namespace

QIcon ImageSet::Grid(int number) {
    static std::map<int, QIcon> cache;
    if (auto it = cache.find(number); it != cache.end())
        return it->second;
    const auto& painters = GridPainters();
    const auto painter = painters.find(number);
    QIcon icon = painter == painters.end() ? QIcon() : Draw(16, painter->second);
    cache.emplace(number, icon);
    return icon;
}

QIcon ImageSet::Button(int icon) {
    // The numbers of dialog/ButtonIcons.h.
    static std::map<int, QIcon> cache;
    if (auto it = cache.find(icon); it != cache.end())
        return it->second;
    const QStyle* style = QApplication::style();
    QIcon result;
    switch (icon) {
    case ButtonIcon::Dodaj:
    case ButtonIcon::Uvek:
        result = Grid(GridImage::Uvek);
        break;
    case ButtonIcon::Brisi:
    case ButtonIcon::Nikad:
        result = Grid(GridImage::Nikad);
        break;
    case ButtonIcon::BrisiSve:
        result = style->standardIcon(QStyle::SP_TrashIcon);
        break;
    case ButtonIcon::Gore:
        result = style->standardIcon(QStyle::SP_ArrowUp);
        break;
    case ButtonIcon::Dole:
        result = style->standardIcon(QStyle::SP_ArrowDown);
        break;
    case ButtonIcon::Sortiranje:
        result = Draw(16, [](QPainter& p, int s) {
            Glyph(p, s, QStringLiteral("\u21c5"), QColor(40, 80, 150));
        });
        break;
    case ButtonIcon::Generisanje:
        result = Draw(16, [](QPainter& p, int s) {
            Glyph(p, s, QStringLiteral("\u03a3"), QColor(150, 40, 40));
        });
        break;
    case ButtonIcon::Ucitavanje:
        result = style->standardIcon(QStyle::SP_DialogOpenButton);
        break;
    case ButtonIcon::Snimanje:
        result = style->standardIcon(QStyle::SP_DialogSaveButton);
        break;
    case ButtonIcon::Uvoz:
        result = style->standardIcon(QStyle::SP_DirOpenIcon);
        break;
    case ButtonIcon::Naziv:
        result = Draw(
            16, [](QPainter& p, int s) { Glyph(p, s, QStringLiteral("A"), QColor(40, 40, 40)); });
        break;
    default:
        break;
    }
    cache.emplace(icon, result);
    return result;
}

QIcon ImageSet::Command(int icon) {
    // The numbers of CButtonST: load cases, previous, next, combinations.
    static std::map<int, QIcon> cache;
    if (auto it = cache.find(icon); it != cache.end())
        return it->second;
    QIcon result;
    switch (icon) {
    case 1:
        result = Draw(24, [](QPainter& p, int s) {
            Table(p, s);
            Glyph(p, s, QStringLiteral("P"), QColor(30, 60, 140));
        });
        break;
    case 2:
        result = Draw(24, [](QPainter& p, int s) { Arrow(p, s, false, QColor(70, 130, 200)); });
        break;
    case 3:
        result = Draw(24, [](QPainter& p, int s) { Arrow(p, s, true, QColor(70, 130, 200)); });
        break;
    case 4:
        result = Draw(24, [](QPainter& p, int s) {
            Table(p, s);
            Glyph(p, s, QStringLiteral("\u03a3"), QColor(150, 40, 40));
        });
        break;
    default:
        break;
    }
    cache.emplace(icon, result);
    return result;
}
