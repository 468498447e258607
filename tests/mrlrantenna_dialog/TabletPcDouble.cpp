#include "TabletPcDouble.h"

#include <TabletPc.h>

bool isTabletPc() {
    return doubles::tabletPc;
}
