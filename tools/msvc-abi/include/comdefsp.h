// Smart pointers of the SDK, which nothing here uses.
#pragma once
