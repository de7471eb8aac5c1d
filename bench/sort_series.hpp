// SPDX-License-Identifier: MIT
// Sorts over whole series of inputs, of which a report of rows would be too long.
#pragma once

// Prints a table of ns an element: for each sort and length random elements, and inputs that are hard on sorts.
void sortPatterns();

// Prints ns an element against length as CSV, for each sort.
void sortSweep();
