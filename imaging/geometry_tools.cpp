// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/image_tools.h"
