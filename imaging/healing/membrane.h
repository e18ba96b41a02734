// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/healing/cell_grid.h"

namespace complexion::healing {

/// Fills the unknown cells (weight 0) with a membrane: the solution of Laplace's equation with the known
/// cells as its Dirichlet boundary (Perez, Gangnet, Blake, "Poisson image editing", SIGGRAPH 2003; Georgiev,
/// "Covariant derivatives and vision", ECCV 2006; Farbman et al., "Coordinates for instant image cloning",
/// SIGGRAPH 2009, approximate the same). The grid's edge is a Neumann boundary. Solved by the cascadic
/// multigrid method (Bornemann and Deuflhard, Numerische Mathematik 75, 1996): coarse grids first, with a few
/// relaxations on each. Afterwards all cells are known. Returns false and changes nothing if no cell was
/// known.
[[nodiscard]] bool spanMembrane(CellGrid<Cell>& colors);

} // namespace complexion::healing
