#include "platform/qt/qt_cursors.h"

#include <QLineF>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <cmath>
#include <initializer_list>
#include <map>
#include <utility>

#include "view/cursors.h"

namespace {

constexpr int kSide = 32;

/// The numbers that a window of the library's may ask for besides its own pictures.
enum : HCURSOR { kText = 32513, kCross = 32515, kSizeWide = 32644, kSizeHigh = 32645, kHand = 32649 };

struct Picture {
    QPainterPath lines;  // stroked, with a light border so that they show on any ground
    QPainterPath solid;  // filled
    QPointF hot{15.5, 15.5};
};

void Lines(QPainterPath& path, std::initializer_list<QLineF> lines) {
    for (const QLineF& line : lines) {
        path.moveTo(line.p1());
        path.lineTo(line.p2());
    }
}

void Head(QPainterPath& path, QPointF tip, qreal degrees) {
    constexpr qreal kLength = 5.5, kHalf = 3;
    const qreal a = degrees * 3.14159265358979 / 180, c = std::cos(a), s = std::sin(a);
    const auto at = [&](qreal along, qreal across) {
        return QPointF(tip.x() - along * c - across * s, tip.y() - along * s + across * c);
    };
    path.moveTo(tip);
    path.lineTo(at(kLength, kHalf));
    path.lineTo(at(kLength, -kHalf));
    path.closeSubpath();
}

// A ring about a cross: here it goes.
Picture Locate() {
    Picture p;
    p.lines.addEllipse(QPointF(15.5, 15.5), 6, 6);
    Lines(p.lines, {{15.5, 4.5, 15.5, 12.5},
                    {15.5, 18.5, 15.5, 26.5},
                    {4.5, 15.5, 12.5, 15.5},
                    {18.5, 15.5, 26.5, 15.5}});
    return p;
}

// A magnifying glass.
Picture Zoom() {
    Picture p;
    p.hot = {12.5, 12.5};
    p.lines.addEllipse(p.hot, 7, 7);
    Lines(p.lines,
          {{18, 18, 25.5, 25.5}, {19, 18, 26, 25}, {12.5, 9.5, 12.5, 15.5}, {9.5, 12.5, 15.5, 12.5}});
    return p;
}

// A cross with a window at its foot.
Picture Window() {
    Picture p;
    p.hot = {10.5, 10.5};
    Lines(p.lines, {{10.5, 3.5, 10.5, 17.5}, {3.5, 10.5, 17.5, 10.5}});
    p.lines.addRect(QRectF(15.5, 16.5, 12, 9));
    return p;
}

// Two arrows that go round.
Picture Rotate() {
    Picture p;
    const QRectF box(6.5, 6.5, 18, 18);
    p.lines.arcMoveTo(box, 20);
    p.lines.arcTo(box, 20, 130);
    p.lines.arcMoveTo(box, 200);
    p.lines.arcTo(box, 200, 130);
    Head(p.solid, {24.5, 15.5}, 75);
    Head(p.solid, {6.5, 15.5}, 255);
    return p;
}

// Arrows to the four sides.
Picture Pan() {
    Picture p;
    Lines(p.lines, {{15.5, 7, 15.5, 24}, {7, 15.5, 24, 15.5}});
    Head(p.solid, {15.5, 3.5}, 270);
    Head(p.solid, {15.5, 27.5}, 90);
    Head(p.solid, {3.5, 15.5}, 180);
    Head(p.solid, {27.5, 15.5}, 0);
    return p;
}

QCursor Draw(const Picture& picture, int density) {
    QPixmap pixels(kSide * density, kSide * density);
    pixels.setDevicePixelRatio(density);
    pixels.fill(Qt::transparent);
    QPainter painter(&pixels);
    painter.setRenderHint(QPainter::Antialiasing);
    const auto pass = [&](const QColor& color, qreal width) {
        painter.setPen(QPen(color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.setBrush(Qt::NoBrush);
        painter.drawPath(picture.lines);
        painter.setBrush(color);
        painter.setPen(QPen(color, width - 1, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.drawPath(picture.solid);
    };
    pass(Qt::white, 3);
    pass(QColor(0x20, 0x20, 0x20), 1.01);  // a pen of 1 would be a hairline, which ignores the density
    painter.end();
    return QCursor(pixels, static_cast<int>(picture.hot.x()), static_cast<int>(picture.hot.y()));
}

}  // namespace

QCursor CursorPicture(HCURSOR cursor, double density) {
    if (cursor == g_hCursorNull) return Qt::BlankCursor;
    switch (cursor) {
        case IDC_WAIT:
            return Qt::WaitCursor;
        case kText:
            return Qt::IBeamCursor;
        case kCross:
            return Qt::CrossCursor;
        case kSizeWide:
            return Qt::SplitHCursor;
        case kSizeHigh:
            return Qt::SplitVCursor;
        case kHand:
            return Qt::PointingHandCursor;
        default:
            break;
    }
    const std::map<HCURSOR, Picture (*)()> pictures = {{g_hCursorLoc, Locate},
                                                       {g_hCursorZoom, Zoom},
                                                       {g_hCursorWin, Window},
                                                       {g_hCursorRot, Rotate},
                                                       {g_hCursorPan, Pan}};
    const auto found = pictures.find(cursor);
    if (found == pictures.end()) return Qt::ArrowCursor;
    return Draw(found->second(), density > 1 ? 2 : 1);
}
