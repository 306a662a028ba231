#pragma once
// Helpers for the scale tests: the drawn lines and texts of a recording canvas, and an
// independent rotation (the documented formula, in double) to compute expected points.
#include <cmath>
#include <numbers>
#include <ostream>
#include <string>
#include <vector>

#include "kx/framework/scalesettings.h"
#include "kx/host/recordingcanvas.h"
#include "kx/host/types.h"

namespace kx::test {

inline std::string S(const QString& s) {
    return s.toStdString();
}

// A scale on a canvas with fixed metrics: every character 7 wide, every line lineHeight
// high. The sizing helpers clear the calls they make, so only the drawing is recorded.
struct ScaleFixture {
    TRecordingCanvas canvas;
    TScaleSettings scale;
    explicit ScaleFixture(int32_t lineHeight = 14, int32_t steps = 5, int32_t subSteps = 2) {
        canvas.LineHeight = lineHeight;
        scale.SetSteps(steps);
        scale.SetSubSteps(subSteps);
    }
    void RSize(double from = 0, double to = 100) {
        scale.CalcRSize(canvas, from, to);
        canvas.ClearCalls();
    }
    void Horiz(const TRect& r, double from = 0, double to = 100) {
        scale.CalcHSize(canvas, from, to);
        canvas.ClearCalls();
        scale.HorizScala(canvas, r);
    }
    void Verti(const TRect& r, double from = 0, double to = 100) {
        scale.CalcSize(canvas, from, to);
        canvas.ClearCalls();
        scale.VertiScala(canvas, r);
    }
};

struct Seg {
    TPoint a, b;
    int32_t width = 1;
    friend bool operator==(const Seg& x, const Seg& y) {
        return x.a == y.a && x.b == y.b && x.width == y.width;
    }
};
inline std::ostream& operator<<(std::ostream& os, const Seg& s) {
    return os << "(" << s.a.X << "," << s.a.Y << ")-(" << s.b.X << "," << s.b.Y << ")w" << s.width;
}

struct Text {
    TPoint at;
    QString text;
    friend bool operator==(const Text&, const Text&) = default;
};
inline std::ostream& operator<<(std::ostream& os, const Text& t) {
    return os << "'" << t.text.toStdString() << "'@(" << t.at.X << "," << t.at.Y << ")";
}

// Every MoveTo immediately followed by a LineTo, with the LineTo's pen width.
inline std::vector<Seg> Segments(const TRecordingCanvas& c) {
    std::vector<Seg> out;
    const auto& calls = c.Calls();
    for (size_t i = 0; i + 1 < calls.size(); ++i) {
        if (calls[i].Op == u"MoveTo" && calls[i + 1].Op == u"LineTo") {
            out.push_back({{calls[i].Args[0], calls[i].Args[1]},
                           {calls[i + 1].Args[0], calls[i + 1].Args[1]},
                           calls[i + 1].PenWidth});
        }
    }
    return out;
}

inline std::vector<Text> Texts(const TRecordingCanvas& c) {
    std::vector<Text> out;
    for (const auto& call : c.CallsOf("TextOut"))
        out.push_back({{call.Args[0], call.Args[1]}, call.Text});
    return out;
}

// p turned clockwise on the screen about m by deg degrees, each offset rounded half to
// even.
inline TPoint Turn(TPoint p, TPoint m, double deg) {
    const double r = deg * std::numbers::pi / 180;
    const double dx = p.X - m.X;
    const double dy = p.Y - m.Y;
    return {m.X + int32_t(std::nearbyint(dx * std::cos(r) - dy * std::sin(r))),
            m.Y + int32_t(std::nearbyint(dy * std::cos(r) + dx * std::sin(r)))};
}

}  // namespace kx::test
