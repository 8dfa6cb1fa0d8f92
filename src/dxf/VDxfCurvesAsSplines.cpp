#include "VDxfCurvesAsSplines.h"

namespace {

thread_local int curvesAsSplines = 0;

} // namespace

VDxfCurvesAsSplines::VDxfCurvesAsSplines() {
    ++curvesAsSplines;
}

VDxfCurvesAsSplines::~VDxfCurvesAsSplines() {
    --curvesAsSplines;
}

bool VDxfCurvesAsSplines::active() {
    return curvesAsSplines > 0;
}
