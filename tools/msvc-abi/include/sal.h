// mingw-w64's, with annotations that it lacks.
#pragma once
#include_next <sal.h>
#define _Deref_post_opt_valid_
#define _Print_noformat_
