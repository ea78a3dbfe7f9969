#pragma once

#include <QString>
#include <QtGlobal>

// Minimal drawing on a BGRX pixel buffer (rectangles and a 5x7 bitmap font), so the
// simulated screen needs no GUI library.
class BgrxCanvas {
public:
    BgrxCanvas(uchar *pixels, int width, int height, int stride);

    static constexpr quint32 rgb(int r, int g, int b)
    {
        return quint32(r) << 16 | quint32(g) << 8 | quint32(b);
    }

    void fillRect(int x, int y, int w, int h, quint32 color);
    // Upper-case letters, digits and common punctuation; other characters draw as '?'.
    // Each glyph is 6 × `scale` pixels wide including spacing.
    void drawText(int x, int y, const QString &text, int scale, quint32 color);
    static int textWidth(const QString &text, int scale) { return int(text.size()) * 6 * scale; }

private:
    uchar *m_pixels;
    int m_width;
    int m_height;
    int m_stride;
};
