// In MSVC's runtime, terminate() has a header of its own.
#pragma once
#include <eh.h>
