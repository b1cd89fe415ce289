// Included before TinyXML-2's source in mingw-w64 builds: where it reads a number or prints to a file, which the agent
// never asks it to, Windows' C library serves. mingw's own functions, of floating point and all, are 40 KB.
#include <cstdio>

#define sscanf __ms_sscanf
#define vfprintf __ms_vfprintf
#define printf __ms_printf
