#pragma once

/// ZTSNMP_API marks what the library exports. Users of a shared form (ztsnmp.dll, libztsnmp.so, or ZT.exe's own
/// export) get the right definitions from the CMake package and the pkg-config file; by hand it is
///   ZTSNMP_SHARED    when you link the import library or the shared object,
///   nothing          when you link the static library.
/// ZTSNMP_BUILD is defined only while the exporting module itself is compiled.
///
/// An exported class has every operation declared here and defined in the sources, defaulted ones too: programs link
/// each by its name, and a body in a header would bake the private fields into them.
#if defined(_WIN32)
#if defined(ZTSNMP_BUILD)
#define ZTSNMP_API __declspec(dllexport)
#elif defined(ZTSNMP_SHARED)
#define ZTSNMP_API __declspec(dllimport)
#else
#define ZTSNMP_API
#endif
#elif defined(ZTSNMP_BUILD) || defined(ZTSNMP_SHARED)
#define ZTSNMP_API __attribute__((visibility("default")))
#else
#define ZTSNMP_API
#endif

#if defined(_MSC_VER)
// Private members of standard library types have no exports of their own. Library and user are built with one
// compiler and one runtime anyway, as every C++ interface demands.
#pragma warning(disable : 4251)
#endif
