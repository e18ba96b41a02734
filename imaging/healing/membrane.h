// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/healing/cell_grid.h"

namespace complexion::healing {

/// Spans the cells that are not known (weight 0) with the membrane that the known ones hold: the solution of
/// Laplace's equation with these as its boundary values (Perez, Gangnet, Blake, "Poisson image editing",
/// SIGGRAPH 2003; Georgiev, "Covariant derivatives and vision", ECCV 2006; what Farbman et al., "Coordinates
/// for instant image cloning", SIGGRAPH 2009 approximate); at the grid's edge it is level. Solved by the
/// cascadic multigrid method (Bornemann and Deuflhard, Numerische Mathematik 75, 1996): coarse grids first, a
/// few relaxations on each. All cells are known then; false, with nothing done, when none was before.
[[nodiscard]] bool spanMembrane(CellGrid<Cell>& colors);

} // namespace complexion::healing
