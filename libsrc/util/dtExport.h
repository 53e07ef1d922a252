// SPDX-License-Identifier: Apache-2.0
// Marks what libomtReader shows to the programs that load it; everything else stays hidden.
#pragma once

/// The one macro of the public headers: classes, functions and data that a host may link against.
#define OMTREADER_EXPORT __attribute__((visibility("default")))
