// SPDX-License-Identifier: Apache-2.0
// Marks what libomtReader shows to the programs that load it; everything else stays hidden.
//
// A host is built with run-time type information (not with -fno-rtti): the library asks objects of
// the host's classes for their types.
#pragma once

#if defined(__GNUC__) && !defined(__GXX_RTTI)
#error "libomtReader needs run-time type information; build without -fno-rtti"
#endif

/// The one macro of the public headers: classes, functions and data that a host may link against.
#define OMTREADER_EXPORT __attribute__((visibility("default")))
