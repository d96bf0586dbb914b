#!/bin/bash
# Usage: drawing_calls_test.sh LIBRARY
# Fails when the show calls GL functions that touch pixels or frame buffers in ways skav-export cannot follow.
set -euo pipefail

unknown='gl(DrawArrays|DrawElements|DrawRangeElements|MultiDraw.*|ArrayElement|InterleavedArrays|Rect[sifd]v?|Bitmap|DrawPixels|CopyPixels|ReadPixels|EvalMesh.*|EvalPoint.*|EvalCoord.*|Accum|DrawBuffer|ReadBuffer|BindFramebuffer.*|BlitFramebuffer.*|CopyTexImage1D|CopyTexSubImage[13]D|ActiveTexture.*|RenderMode)'
found=$(nm -u "$1" | awk '{print $NF}' | grep -xE "$unknown" || true)
[ -z "$found" ] && exit 0
echo "skav-export does not follow these calls when it skips frames; teach it (src/hosts/offscreen/drawing/gl_calls.cpp):"
echo "$found"
exit 1
