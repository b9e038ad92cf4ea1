// SPDX-License-Identifier: MIT
#pragma once

#if __OBJC_BOOL_IS_BOOL
typedef bool BOOL;
#else
typedef signed char BOOL; // where the processor is Intel's
#endif
#define YES __objc_yes
#define NO __objc_no
#define nil nullptr
#define Nil nullptr
#define __unused __attribute__((unused))

extern "C" typedef void (*IMP)(void);

// Both after "typedef": one of the values, and bits that combine to a number of that type.
#define NS_ENUM(type, name)                                                                                            \
    enum name : type name;                                                                                             \
    enum name : type
#define NS_OPTIONS(type, name)                                                                                         \
    type name;                                                                                                         \
    enum : type
