#pragma once

// Where the slices of a stack lie along z and how to step through them. Slice k of a stack with slices of
// thickness spacingZ (mm) has its centre at (k + 0.5) * spacingZ. Whoever needs that z takes it from
// sliceCentre(), since z positions are compared exactly.

// z in mm of the centre of the slice (index from 0).
float sliceCentre(int slice, float spacingZ);

// The centre of the next (previous) slice as seen from z, for a stack of sliceCount slices. At a centre this
// is the neighbour's centre; between two centres, the nearest one in that direction; beyond the stack, its
// last (first) centre. Returns z itself at the end of the stack, for a z or spacing that is not finite, a
// spacing that is not positive, and a stack without slices.
float nextSliceCentre(float z, float spacingZ, int sliceCount);
float previousSliceCentre(float z, float spacingZ, int sliceCount);
