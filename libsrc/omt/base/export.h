// SPDX-License-Identifier: Apache-2.0
// Marks what libomt shows to programs that link with it.
#pragma once

#define OMT_EXPORT __attribute__((visibility("default")))
