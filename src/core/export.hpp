// SPDX-License-Identifier: MIT
// Binding of an implementation to its export.
//
// OVKS_EXPORT(ovksName, implementation) defines the export's slot of ExportTable: a constant of the type that the
// public header declares for the name, in a section whose name ends in the export's name. The linker sorts those
// sections by name, which makes the slots one contiguous table in ascending byte order. The generated stub of the
// export jumps through its slot; a missing binding is a link error that names the slot, a wrong signature a compile
// error here.
//
// The implementation may be an overload set or a template: the declared type picks the member. A cast that lets several
// exports share one implementation must stand in the initialiser itself: from inside a function it would be a dynamic
// initialiser, which would write to read-only memory.
#pragma once

#ifdef _WIN32
#define OVKS_SLOT_ATTRIBUTES(name) __attribute__((section(".ovks$" #name)))
#else
#define OVKS_SLOT_ATTRIBUTES(name) __attribute__((visibility("hidden"), section(".data.rel.ro.ovks." #name)))
#endif

#define OVKS_EXPORT(name, ...)                                                   \
  extern "C" OVKS_SLOT_ATTRIBUTES(name) const decltype(&::name) ovksSlot_##name; \
  const decltype(&::name) ovksSlot_##name = __VA_ARGS__
