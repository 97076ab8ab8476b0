// Symbol visibility for the text library and the language module.
//
// The shared libraries hide every symbol by default; IC_API marks what a host may call.
// Static builds define nothing special: the attribute is harmless there.
#pragma once

// On Windows the library's own objects carry no dllexport: they are compiled once and go both
// into the static library, which the language module links, and into the DLL. The module's
// export table is its definition file (resources/icres_zh.def), so nothing of the text library
// leaks out of it; the text library's DLL exports its symbols through the linker's export of
// all symbols, which applies where no object asks for exports of its own. Hosts of that DLL
// import with IC_SHARED.
#if defined(_WIN32)
#if defined(IC_SHARED) && !defined(IC_BUILDING_LIBRARY)
#define IC_API __declspec(dllimport)
#else
#define IC_API
#endif
#else
#define IC_API __attribute__((visibility("default")))
#endif

// Keeps a rarely taken path out of its caller, so that the caller's hot loop stays small.
#if defined(_MSC_VER)
#define IC_NOINLINE __declspec(noinline)
#else
#define IC_NOINLINE __attribute__((noinline))
#endif
