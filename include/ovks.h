/* SPDX-License-Identifier: MIT */
/** @file
 *  The whole public interface. */
#ifndef OVKS_H
#define OVKS_H

#include "ovks/core.h"
#include "ovks/filter.h"
#include "ovks/generate.h"
#include "ovks/sort.h"
#include "ovks/stats.h"
#include "ovks/transform.h"
#include "ovks/types.h"
#include "ovks/vector.h"

#endif
