#pragma once
// A plain-text drawing script replayed onto a bitmap: one operation per line, used by
// the kxcanvas tool and handy for reproducing a drawing in a bug report.
//
// Syntax:
//  - Blank lines and lines whose first non-blank character is '#' are ignored.
//  - A line is an operation name (case-insensitive) followed by arguments separated by
//    blanks. An argument may be written in double quotes ("Times New Roman"); inside
//    quotes \" and \\ stand for a quote and a backslash.
//  - Integers are decimal (optional sign) or hexadecimal with a 0x or $ prefix.
//    Coordinates, radii, sizes and offsets must lie in -32768..32767 (sizes 0..32767).
//  - Colours are TColor values 0x00BBGGRR in hexadecimal or decimal (any 32-bit value,
//    so system colours such as 0xFF00000F work), or a colour name such as clRed or
//    clBtnFace.
//  - Angles are decimal numbers (a fraction allowed) within -1000000..1000000.
//  - Flags are 0/1 (or false/true); enumerations are given by name (sRound, gsDiamond1,
//    toMidCenter, ...; case-insensitive) or by their ordinal number.
//  - The text of the text operations is the rest of the line; when it is wholly
//    enclosed in double quotes the quotes are removed (so leading blanks can be kept).
//  - `size W H` must be the first operation (W, H in 1..8192) and comes only once; it
//    creates a white bitmap.
//
// Errors: an unknown operation, a wrong argument count, a malformed or out-of-range
// argument, an operation before `size`, or a second `size` stops the run. The result
// then names the 1-based line and the reason; `out` keeps the picture drawn so far (or
// stays empty when the error came before `size`). A script without `size` fails with
// line 0. No exception leaves RunCanvasScript.
#include <QString>
#include <memory>
#include <vector>

#include "kx/host/bitmap.h"

namespace kx {

struct TScriptResult {
    bool Ok = true;
    int32_t Line = 0;  // 1-based line of the error; 0 when ok or for the whole script
    QString Message;
};

// One operation of the script language, for help texts and documentation.
struct TScriptOperation {
    QString Name;   // as documented, e.g. "KxDrawLED"
    QString Usage;  // its arguments, e.g. "L T R B SHAPE OUTLINE FILL"
};

// Replays script onto a new bitmap stored in out (out is reset first).
TScriptResult RunCanvasScript(const QString& script, std::unique_ptr<TBitmap>& out);

// Every operation the script language knows, in documentation order.
std::vector<TScriptOperation> CanvasScriptOperations();

}  // namespace kx
