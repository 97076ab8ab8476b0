// Symbol visibility for the text library and the language module.
//
// The shared libraries hide every symbol by default; IC_API marks what a host may call.
// Static builds define nothing special: the attribute is harmless there.
#pragma once

#if defined(_WIN32)
#if defined(IC_BUILDING_LIBRARY)
#define IC_API __declspec(dllexport)
#elif defined(IC_SHARED)
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
