// Draws the program's icon at the sizes a desktop asks for. The images of
// data/icons are this drawing, saved by `make icons`.
#include "shell/AppIcon.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

#include <algorithm>
#include <cmath>

namespace morvanta::shell {

QImage ApplicationIconImage(int size) {
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const double s = size / 64.0;

    QPainterPath background;
    background.addRoundedRect(QRectF(2 * s, 2 * s, 60 * s, 60 * s), 12 * s, 12 * s);
    QLinearGradient gradient(0, 0, 0, size);
    gradient.setColorAt(0, QColor(0x2f, 0x5d, 0x8a));
    gradient.setColorAt(1, QColor(0x1b, 0x36, 0x55));
    painter.fillPath(background, gradient);

    // Three tracks, each with clips, as a multitrack session looks.
    const QColor clips[] = {QColor(0x7f, 0xd1, 0x8b), QColor(0xf2, 0xc1, 0x4e), QColor(0x6c, 0xb4, 0xee)};
    const double lanes[][2][2] = {{{8, 30}, {34, 56}}, {{14, 42}, {46, 56}}, {{8, 22}, {26, 50}}};
    for (int lane = 0; lane < 3; ++lane) {
        const double top = (12 + lane * 15) * s;
        for (const auto& clip : lanes[lane]) {
            QPainterPath block;
            block.addRoundedRect(QRectF(clip[0] * s, top, (clip[1] - clip[0]) * s, 10 * s), 2 * s, 2 * s);
            painter.fillPath(block, clips[lane]);
            // A little waveform on each clip.
            painter.setPen(QPen(clips[lane].darker(160), std::max(1.0, s)));
            for (double x = clip[0] + 2; x < clip[1] - 1; x += 2.5) {
                const double h = (2 + std::abs(std::sin(x * 0.9)) * 3) * s;
                painter.drawLine(QPointF(x * s, top + 5 * s - h), QPointF(x * s, top + 5 * s + h));
            }
        }
    }
    painter.end();
    return image;
}

QIcon ApplicationIcon() {
    QIcon icon;
    for (int size : kApplicationIconSizes) icon.addPixmap(QPixmap::fromImage(ApplicationIconImage(size)));
    return icon;
}

}  // namespace morvanta::shell
