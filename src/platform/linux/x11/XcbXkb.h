#pragma once

#include <xcb/xcb.h>

// The header of the keyboard extension names a field by a word that C++ keeps for itself.
#define explicit explicitParts
#include <xcb/xkb.h>
#undef explicit
