// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace complexion {

/// Has the allocator keep some megabytes that were freed for the next allocations of this process, for a
/// program that repairs photos: a repair allocates about a megabyte, and a tenth of its time would be spent
/// on pages that the previous repair has given back to the system. No effect with other allocators than
/// glibc's.
void keepFreedMemory();

} // namespace complexion
