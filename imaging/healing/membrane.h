// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/healing/cell_grid.h"

namespace complexion::healing {

/// Spans `mask` with the membrane that the colours around it hold: the solution of Laplace's equation with
/// these as its boundary values (Perez, Gangnet, Blake, "Poisson image editing", SIGGRAPH 2003; Georgiev,
/// "Covariant derivatives and vision", ECCV 2006; what Farbman et al., "Coordinates for instant image
/// cloning", SIGGRAPH 2009 approximate). Solved by the cascadic multigrid method (Bornemann and Deuflhard,
/// Numerische Mathematik 75, 1996): coarse grids first, a few relaxations on each.
/// Colours outside the mask are known and stay; inside they are replaced.
void spanMembrane(CellGrid<Cell>& colors, const CellMask& mask);

} // namespace complexion::healing
