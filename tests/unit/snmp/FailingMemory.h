#pragma once

/// grantAllocations lets so many allocations of this program succeed and all further ones fail.
void grantAllocations(int count);

/// endShortage grants all allocations again, and answers whether one has failed.
bool endShortage();
