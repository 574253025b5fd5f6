// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Build tool: renders one SVG drawing as a PNG picture.

#include <QCoreApplication>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <QTextStream>

namespace {

int channelAverage(int sum, int count)
{
    return (sum + count / 2) / count;
}

// Gives transparent pixels next to the drawing the colour of their neighbours. The views filter
// straight-alpha textures linearly: black in the transparent pixels would show as a dark rim.
void spreadColours(QImage& image)
{
    for (int round = 0; round < 2; ++round) {
        const QImage before = image;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (before.pixel(x, y) != 0) continue;
                int count = 0, red = 0, green = 0, blue = 0;
                for (int v = qMax(0, y - 1); v <= qMin(image.height() - 1, y + 1); ++v) {
                    for (int u = qMax(0, x - 1); u <= qMin(image.width() - 1, x + 1); ++u) {
                        const QRgb neighbour = before.pixel(u, v);
                        if (neighbour == 0) continue;
                        ++count;
                        red += qRed(neighbour);
                        green += qGreen(neighbour);
                        blue += qBlue(neighbour);
                    }
                }
                if (count > 0)
                    image.setPixel(x, y,
                                   qRgba(channelAverage(red, count), channelAverage(green, count),
                                         channelAverage(blue, count), 0));
            }
        }
    }
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    QTextStream errors(stderr);
    if (arguments.size() != 5) {
        errors << "usage: svg2png DRAWING.svg PICTURE.png WIDTH HEIGHT\n";
        return 2;
    }
    QSvgRenderer drawing(arguments[1]);
    QImage image(arguments[3].toInt(), arguments[4].toInt(), QImage::Format_ARGB32_Premultiplied);
    if (!drawing.isValid() || image.isNull()) {
        errors << "svg2png: cannot render " << arguments[1] << '\n';
        return 1;
    }
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    drawing.render(&painter);
    painter.end();

    QImage straight = image.convertToFormat(QImage::Format_ARGB32);
    spreadColours(straight);
    if (!straight.save(arguments[2], "PNG")) {
        errors << "svg2png: cannot write " << arguments[2] << '\n';
        return 1;
    }
    return 0;
}
