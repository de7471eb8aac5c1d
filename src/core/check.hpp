// SPDX-License-Identifier: MIT
// The argument checks that every family shares.
#pragma once

#include "ovks/types.h"

namespace ovks {

// Pointers come first, in parameter order, and all give the same status, so their order does not show.
template <class... P>
inline Status check(int len, const P*... pointers) {
  if (((pointers != nullptr) & ...) & (len > 0)) [[likely]]
    return StatusOk;
  return (pointers && ...) ? StatusBadSize : StatusNullPtr;
}

}  // namespace ovks
