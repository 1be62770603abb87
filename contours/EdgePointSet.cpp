#include "contours/EdgePointSet.h"

EdgePointSet::~EdgePointSet() = default;
