// <xcb/xkb.h> for C++: a field there is named as a keyword.
#pragma once

#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit
