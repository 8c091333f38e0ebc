// Numbers as text, the same in every locale.
#pragma once

#include "base/number_text.h"
