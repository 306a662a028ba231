#pragma once
// Pixel helpers shared by the drawing tests.
#include <algorithm>
#include <map>
#include <string>

#include "kx/host/bitmap.h"

namespace kx::test {

// Bounding box (exclusive) of the pixels that are not the background colour; an
// inverted rectangle when there are none.
inline TRect InkBounds(const TBitmap& b, TColor background = clWhite) {
    TRect r{b.Width(), b.Height(), 0, 0};
    for (int y = 0; y < b.Height(); ++y)
        for (int x = 0; x < b.Width(); ++x)
            if (b.Pixel(x, y) != background) {
                r.Left = std::min(r.Left, x);
                r.Top = std::min(r.Top, y);
                r.Right = std::max(r.Right, x + 1);
                r.Bottom = std::max(r.Bottom, y + 1);
            }
    return r;
}

// The picture as rows of letters, one letter per colour in order of first appearance
// ('.' for white), for failure messages that show where two pictures differ.
inline std::string ColourRows(const TBitmap& b) {
    std::map<TColor, char> letters{{clWhite, '.'}};
    std::string s;
    for (int y = 0; y < b.Height(); ++y) {
        for (int x = 0; x < b.Width(); ++x) {
            const TColor c = b.Pixel(x, y);
            auto it = letters.find(c);
            if (it == letters.end())
                it = letters.emplace(c, char('A' + (letters.size() - 1) % 26)).first;
            s += it->second;
        }
        s += '\n';
    }
    return s;
}

}  // namespace kx::test
