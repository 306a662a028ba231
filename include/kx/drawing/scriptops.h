#pragma once
// The operation tables of the drawing script (see drawing/canvasscript.h): the canvas's
// own operations and the drawing toolkit's routines. Internal to the script runner.
#include <array>
#include <memory>
#include <span>

#include "kx/drawing/scriptargs.h"
#include "kx/host/bitmap.h"

namespace kx {

struct TScriptContext {
    explicit TScriptContext(std::unique_ptr<TBitmap>& bitmap) : Bitmap(bitmap) {}
    TCanvas& Canvas() { return Bitmap->Canvas(); }

    std::unique_ptr<TBitmap>& Bitmap;
    // The last pointer outline built by KxArrowField (a local square at (0, 0)), and
    // where that square goes unless KxArrowDraw names another place.
    std::array<TPoint, 9> ArrowField{};
    TPoint ArrowOrigin;
    bool HasArrowField = false;
};

struct TScriptOpDef {
    const char* Name;
    const char* Usage;
    int MinArgs;
    int MaxArgs;  // -1: no upper bound
    // The line ends in a text (the rest of the line) after exactly MinArgs arguments.
    bool Text;
    // Reads its arguments through args (which records any error) and draws when they are
    // all valid.
    void (*Run)(TScriptContext& ctx, TScriptArgs& args);
};

std::span<const TScriptOpDef> CanvasScriptCanvasOps();
std::span<const TScriptOpDef> CanvasScriptToolkitOps();

}  // namespace kx
